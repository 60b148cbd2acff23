// TreflectNotificator: the observer that calls a member function of its owner.
#pragma once

#include "platform/TreflectObserver.h"

#include <string>

template <class T>
class TreflectNotificator : public TreflectObserver {
public:
    TreflectNotificator(T& owner, bool (T::*handler)(TreflectObserver&))
        : TreflectObserver(TipprmiOID(static_cast<char const*>(nullptr), NamespaceId(1)), nullptr, std::string()),
          owner_(owner), handler_(handler)
    {
    }
    ~TreflectNotificator() override { withdraw(); }

    // The observed operation was executed: the owner's answer, with this notificator as the observer.
    bool detected() override { return (owner_.*handler_)(*this); }

private:
    T& owner_;
    bool (T::*handler_)(TreflectObserver&);
};
