// Names of the value types that the framework's interfaces mention but do not define.
#pragma once

template <class T, unsigned long N = 0>
class TipprmiSequence;
class TipprmiAny;

class InParamHook;
class OutParamHook;
