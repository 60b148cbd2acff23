// The seam between the broker and an object's code.
#pragma once

#include "platform/TreflectServerObject.h"

class TipprmiStream;

// An object that answers calls from streams. Servers, simulators and tests all rest on it; most use Servant
// (rmi/Servant.h) or one of the typed skeletons, and write no dispatch() of their own.
class TipprmiObjectSkeleton : public TreflectServerObject {
public:
    // Executes one operation. `request` is positioned at the first in-argument; `reply` takes the result and then
    // the out-arguments, in declaration order. `flag` is true in every call of this system. False: the operation
    // is not one of this object's; the caller sees a failed call. A request that cannot be read is left with its
    // failure recorded, which the caller sees as a failed call that was not carried out.
    virtual bool dispatch(bool flag, unsigned long classId, unsigned long opIndex, TipprmiStream& request,
                          TipprmiStream& reply) = 0;

protected:
    using TreflectServerObject::TreflectServerObject;
};
