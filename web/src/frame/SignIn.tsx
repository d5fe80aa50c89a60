import { useState } from "preact/hooks";

/** The server does not know this browser: it has to show the token once, and gets a cookie for it. */
export function SignIn() {
    const [token, setToken] = useState("");
    return (
        <main class="sign-in">
            <h1>Call journal</h1>
            <p>
                This journal shows its calls to those who have its token. It stands in the file <code>api-token</code> in the data directory of
                the journal, usually <code>~/.local/state/calljournal</code>.
            </p>
            <form
                onSubmit={(event) => {
                    event.preventDefault();
                    window.location.assign(`/?token=${encodeURIComponent(token.trim())}`);
                }}
            >
                <label>
                    Token
                    <input type="password" required autocomplete="off" value={token} onInput={(event) => setToken(event.currentTarget.value)} />
                </label>
                <button type="submit" class="main-button">
                    Open the journal
                </button>
            </form>
        </main>
    );
}
