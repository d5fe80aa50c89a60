import { useRef } from "preact/hooks";
import { t } from "../text/language";
import { importContacts, isImporting } from "./ContactImport";

/** Opens the file dialog and imports the chosen file. */
export function ImportButton() {
    const input = useRef<HTMLInputElement>(null);
    const running = isImporting();
    return (
        <>
            <button type="button" aria-disabled={running} data-test="import" onClick={() => running || input.current?.click()}>
                {t().contacts.import}
            </button>
            <input
                ref={input}
                type="file"
                hidden
                accept=".vcf,.vcard,.csv,text/vcard,text/csv"
                onChange={(event) => {
                    const file = event.currentTarget.files?.[0];
                    if (file) {
                        void importContacts(file);
                    }
                    event.currentTarget.value = ""; // so that the same file can be chosen again
                }}
            />
        </>
    );
}
