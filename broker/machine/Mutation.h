// Deliberate faults, by which the simulation (tests/simulation) shows that it would find such.
#pragma once

namespace trs {

enum class Fault { none, numberReused, writtenSaidUnsent, windowKept, renewalUnconfirmed, eventInGap };

#ifdef TRS_MUTATION // the simulation's own build of the decisions
extern Fault mutation;
inline bool mutated(Fault fault) { return mutation == fault; }
#else
constexpr bool mutated(Fault) { return false; }
#endif

} // namespace trs
