#pragma once

class Context;
class JournalServiceIfc;
class MgmtAgentIfc;

namespace journal {

struct JournalComponents;

/// Connects the components to the platform:
///  1. looks up the platform services;
///  2. creates the timers of the visitor call log and of blind transfers;
///  3. reads the software type and initialises the notifier;
///  4. with a CSTA service: observes and reads the management values, then starts the monitors at the switch;
///  5. reads the journal's own settings from the database and derives the event modes;
///  6. registers `agent` with the management.
/// A step that fails is logged, and the next one follows.
///
/// Call once, from the strand, before anything else. Everything is borrowed and outlives `components`.
void startUp(JournalComponents& components, Context& context, MgmtAgentIfc& agent,
             JournalServiceIfc& service);

}  // namespace journal
