#include "platform/TreflectObserver.h"

#include "broker/calls/Observation.h"

TreflectObserver::TreflectObserver(TipprmiOID const& oid, TreflectObject const*, std::string const& name)
    : oid_(oid), name_(name)
{
}

TreflectObserver::~TreflectObserver() { withdraw(); }

bool TreflectObserver::notify(TipprmiSequence<TipprmiAny> const&) { return detected(); }

void TreflectObserver::withdraw() { trs::endObservations(*this); }
