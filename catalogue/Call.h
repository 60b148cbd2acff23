// Calls of any operation of the catalogue.
#pragma once

#include "broker/Async.h"
#include "broker/CallFailure.h"
#include "catalogue/Class.h"
#include "catalogue/Value.h"
#include "platform/TipprmiObjectClient.h"
#include "rmi/TipprmiAny.h"
#include "rmi/TipprmiSequence.h"

#include <asio/cancellation_signal.hpp>

#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace trs::catalogue {

struct Outcome {
    enum class Kind {
        done,
        refused, // with a status of failure
        failed,  // without a reply to read: `failure` tells why
        wrong,   // not sent: `wrong` tells what is wrong with the arguments
    };

    Kind kind = Kind::wrong;
    Value results = Value::object(); // a plain result as "result", out-arguments by name; of a call that is done
    long subSystem = 0;              // that refused
    CallFailure failure;
    std::string wrong;
};

// Calls the operation on the object with these in-arguments, in their order. The calling thread is under the run
// permission (TreflectHandlerState).
Outcome call(TipprmiObjectClient const& object, Operation const& operation, std::vector<Value> const& in);

// The same, without waiting for what comes of it; an object of this process is called at once.
class StartedCall {
public:
    StartedCall(TipprmiObjectClient const& object, Operation const& operation, std::vector<Value> const& in);
    StartedCall(StartedCall&&) = default;
    // Gives it up when nobody has waited for it.
    ~StartedCall();

    // Waits for it, once. The calling thread is under the run permission.
    Outcome outcome();

private:
    TipprmiObjectClient object_;
    Operation const* operation_;
    std::optional<Outcome> outcome_; // when it is known from the beginning
    std::future<RawReply> reply_;    // else
    std::unique_ptr<asio::cancellation_signal> ending_ = std::make_unique<asio::cancellation_signal>();
};

// Appends the results of a call that is done, as Outcome has them, in their order. Empty, or what is wrong with them.
std::string writeResults(TipprmiStream& reply, Operation const& operation, Value const& results);

// What observers of an execution are told: the result, if there is one, and then every argument in declaration order.
// `request` is at the first in-argument, `reply` at the result.
TipprmiSequence<TipprmiAny> packParameters(Operation const& operation, TipprmiStream& request, TipprmiStream& reply);

} // namespace trs::catalogue
