#include "broker/ServerTap.h"

namespace trs {

namespace {

thread_local unsigned untappedDepth = 0;

} // namespace

UntappedCalls::UntappedCalls() { ++untappedDepth; }
UntappedCalls::~UntappedCalls() { --untappedDepth; }
bool UntappedCalls::isOn() { return untappedDepth != 0; }

} // namespace trs
