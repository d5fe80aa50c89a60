import { useState } from "preact/hooks";
import { initials } from "../text/people";
import { Icon } from "./Icon";

interface Props {
    name: string;
    /** The address of a picture; the page shows those of its own server only. */
    picture?: string | undefined;
    large?: boolean;
}

function isShowable(picture: string | undefined): picture is string {
    return picture !== undefined && (picture.startsWith("data:image/") || (picture !== "" && new URL(picture, window.location.href).origin === window.location.origin));
}

/** A person's picture, else the initials, else an outline. */
export function Avatar({ name, picture, large = false }: Props) {
    const [failed, setFailed] = useState<string>();
    const letters = initials(name);
    return (
        <span class={large ? "avatar avatar-large" : "avatar"} aria-hidden="true">
            {isShowable(picture) && picture !== failed ? (
                <img src={picture} alt="" onError={() => setFailed(picture)} />
            ) : (
                letters || <Icon name="person" />
            )}
        </span>
    );
}
