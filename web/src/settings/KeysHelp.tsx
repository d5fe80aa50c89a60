const keys = [
    ["Up, Down, Page Up, Page Down, Home, End", "go from entry to entry, and from call to call"],
    ["Enter", "opens the entry or the call"],
    ["Escape", "closes the entry"],
    ["Space", "on an entry's box: selects it"],
    ["Delete", "deletes the entry or the call"],
    ["Ctrl+Z", "undoes deleting"],
] as const;

export function KeysHelp() {
    return (
        <details class="setting">
            <summary>Keys</summary>
            <dl>
                {keys.map(([key, does]) => (
                    <div key={key}>
                        <dt>{key}</dt>
                        <dd>{does}</dd>
                    </div>
                ))}
            </dl>
        </details>
    );
}
