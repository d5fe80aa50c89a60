interface Props {
    /** Names with their values, in the order in which they are shown. */
    facts: readonly (readonly [string, string])[];
}

/** The facts of a call. */
export function FactList({ facts }: Props) {
    return (
        <dl>
            {facts.map(([name, value]) => (
                <div key={name}>
                    <dt>{name}</dt>
                    <dd>
                        <bdi>{value}</bdi>
                    </dd>
                </div>
            ))}
        </dl>
    );
}
