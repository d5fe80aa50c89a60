import { useEffect, useLayoutEffect, useRef } from "preact/hooks";
import { Icon } from "../frame/Icon";
import { hiddenCalls } from "../state/deletions";
import { online, version } from "../state/connection";
import { mainFeed, personFeed } from "../state/feeds";
import { isInBackground } from "../state/news";
import { closeDetails, parameter } from "../state/route";
import { mayWrite } from "../state/rights";
import { isKeptNew, isNew, markSeen } from "../state/seen";
import { t } from "../text/language";
import { nameOf, titleOf } from "../text/people";
import { DeleteCalls } from "./DeleteCalls";
import { Note, NoteText } from "./Note";
import { forgetParty, party, readParty } from "./person";
import { PersonActions } from "./PersonActions";
import { PersonCalls } from "./PersonCalls";
import { PersonHead } from "./PersonHead";
import { PersonNumbers } from "./PersonNumbers";
import { PersonRequests } from "./PersonRequests";

function Frame({ title, children }: { title: string; children: preact.ComponentChildren }) {
    const heading = useRef<HTMLHeadingElement>(null);
    useLayoutEffect(() => heading.current?.focus({ preventScroll: true }), []);
    return (
        <section
            class="person"
            aria-labelledby="person-title"
            data-test="person"
            onKeyDown={(event) => {
                if (event.key === "Escape" && !document.querySelector("dialog[open]")) {
                    closeDetails();
                }
            }}
        >
            <div class="person-bar">
                <button type="button" class="icon-button" data-test="close" aria-label={t().close} title={t().close} onClick={closeDetails}>
                    <Icon name="back" class="only-narrow" />
                    <Icon name="close" class="only-wide" />
                </button>
                <h2 id="person-title" class="visually-hidden" tabIndex={-1} ref={heading} data-focus-target>
                    {title}
                </h2>
            </div>
            {children}
        </section>
    );
}

/** The calls of a party without a number, as far as the list has read them: those with the name of the opened call. */
function WithheldPerson({ id }: { id: string }) {
    const calls = mainFeed.calls.value;
    const opened = calls.find((each) => String(each.id) === id);
    const isHidden = hiddenCalls();
    const shown = opened ? calls.filter((each) => !each.number && each.displayName === opened.displayName && !isHidden(each.id)) : [];
    useSeen(shown);
    const name = opened ? titleOf(opened) : t().withheld;
    return (
        <Frame title={name}>
            <PersonHead name={name} initialsOf={opened ? nameOf(opened) : ""} calls={shown} />
            <PersonActions name={name} number="" calls={shown} />
            <PersonCalls title={t().person.withheldHistory} calls={shown} />
            {mayWrite.value && <DeleteCalls name={name} number="" calls={shown} />}
        </Frame>
    );
}

/** Marks the calls of the open person as seen: at once, and when the user comes back to the window. */
function useSeen(calls: readonly Parameters<typeof isNew>[0][]): void {
    const latest = useRef(calls);
    latest.current = calls;
    const unseen = calls.filter((call) => isNew(call) && !isKeptNew(call)).map(({ id }) => id);
    useEffect(() => {
        const look = () => isInBackground() || markSeen(latest.current, false);
        look();
        document.addEventListener("visibilitychange", look);
        window.addEventListener("focus", look);
        return () => {
            document.removeEventListener("visibilitychange", look);
            window.removeEventListener("focus", look);
        };
    }, [unseen.join()]);
}

function NumberedPerson({ number }: { number: string }) {
    useEffect(() => {
        personFeed.open({ number });
        return () => {
            personFeed.close();
            personFeed.calls.value = [];
            personFeed.isRead.value = false;
            forgetParty();
        };
    }, [number]);
    useEffect(() => void (online.value !== false && readParty(number)), [number, version.value, online.value]);
    const isHidden = hiddenCalls();
    const calls = personFeed.calls.value.filter(({ id }) => !isHidden(id));
    useSeen(calls);
    const [newest] = calls;
    const toldName = calls.find(({ displayName }) => displayName)?.displayName;
    const known = party.value;
    const name = known?.displayName || toldName || known?.contact?.company || known?.numberText || newest?.numberText || number;
    return (
        <Frame title={name}>
            <PersonHead name={name} initialsOf={known?.displayName || toldName || (known?.contact?.company ?? "")} party={known} calls={calls} />
            <PersonActions name={name} number={number} calls={calls} />
            <PersonRequests number={number} />
            <PersonNumbers number={number} party={known} />
            {known && (mayWrite.value ? <Note key={number} number={number} stored={known.note} /> : <NoteText note={known.note} />)}
            {personFeed.isRead.value && (
                <PersonCalls title={t().person.history} calls={calls} onMore={personFeed.hasOlder.value ? () => personFeed.readOlder() : undefined} />
            )}
            {known && mayWrite.value && <DeleteCalls name={name === known.numberText ? name : `${name} (${known.numberText || number})`} number={number} calls={calls} />}
        </Frame>
    );
}

/** Everything about the open person. */
export function PersonPanel() {
    const [number, call] = [parameter("person"), parameter("call")];
    return number ? <NumberedPerson key={number} number={number} /> : <WithheldPerson key={call} id={call ?? ""} />;
}
