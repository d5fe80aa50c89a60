#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// A live call of the line, for clients. A plain value.
struct LiveCallView {
    enum class State {
        eOffered,  ///< reaches the phone, which does not ring yet
        eRinging,  ///< rings here
        eCalling,  ///< placed here and not established yet
        eConnected,
        eHeld,  ///< by this phone
    };
    using Time = std::chrono::system_clock::time_point;

    /// Identifies the call for all time. The switch's own id may be used again.
    std::string id;
    /// Empty if it is not known.
    std::string switchCallId;
    State state = State::eRinging;
    bool outgoing = false;
    /// The monitored device, as the switch names it.
    std::string device;
    /// The party at the far end; empty if it is not known or withheld.
    std::string number;
    std::string name;
    Time since{};
    std::optional<Time> connectedSince{};
};

/// The outcome of a request to place a call, answer the call or clear it.
struct CallControlOutcome {
    enum class Kind {
        eDone,
        eRefused,       ///< by the switch; `reason` has its words
        eOutOfService,  ///< by the switch, because the telephone is not available; `reason` has its words
        eNotPossible,   ///< in the state of the call; `reason` is a sentence
        eUnknownCall,   ///< no live call has the id
        eNotSupported,  ///< the switch does not have the service
        eNotConnected,  ///< no link, or it was lost before the switch responded
    };

    Kind kind = Kind::eNotConnected;
    /// Of a placed call.
    std::string callId{};
    std::string reason{};
};

/// Places calls of a line at its switch, answers calls and clears calls. Any thread may call, except the
/// link's own. A request returns when the switch has responded, or an event shows that it was carried out;
/// without either, after the link's time for a response.
class CallControlIfc {
public:
    CallControlIfc() = default;
    CallControlIfc(const CallControlIfc&) = delete;
    CallControlIfc& operator=(const CallControlIfc&) = delete;
    virtual ~CallControlIfc() = default;

    /// Dials `number`, which may be an address, exactly as it is.
    [[nodiscard]] virtual CallControlOutcome makeCall(const std::string& number) = 0;
    /// `id` is that of a `LiveCallView`.
    [[nodiscard]] virtual CallControlOutcome answerCall(const std::string& id) = 0;
    [[nodiscard]] virtual CallControlOutcome clearCall(const std::string& id) = 0;
    /// In the order of their begin. A conference is represented by the calls in it.
    [[nodiscard]] virtual std::vector<LiveCallView> liveCalls() = 0;
};

}  // namespace host
