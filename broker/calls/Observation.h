// Registering observers, here and at peers.
#pragma once

#include "platform/TipprmiObjectClient.h"

class TreflectObserver;

namespace trs {

// False when the object cannot be reached; why is recorded as a call's failure.
bool observe(TipprmiObjectClient const& object, unsigned long classId, unsigned long opIndex,
             TreflectObserver& observer);
// False when there was no such registration. Like withdraw() otherwise.
bool endObservation(TipprmiObjectClient const& object, unsigned long classId, unsigned long opIndex,
                    TreflectObserver& observer);
// Ends all registrations of an observer.
void endObservations(TreflectObserver& observer);

} // namespace trs
