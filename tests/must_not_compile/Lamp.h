// A proxy, its skeleton and a proxy derived from it, for operation lists that are wrong in one place.
#pragma once

#include "platform/TipprmiObjectSkeleton.h"
#include "platform/TreflectObject.h"
#include "rmi/Call.h"

class LampClient : public TreflectObject {
public:
    virtual bool isLit(long const& lamp) const;
    virtual void light() const;
};
class DimmerClient : public LampClient {
public:
    virtual void dim() const;
};
class LampSkeleton : public TipprmiObjectSkeleton {
public:
    virtual bool isLit(long const& lamp) = 0;
    virtual bool isOut(long const& lamp) = 0;
    virtual void light(long& lamp) = 0;
};
constexpr unsigned long LAMP = 0x39c5fd58;
