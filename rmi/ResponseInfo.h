// The status of a get, set or run operation.
#pragma once

#include "rmi/Record.h"

// Reading operations.
class GetClient {
public:
    enum State : int { OK = 0, FAILED = 1 };
};

// Writing operations.
class SetClient {
public:
    enum State : int { OK = 0, FAILED = 1 };
};

// Operations that act.
class RunClient {
public:
    enum State : int { OK = 0, FAILED = 1 };
};

// The subsystem that reported a status. This system creates only the value 0 and carries what servers send.
enum SubSystemId : int {
    SUBSYSTEM_NONE = 0,
};

// Callers test success with `== X::OK`. A call that delivers nothing has failed.
template <class X>
class ResponseInfo {
public:
    using State = typename X::State;

    // Any state but 0 is a failure.
    ResponseInfo(State state) : failed(state != 0 ? 1 : 0) {}

    friend bool operator==(ResponseInfo const& info, State state) { return state == (info.failed != 0 ? 1 : 0); }

    SubSystemId subSystemId = SUBSYSTEM_NONE;
    unsigned long failed; // 0 for success, else failure
};

template <class X>
struct RecordFields<ResponseInfo<X>> : Fields<&ResponseInfo<X>::subSystemId, &ResponseInfo<X>::failed> {};
