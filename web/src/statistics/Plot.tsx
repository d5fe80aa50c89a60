import { useEffect, useRef } from "preact/hooks";
import uPlot from "uplot";
import "uplot/dist/uPlot.min.css";
import { numberText, shortDay } from "../text/times";

export interface Series {
    label: string;
    /** The name of a colour in style/colours.css. */
    colour: string;
    values: readonly (number | null)[];
}

interface Props {
    /** The description for screen readers, which read the table instead. */
    label: string;
    days: readonly Date[];
    /** Bars that stand on each other, the first one at the bottom. */
    series: readonly Series[];
    format?: (value: number) => string;
}

const height = 220;
const day = 86_400;

function colourOf(name: string): string {
    return getComputedStyle(document.documentElement).getPropertyValue(`--${name}`).trim();
}

/** The sums of the series up to each: uPlot draws bars over each other, the highest first. */
function stacked(series: readonly Series[]): (number | null)[][] {
    return series.map((_, upTo) => (series[0]?.values ?? []).map((_, at) => sum(series.slice(0, upTo + 1).map(({ values }) => values[at] ?? null))));
}

function sum(values: readonly (number | null)[]): number | null {
    const known = values.filter((each) => each !== null);
    return known.length === 0 ? null : known.reduce((one, other) => one + other, 0);
}

function optionsOf({ series, format = numberText }: Props, width: number): uPlot.Options {
    const axis = { stroke: colourOf("faint"), grid: { stroke: colourOf("line"), width: 1 }, ticks: { show: false }, font: "12px system-ui" };
    const bars = uPlot.paths.bars?.({ size: [0.8, 40], radius: 0.15 });
    return {
        width,
        height,
        cursor: { y: false, points: { show: false }, drag: { x: false, y: false } },
        legend: { show: true },
        scales: { x: { time: true, range: (_, from, to) => [from - day / 2, to + day / 2] }, y: { range: (_, __, to) => [0, Math.max(1, to * 1.1)] } },
        axes: [
            { ...axis, grid: { show: false }, space: 70, values: (_, splits) => splits.map((each) => (each % 1 === 0 ? shortDay(new Date(each * 1000)).replace(/[ ,]*\d{4}$/, "") : "")), incrs: [day, 2 * day, 7 * day, 14 * day, 28 * day, 56 * day] },
            { ...axis, size: 56, values: (_, splits) => splits.map((each) => (Number.isInteger(each) ? format(each) : "")) },
        ],
        series: [
            { label: "", value: (_, value) => (value === null ? "" : shortDay(new Date(value * 1000))) },
            ...series
                .map((each, at) => ({
                    label: each.label,
                    fill: colourOf(each.colour),
                    stroke: colourOf(each.colour),
                    width: 0,
                    points: { show: false },
                    ...(bars && { paths: bars }),
                    value: (_: uPlot, __: number, ___: number, index: number | null) => (index === null ? "" : format(series[at]?.values[index] ?? 0)),
                }))
                .reverse(),
        ],
    };
}

/** A picture of values by day, drawn again when its width or the colours change. */
export function Plot(props: Props) {
    const box = useRef<HTMLDivElement>(null);
    useEffect(() => {
        const element = box.current;
        if (!element) {
            return undefined;
        }
        let plot: uPlot | undefined;
        const draw = () => {
            plot?.destroy();
            const data = [props.days.map((each) => each.getTime() / 1000), ...stacked(props.series).reverse()] as uPlot.AlignedData;
            plot = new uPlot(optionsOf(props, element.clientWidth), data, element);
        };
        let width = 0;
        const observer = new ResizeObserver(() => {
            if (element.clientWidth !== width) {
                width = element.clientWidth;
                draw();
            }
        });
        observer.observe(element);
        const dark = window.matchMedia("(prefers-color-scheme: dark)");
        dark.addEventListener("change", draw);
        return () => {
            observer.disconnect();
            dark.removeEventListener("change", draw);
            plot?.destroy();
        };
    }, [props.days, props.series, props.label]);
    return <div class="plot" ref={box} role="img" aria-label={props.label} />;
}
