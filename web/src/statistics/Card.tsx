import type { ComponentChildren } from "preact";
import { t } from "../text/language";

interface Props {
    name: string;
    title: string;
    text?: string;
    children: ComponentChildren;
    table?: ComponentChildren;
}

/** A picture with its title, and the same as a table. */
export function Card({ name, title, text, children, table }: Props) {
    return (
        <section class="card" aria-labelledby={`card-${name}`} data-test={`card-${name}`}>
            <h3 id={`card-${name}`}>{title}</h3>
            {text && <p class="hint">{text}</p>}
            {children}
            {table && (
                <details class="card-table">
                    <summary>
                        {t().statistics.table}
                        <span class="visually-hidden">: {title}</span>
                    </summary>
                    <div class="table-box" tabIndex={0} role="group" aria-label={title}>
                        {table}
                    </div>
                </details>
            )}
        </section>
    );
}
