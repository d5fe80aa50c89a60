/** Outlines on a grid of 24 units. */
const paths = {
    incoming: "M18 6 7 17M7 8v9h9",
    outgoing: "M6 18 17 7M8 7h9v9",
    missed: "M14 10 7 17M7 10.5V17h6.5M15.5 4l4.5 4.5M20 4l-4.5 4.5",
    elsewhere: "M18 6 7 17M7 8v9h9M15 5h4v4",
    forwarded: "M5 18v-4a5 5 0 0 1 5-5h9M15 5l4 4-4 4",
    unreached: "M6 18l5-5M13 11l4-4M8 7h9v9",
    phone: "M6.5 4h3l1.5 4-2 1.5a12 12 0 0 0 5.5 5.5l1.5-2 4 1.5v3a1.5 1.5 0 0 1-1.6 1.5A15.5 15.5 0 0 1 5 5.6 1.5 1.5 0 0 1 6.5 4Z",
    hangUp: "M3.5 14.5c5-5 12-5 17 0l-2.5 2.5-3.5-1.5v-2.5a9 9 0 0 0-5 0V15.5L6 17Z",
    search: "M10.5 17a6.5 6.5 0 1 0 0-13 6.5 6.5 0 0 0 0 13ZM15.5 15.5 20 20",
    filter: "M4 6h16M7 12h10M10 18h4",
    calendar: "M5 6h14v14H5zM5 10h14M9 3.5V8M15 3.5V8",
    select: "M4 6l1.5 1.5L8 5M4 12l1.5 1.5L8 11M4 18l1.5 1.5L8 17M12 6.5h8M12 12.5h8M12 18.5h8",
    close: "M6 6l12 12M18 6 6 18",
    back: "M14 5l-7 7 7 7",
    down: "M6 9l6 6 6-6",
    up: "M6 15l6-6 6 6",
    person: "M12 12a4 4 0 1 0 0-8 4 4 0 0 0 0 8ZM4.5 20c1-4 4-5.5 7.5-5.5s6.5 1.5 7.5 5.5",
    people: "M9 11.5a3.5 3.5 0 1 0 0-7 3.5 3.5 0 0 0 0 7ZM2.5 19.5c.7-3.6 3.3-5 6.5-5s5.8 1.4 6.5 5M16 5a3.3 3.3 0 0 1 0 6.3M17.5 14.7c2.2.5 3.5 2 4 4.8",
    chart: "M5 20V11M12 20V4M19 20v-6",
    gear: "M12 15.2a3.2 3.2 0 1 0 0-6.4 3.2 3.2 0 0 0 0 6.4ZM12 3v3M12 18v3M3 12h3M18 12h3M5.6 5.6l2.2 2.2M16.2 16.2l2.2 2.2M18.4 5.6l-2.2 2.2M7.8 16.2l-2.2 2.2",
    trash: "M5 7h14M9 7V4.5h6V7M7 7l1 13h8l1-13M10.5 11v5.5M13.5 11v5.5",
    copy: "M9 9h10v11H9zM15 9V5H5v11h4",
    check: "M5 12.5l4.5 4.5L19 7.5",
    mark: "M12 16a4 4 0 1 0 0-8 4 4 0 0 0 0 8Z",
    eye: "M3 12c2.5-4.5 5.5-6.5 9-6.5s6.5 2 9 6.5c-2.5 4.5-5.5 6.5-9 6.5S5.5 16.5 3 12ZM12 14.8a2.8 2.8 0 1 0 0-5.6 2.8 2.8 0 0 0 0 5.6Z",
    request: "M5 12a7 7 0 1 1 2 5M5 20v-4h4M12 8v4l3 2",
} as const;

export type IconName = keyof typeof paths;

/** A picture beside a text; screen readers pass over it. */
export function Icon({ name, class: extra = "" }: { name: IconName; class?: string }) {
    return (
        <svg class={`icon ${extra}`} viewBox="0 0 24 24" aria-hidden="true" focusable="false">
            <path d={paths[name]} />
        </svg>
    );
}
