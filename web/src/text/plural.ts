/** Returns a function that puts a number before the form of a word that it takes: counts("en", "call", "calls")(2) is "2 calls". */
export function counts(language: string, one: string, many: string): (count: number) => string {
    const rules = new Intl.PluralRules(language);
    const numbers = new Intl.NumberFormat(language);
    return (count) => `${numbers.format(count)} ${rules.select(count) === "one" ? one : many}`;
}
