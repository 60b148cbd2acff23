#include "broker/Async.h"

#include "broker/objects/RunPermission.h"

#include <string>

namespace trs {

namespace {

using Kind = CallFailure::Kind;
using CarriedOut = CallFailure::CarriedOut;

// An error's value is its kind and, above that, whether the call was carried out.
constexpr int kindBits = 8;

Kind kindOf(int value) { return static_cast<Kind>(value & ((1 << kindBits) - 1)); }

class CallCategory final : public std::error_category {
public:
    char const* name() const noexcept override { return "trsman.call"; }
    std::string message(int value) const override
    {
        CallFailure failure;
        failure.kind = kindOf(value);
        failure.carriedOut = static_cast<CarriedOut>(value >> kindBits);
        return std::string(textOf(failure.kind)) + "; " + failure.effect();
    }
    std::error_condition default_error_condition(int value) const noexcept override
    {
        switch (kindOf(value)) {
        case Kind::notConnected:
            return std::errc::not_connected;
        case Kind::deadline:
            return std::errc::timed_out;
        case Kind::connectionLost:
            return std::errc::connection_reset;
        case Kind::cancelled:
            return std::errc::operation_canceled;
        case Kind::refused:
            return std::errc::invalid_argument;
        case Kind::malformedReply:
            return std::errc::bad_message;
        case Kind::noSuchOperation:
            return std::errc::operation_not_supported;
        case Kind::busy:
            return std::errc::resource_unavailable_try_again;
        case Kind::none:
        case Kind::noSuchObject:
            break;
        }
        return {value, *this};
    }
    bool equivalent(int value, std::error_condition const& condition) const noexcept override
    {
        return condition.category() == *this ? kindOf(value) == kindOf(condition.value())
                                             : condition == default_error_condition(value);
    }

private:
    static char const* textOf(Kind kind)
    {
        switch (kind) {
        case Kind::none:
            break;
        case Kind::notConnected:
            return "no process that has the object is reached";
        case Kind::noSuchObject:
            return "there is no such object";
        case Kind::noSuchOperation:
            return "the object has no such operation";
        case Kind::refused:
            return "the request was not accepted";
        case Kind::deadline:
            return "no reply in time";
        case Kind::connectionLost:
            return "the connection was lost";
        case Kind::malformedReply:
            return "what came back is no reply";
        case Kind::busy:
            return "no thread is left there for it";
        case Kind::cancelled:
            return "the call was cancelled";
        }
        return "no failure";
    }
};

} // namespace

std::error_category const& callCategory()
{
    static CallCategory const category;
    return category;
}

std::error_code errorOf(Kind kind, CarriedOut carriedOut)
{
    return {kind == Kind::none ? 0 : static_cast<int>(kind) | static_cast<int>(carriedOut) << kindBits, callCategory()};
}

CarriedOut carriedOut(std::error_code error)
{
    if (error.category() != callCategory()) {
        return error ? CarriedOut::unknown : CarriedOut::yes;
    }
    return error ? static_cast<CarriedOut>(error.value() >> kindBits) : CarriedOut::yes;
}

WaitingForCalls::WaitingForCalls() : pause_(std::make_unique<RunPermissionPause>()) {}

WaitingForCalls::~WaitingForCalls() = default;

} // namespace trs
