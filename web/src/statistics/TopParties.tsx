import type { CountedGroup } from "../api/types";
import { addressOf } from "../state/route";
import { t } from "../text/language";
import { durationText, numberText } from "../text/times";
import { Card } from "./Card";

/** The parties with most calls: a table whose bars are the picture. */
export function TopParties({ parties }: { parties: readonly CountedGroup[] }) {
    const texts = t().statistics;
    const most = Math.max(1, ...parties.map(({ calls }) => calls));
    return (
        <Card name="parties" title={texts.parties}>
            <table class="figures parties">
                <thead>
                    <tr>
                        {[texts.who, texts.list, texts.talk].map((each) => (
                            <th key={each} scope="col">
                                {each}
                            </th>
                        ))}
                    </tr>
                </thead>
                <tbody>
                    {parties.map((each) => {
                        const name = each.displayName || each.numberText || each.key || t().withheld;
                        return (
                            <tr key={each.key}>
                                <th scope="row">{each.key ? <a href={addressOf("calls", { person: each.key })}>{name}</a> : name}</th>
                                <td class="bar-cell">
                                    <meter min={0} max={most} value={each.calls} aria-hidden="true" />
                                    {numberText(each.calls)}
                                </td>
                                <td>{each.talkTime > 0 ? durationText(each.talkTime) : texts.never}</td>
                            </tr>
                        );
                    })}
                </tbody>
            </table>
        </Card>
    );
}
