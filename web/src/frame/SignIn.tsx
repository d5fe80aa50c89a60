import { useLayoutEffect, useRef, useState } from "preact/hooks";
import { api } from "../api/client";
import { ApiError } from "../api/request";
import { connect } from "../state/connection";
import { dismiss, inform, reasonOf, signedOut } from "../state/failures";
import { t } from "../text/language";

/**
 * The server redirects here after a wrong token in the address; the parameter is removed from it. A browser that is signed in stays so, and
 * shows a notice.
 */
const wasRefused = new URLSearchParams(window.location.search).has("refused");
if (wasRefused) {
    window.history.replaceState(window.history.state, "", window.location.pathname + window.location.hash);
    inform("link", () => t().signIn.linkRefused);
}

/** Asks for the access key (the token of the HTTP API) once; the server then sets a cookie. */
export function SignIn() {
    const texts = t().signIn;
    const [token, setToken] = useState("");
    const [refusal, setRefusal] = useState(wasRefused ? texts.refused : "");
    const input = useRef<HTMLInputElement>(null);
    useLayoutEffect(() => input.current?.focus(), []);
    const submit = async () => {
        try {
            await api.signIn(token.trim());
            dismiss("link");
            signedOut.value = false;
            connect();
        } catch (error) {
            setRefusal(error instanceof ApiError && error.status === 401 ? texts.refused : reasonOf(error));
            input.current?.select();
        }
    };
    return (
        <main class="sign-in" data-test="sign-in">
            <img src="./icon.svg" alt="" width="56" height="56" />
            <h1>{t().name}</h1>
            <p>{texts.text}</p>
            <form
                onSubmit={(event) => {
                    event.preventDefault();
                    void submit();
                }}
            >
                <label>
                    {texts.token}
                    <input
                        ref={input}
                        type="password"
                        required
                        autocomplete="current-password"
                        aria-describedby="sign-in-refusal"
                        value={token}
                        onInput={(event) => setToken(event.currentTarget.value)}
                    />
                </label>
                <p id="sign-in-refusal" class="refusal" role="alert">
                    {refusal}
                </p>
                <button type="submit" class="main-button">
                    {texts.open}
                </button>
            </form>
            <p class="hint">
                {texts.place} <code class="file-path">~/.local/state/calljournal/api-token</code>
            </p>
        </main>
    );
}
