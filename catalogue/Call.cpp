#include "catalogue/Call.h"

#include "platform/TipprmiStream.h"

#include <asio/bind_cancellation_slot.hpp>

namespace trs::catalogue {

namespace {

// The names of out-arguments; one whose name the declaration does not give is called by its place.
std::string nameOf(std::vector<std::string_view> const& names, std::size_t i)
{
    return i < names.size() ? std::string(names[i]) : '#' + std::to_string(i);
}

std::string writeArguments(TipprmiStream& request, Operation const& operation, std::vector<Value> const& in)
{
    std::vector<std::string_view> const names = operation.parameterNames();
    std::size_t used = 0;
    for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
        if (!operation.parameters[i].isIn) {
            continue;
        }
        if (used == in.size()) {
            return nameOf(names, i) + " is missing";
        }
        std::string const wrong = writeValue(request, *operation.parameters[i].type, in[used++]);
        if (!wrong.empty()) {
            return nameOf(names, i) + (wrong.front() == '.' || wrong.front() == '[' ? "" : ": ") + wrong;
        }
    }
    return used < in.size() ? "one argument too many" : std::string();
}

// The bytes of the next value.
TipprmiAny take(TipprmiStream& stream, Type const& type)
{
    std::size_t const begin = stream.size() - stream.available();
    readValue(stream, type);
    TipprmiAny value;
    value.marshall(stream.data() + begin, static_cast<int>(stream.size() - stream.available() - begin));
    return value;
}

} // namespace

TipprmiSequence<TipprmiAny> packParameters(Operation const& operation, TipprmiStream& request, TipprmiStream& reply)
{
    TipprmiSequence<TipprmiAny> parameters;
    if (operation.result != nullptr) {
        parameters.push_back(take(reply, *operation.result));
    }
    for (Parameter const& parameter : operation.parameters) {
        parameters.push_back(take(parameter.isIn ? request : reply, *parameter.type));
    }
    return parameters;
}

std::string writeResults(TipprmiStream& reply, Operation const& operation, Value const& results)
{
    std::size_t used = 0;
    std::string wrong;
    auto const write = [&](Type const& type, std::string const& name) {
        if (wrong.empty() && !results.contains(name)) {
            wrong = name + " is missing";
        } else if (wrong.empty()) {
            wrong = writeValue(reply, type, results[name]);
            wrong = wrong.empty() ? wrong : name + (wrong.front() == '.' || wrong.front() == '[' ? "" : ": ") + wrong;
        }
        ++used;
    };
    if (!results.is_object()) {
        return "the results are no object";
    }
    if (operation.result != nullptr && operation.result->kind == Type::Kind::status) {
        writeStatus(reply, true);
    } else if (operation.result != nullptr) {
        write(*operation.result, "result");
    }
    std::vector<std::string_view> const names = operation.parameterNames();
    for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
        if (!operation.parameters[i].isIn) {
            write(*operation.parameters[i].type, nameOf(names, i));
        }
    }
    return !wrong.empty() || results.size() == used ? wrong : "one result too many";
}

namespace {

// Of a call that was delivered.
void readReply(Outcome& outcome, TipprmiObjectClient const& object, Operation const& operation, TipprmiStream& response)
{
    outcome.kind = Outcome::Kind::done;
    if (operation.result != nullptr) {
        Value result = readValue(response, *operation.result);
        if (operation.result->kind != Type::Kind::status) {
            outcome.results["result"] = std::move(result);
        } else if (result["failed"] != 0) {
            outcome.kind = Outcome::Kind::refused;
            outcome.subSystem = result["subSystem"];
        }
    }
    std::vector<std::string_view> const names = operation.parameterNames();
    for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
        if (!operation.parameters[i].isIn) {
            outcome.results[nameOf(names, i)] = readValue(response, *operation.parameters[i].type);
        }
    }
    if (response.hasUnmarshallingFailed() || response.available() != 0) {
        outcome.kind = Outcome::Kind::failed;
        outcome.failure = {CallFailure::Kind::malformedReply,
                           CallFailure::CarriedOut::yes,
                           operation.classId,
                           operation.index,
                           object.getOID(),
                           {},
                           response.hasUnmarshallingFailed() ? "the reply ends too early" : "the reply has too much"};
    }
}

} // namespace

Outcome call(TipprmiObjectClient const& object, Operation const& operation, std::vector<Value> const& in)
{
    Outcome outcome;
    TipprmiStream request(100);
    TipprmiStream reply(100);
    TipprmiStream& arguments = object.prepareRequestStream_(true, operation.classId, operation.index, request);
    outcome.wrong = writeArguments(arguments, operation, in);
    if (!outcome.wrong.empty()) {
        return outcome;
    }

    outcome.kind = Outcome::Kind::failed;
    if (!object.dispatch(true, operation.classId, operation.index, request, reply)) {
        outcome.failure = lastCallFailure();
        return outcome;
    }
    readReply(outcome, object, operation, object.prepareResponseStream_(true, reply));
    return outcome;
}

StartedCall::StartedCall(TipprmiObjectClient const& object, Operation const& operation, std::vector<Value> const& in)
    : object_(object), operation_(&operation)
{
    if (object.getServer() != nullptr) {
        outcome_ = call(object, operation, in);
        return;
    }
    TipprmiStream arguments(100);
    Outcome begun;
    begun.wrong = writeArguments(arguments, operation, in);
    if (!begun.wrong.empty()) {
        outcome_ = std::move(begun);
    } else {
        auto const promise = std::make_shared<std::promise<RawReply>>();
        reply_ = promise->get_future();
        asyncDispatch(object, operation.classId, operation.index, arguments,
                      asio::bind_cancellation_slot(ending_->slot(), [promise](std::error_code, RawReply reply) {
                          promise->set_value(std::move(reply));
                      }));
    }
}

StartedCall::~StartedCall()
{
    if (reply_.valid()) {
        ending_->emit(asio::cancellation_type::terminal);
    }
}

Outcome StartedCall::outcome()
{
    if (outcome_) {
        return *std::move(outcome_);
    }
    Outcome outcome;
    RawReply reply = valueOf(std::move(reply_));
    if (reply.failure().kind != CallFailure::Kind::none) {
        outcome.kind = Outcome::Kind::failed;
        outcome.failure = reply.failure();
        return outcome;
    }
    readReply(outcome, object_, *operation_, reply.stream());
    return outcome;
}

} // namespace trs::catalogue
