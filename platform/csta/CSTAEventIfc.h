#pragma once

class CSTAEvent;

/// Takes the events of a monitor. Threads: the line's strand, one event at a time; the event is borrowed for the
/// call, and a null pointer is ignored.
class CSTAEventIfc {
public:
    CSTAEventIfc() = default;
    CSTAEventIfc(const CSTAEventIfc&) = delete;
    CSTAEventIfc& operator=(const CSTAEventIfc&) = delete;
    virtual ~CSTAEventIfc() = default;

    virtual void deliverEvent(CSTAEvent* event) = 0;
};
