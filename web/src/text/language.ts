import { computed, effect, signal } from "@preact/signals";
import { de } from "./de";
import { en, type Texts } from "./en";

export const languages = { en: "English", de: "Deutsch" } as const;
export type Language = keyof typeof languages;

const tables: Record<Language, Texts> = { en, de };
const storageKey = "calljournal.language";

function isLanguage(name: string | null | undefined): name is Language {
    return name === "en" || name === "de";
}

/** The user's choice, else the first language of the browser that the page has. */
function firstLanguage(): Language {
    const chosen = window.localStorage.getItem(storageKey);
    return isLanguage(chosen) ? chosen : (window.navigator.languages.map((each) => each.slice(0, 2)).find(isLanguage) ?? "en");
}

export const language = signal<Language>(firstLanguage());

/** The locale of dates and numbers: the browser's own variant of the page's language, such as en-GB, if it has one. */
export const locale = computed(() => window.navigator.languages.find((each) => each.startsWith(language.value)) ?? language.value);

effect(() => {
    document.documentElement.lang = language.value;
});

export function chooseLanguage(name: Language): void {
    window.localStorage.setItem(storageKey, name);
    language.value = name;
}

/** The texts of the page; components that call this are rendered again when the language changes. */
export function t(): Texts {
    return tables[language.value];
}
