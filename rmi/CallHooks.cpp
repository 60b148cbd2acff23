#include "rmi/CallHooks.h"

InParamHook::~InParamHook() = default;
OutParamHook::~OutParamHook() = default;
