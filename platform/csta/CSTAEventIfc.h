#pragma once

class CSTAEvent;

/// Receives the events of a monitor. Threads: the line's strand, one event at a time. The event is borrowed
/// for the call; a null pointer is ignored.
class CSTAEventIfc {
public:
    CSTAEventIfc() = default;
    CSTAEventIfc(const CSTAEventIfc&) = delete;
    CSTAEventIfc& operator=(const CSTAEventIfc&) = delete;
    virtual ~CSTAEventIfc() = default;

    virtual void deliverEvent(CSTAEvent* event) = 0;
};
