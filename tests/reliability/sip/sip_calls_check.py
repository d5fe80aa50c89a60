"""Every SIP call is in the history once, with its outcome, its reason and its times: 75 calls of thirteen kinds at 5 a second in a round."""

import rounds
import sip_calls

if __name__ == "__main__":
    rounds.play("sip-calls", lambda seed: sip_calls.play(75, 5, seed), 2)
