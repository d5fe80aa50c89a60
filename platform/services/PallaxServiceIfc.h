#pragma once

/// The Pallax client on the phone, which keeps a journal of its own while it runs. Registered as
/// "PallaxServiceIfc". Any thread may call.
class PallaxServiceIfc {
public:
    PallaxServiceIfc() = default;
    PallaxServiceIfc(const PallaxServiceIfc&) = delete;
    PallaxServiceIfc& operator=(const PallaxServiceIfc&) = delete;
    virtual ~PallaxServiceIfc() = default;

    [[nodiscard]] virtual bool isRunning() = 0;
};
