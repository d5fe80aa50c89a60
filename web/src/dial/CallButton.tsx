import { Icon } from "../frame/Icon";
import { t } from "../text/language";
import { canPlaceCalls, dial, linkOf, type Callee } from "./dial";

interface Props extends Callee {
    /** The number as people write it: the button has its words beside the picture. */
    large?: string;
    stop?: number;
}

/** Calls a number: through the journal if it can, else through the browser's telephone program. */
export function CallButton({ number, who, large, stop = 0 }: Props) {
    const content = (
        <>
            <Icon name="phone" />
            {large && <span>{t().call.callWho(large)}</span>}
        </>
    );
    const shape = {
        class: large ? "main-button call-button" : "icon-button call-button",
        title: t().call.callWho(who),
        "aria-label": large ? undefined : t().call.callWho(who),
        "data-test": "call-button",
        "data-control": "call",
        tabIndex: stop,
    };
    return canPlaceCalls() ? (
        <button type="button" {...shape} onClick={() => void dial({ number, who })}>
            {content}
        </button>
    ) : (
        <a href={linkOf(number)} {...shape}>
            {content}
        </a>
    );
}
