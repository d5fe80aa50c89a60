function takesFocus(element: HTMLElement): boolean {
    return element.isConnected && !element.matches(":disabled");
}

/**
 * Keeps the focus on the page when the focused element is removed (a deleted row, a button that is done). The focus moves to the element
 * with `data-focus-target` in the innermost enclosing part that has one (a list's active row, the text of an empty list), else to the view.
 */
export function keepFocus(page: HTMLElement): void {
    /** The focused element and its ancestors, innermost first. */
    let around: HTMLElement[] = [];
    page.addEventListener("focusin", (event) => {
        around = [];
        for (let each = event.target as HTMLElement | null; each && each !== page.parentElement; each = each.parentElement) {
            around.push(each);
        }
    });
    // The user has clicked beside the element: the focus need not be kept.
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
        const targetIn = (part: HTMLElement) => [...part.querySelectorAll<HTMLElement>("[data-focus-target]")].find((each) => each.checkVisibility());
        const part = around.find((each) => each.isConnected && targetIn(each));
        (part ? targetIn(part) : page.querySelector("main"))?.focus();
    }).observe(page, { childList: true, subtree: true, attributeFilter: ["disabled"] });
}
