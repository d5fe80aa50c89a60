const keys = [
    ["Up, Down, Page Up, Page Down, Home, End", "go from entry to entry"],
    ["Enter", "opens the entry"],
    ["Escape", "closes it"],
    ["Space", "on an entry's box: selects it"],
    ["Delete", "deletes the entry"],
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
