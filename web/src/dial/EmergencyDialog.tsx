import { ConfirmDialog } from "../frame/Dialog";
import { t } from "../text/language";
import { dial, emergency } from "./dial";

/** Asks before a call to an emergency service. */
export function EmergencyDialog() {
    const callee = emergency.value;
    if (!callee) {
        return null;
    }
    const texts = t().call;
    return (
        <ConfirmDialog
            title={texts.emergencyTitle}
            action={texts.emergencyButton(callee.number)}
            isDangerous
            onConfirm={() => void dial(callee, true)}
            onClose={() => (emergency.value = undefined)}
        >
            {texts.emergencyText(callee.number)}
        </ConfirmDialog>
    );
}
