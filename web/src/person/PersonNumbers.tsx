import { useState } from "preact/hooks";
import { numberFields, type Party } from "../api/types";
import { CallButton } from "../dial/CallButton";
import { Icon } from "../frame/Icon";
import { openDetails } from "../state/route";
import { t } from "../text/language";

interface Props {
    number: string;
    party: Party | undefined;
}

interface Line {
    number: string;
    text: string;
    kind: string;
}

const bare = (number: string) => number.replace(/[^\d+*#@a-z]/gi, "");

/** The number of the calls, then the other ones of the contact. */
function linesOf(number: string, party: Party | undefined): Line[] {
    const kinds = t().person.kinds;
    const ofContact = numberFields.map((name) => ({ number: party?.contact?.[name] ?? "", text: party?.contact?.numberTexts[name] ?? "", kind: kinds[name] })).filter((each) => each.number);
    const own = ofContact.find((each) => bare(each.number) === bare(number));
    const others = ofContact.filter((each) => each !== own);
    return [{ number, text: party?.numberText || number, kind: own?.kind ?? "" }, ...others];
}

/** Copies a text; says so for a moment. */
function CopyButton({ text }: { text: string }) {
    const [isDone, setDone] = useState(false);
    const texts = t().person;
    return (
        <button
            type="button"
            class="icon-button"
            data-test="copy"
            aria-label={isDone ? texts.copied : texts.copyNumber(text)}
            title={texts.copy}
            onClick={() => {
                void navigator.clipboard?.writeText(text).then(() => {
                    setDone(true);
                    window.setTimeout(() => setDone(false), 2000);
                });
            }}
        >
            <Icon name={isDone ? "check" : "copy"} />
            <span class="visually-hidden" role="status">
                {isDone && texts.copied}
            </span>
        </button>
    );
}

export function PersonNumbers({ number, party }: Props) {
    const lines = linesOf(number, party);
    return (
        <ul class="numbers" aria-label={t().person.numbers}>
            {lines.map((line, index) => (
                <li key={line.number}>
                    <span class="number-text">
                        {index === 0 ? (
                            <bdi data-test="number">{line.text}</bdi>
                        ) : (
                            <button type="button" class="link-button" onClick={() => openDetails({ person: line.number })}>
                                <bdi>{line.text}</bdi>
                            </button>
                        )}
                        {line.kind && <span class="number-kind">{line.kind}</span>}
                    </span>
                    <CopyButton text={line.text} />
                    <CallButton number={line.number} who={line.text} />
                </li>
            ))}
        </ul>
    );
}
