import { useRef } from "preact/hooks";
import { contactImport } from "../state/app";
import { useStore } from "../state/Store";

/** Opens the file dialog and imports the chosen file. */
export function ImportButton() {
    const input = useRef<HTMLInputElement>(null);
    const running = useStore(contactImport).state?.running ?? false;
    return (
        <>
            <button type="button" aria-disabled={running} data-test="import" onClick={() => running || input.current?.click()}>
                Import …
            </button>
            <input
                ref={input}
                type="file"
                hidden
                accept=".vcf,.vcard,.csv,text/vcard,text/csv"
                onChange={(event) => {
                    const file = event.currentTarget.files?.[0];
                    if (file) {
                        void contactImport.run(file);
                    }
                    event.currentTarget.value = ""; // so that the same file can be chosen again
                }}
            />
        </>
    );
}
