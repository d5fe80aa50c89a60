/**
 * Scrolls through the calls until the list has read so many, and some rows more. Runs in the browser. Returns the calls that were read, the
 * number of frames and the longest times from one frame to the next, in ms.
 */
function scrolled([calls, seconds]) {
    const box = document.querySelector(".scroll");
    const intervals = [];
    let read = 0;
    const count = new PerformanceObserver((entries) => (read += entries.getEntries().filter(({ name }) => /api\/v1\/calls\?.*cursor=/.test(name)).length));
    count.observe({ type: "resource" });
    const end = performance.now() + seconds * 1000;
    return new Promise((done) => {
        let before = performance.now();
        const frame = (now) => {
            intervals.push(now - before);
            before = now;
            box.scrollTop += 700;
            performance.clearResourceTimings();
            if (read * 100 >= calls || now > end) {
                count.disconnect();
                const sorted = intervals.slice(10).sort((one, other) => other - one);
                done({ calls: read * 100, frames: sorted.length, median: sorted[Math.floor(sorted.length / 2)], slowest: sorted.slice(0, 5) });
            } else {
                requestAnimationFrame(frame);
            }
        };
        requestAnimationFrame(frame);
    });
}

export const scrollThrough = (page, calls, seconds) => page.evaluate(scrolled, [calls, seconds]);
