function takesFocus(element: HTMLElement): boolean {
    return element.isConnected && !element.matches(":disabled");
}

/**
 * When what has the focus goes (a row that is deleted, a button that has done its work), the focus must not fall out of the page: it goes to
 * what is marked with `data-home` in the smallest part around it that has such a mark, which is a list's active row or what stands in place
 * of the rows, else to the view as a whole.
 */
export function keepFocus(page: HTMLElement): void {
    /** What has the focus and what it stands in, from the inside out. */
    let around: HTMLElement[] = [];
    page.addEventListener("focusin", (event) => {
        around = [];
        for (let each = event.target as HTMLElement | null; each && each !== page.parentElement; each = each.parentElement) {
            around.push(each);
        }
    });
    // Left by a click beside it, it need not be kept.
    page.addEventListener("focusout", () =>
        window.setTimeout(() => {
            if (document.hasFocus() && document.activeElement === document.body && around[0] && takesFocus(around[0])) {
                around = [];
            }
        }),
    );
    new MutationObserver(() => {
        const focused = around[0];
        if (!focused || takesFocus(focused) || (document.activeElement !== focused && document.activeElement !== document.body)) {
            return;
        }
        const homeIn = (part: HTMLElement) => [...part.querySelectorAll<HTMLElement>("[data-home]")].find((each) => each.checkVisibility());
        const part = around.find((each) => each.isConnected && homeIn(each));
        (part ? homeIn(part) : page.querySelector("main"))?.focus();
    }).observe(page, { childList: true, subtree: true, attributeFilter: ["disabled"] });
}
