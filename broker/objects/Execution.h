// Running an operation of an object of this process from streams.
#pragma once

#include "platform/TipprmiObjectSkeleton.h"

#include <cstdint>

namespace trs {

class Execution {
public:
    enum class Outcome { done, noSuchOperation, unreadableRequest };

    // Runs the operation. The calling thread has the run permission. Observers are told in any case: with an empty
    // list when the object's code did not tell them itself.
    static Outcome run(TipprmiObjectSkeleton& object, bool flag, std::uint32_t classId, std::uint32_t opIndex,
                       TipprmiStream& request, TipprmiStream& reply);
    // The object's code has told its observers of this operation.
    static void markNotified(TreflectServerObject const& object, unsigned long classId, unsigned long opIndex);
};

// Runs the operation of the object behind the stub under the run permission, on the calling thread. False, with the
// failure recorded, when it could not be carried out.
bool executeHere(TreflectObjectStub const& stub, bool flag, std::uint32_t classId, std::uint32_t opIndex,
                 TipprmiStream& request, TipprmiStream& reply);

} // namespace trs
