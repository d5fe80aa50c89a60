import { useLayoutEffect, useRef, useState } from "preact/hooks";

/** The server redirects here after a wrong token; the parameter is removed from the address. */
const refused = new URLSearchParams(window.location.search).has("refused");
if (refused) {
    window.history.replaceState(window.history.state, "", window.location.pathname + window.location.hash);
}

/** Asks for the token once; the server then sets a cookie. */
export function SignIn() {
    const [token, setToken] = useState("");
    const input = useRef<HTMLInputElement>(null);
    useLayoutEffect(() => input.current?.focus(), []);
    return (
        <main class="sign-in">
            <h1>Call journal</h1>
            <p>
                Enter the token of this journal. It is in the file <code>api-token</code> in the data directory of the journal, usually{" "}
                <code>~/.local/state/calljournal</code>.
            </p>
            <form
                onSubmit={(event) => {
                    event.preventDefault();
                    window.location.assign(`/?token=${encodeURIComponent(token.trim())}`);
                }}
            >
                <label>
                    Token
                    <input
                        ref={input}
                        type="password"
                        required
                        autocomplete="off"
                        aria-describedby="sign-in-refusal"
                        value={token}
                        onInput={(event) => setToken(event.currentTarget.value)}
                    />
                </label>
                <p id="sign-in-refusal" class="refusal" role="alert">
                    {refused && "That was not the token of this journal. Copy the whole line of the file."}
                </p>
                <button type="submit" class="main-button">
                    Open the journal
                </button>
            </form>
        </main>
    );
}
