#include "unit/CallGate.h"

#include "catalogue/MessageText.h"

#include "platform/TipprmiStream.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace trs::sim {

namespace {

using catalogue::Operation;
using catalogue::Type;
using Bytes = std::string;

constexpr std::chrono::milliseconds longestTrickle{2000};
constexpr std::size_t lengthSize = 4; // of the field that messages begin with
constexpr std::uint32_t greatestCount = 0xffffffff;

std::uint32_t numberAt(Bytes const& bytes, std::size_t place)
{
    std::uint32_t number = 0;
    for (std::size_t i = place; i < place + 4; ++i) {
        number = number << 8 | static_cast<unsigned char>(bytes[i]);
    }
    return number;
}

void setNumber(Bytes& bytes, std::size_t place, std::uint32_t number)
{
    for (std::size_t i = place + 4; i-- > place; number >>= 8) {
        bytes[i] = static_cast<char>(number);
    }
}

// The place of the first count in a value that `stream` is at: of a sequence's elements, or of a text's or an
// identifier's bytes. The stream is behind the value if there is none.
std::optional<std::size_t> firstCount(TipprmiStream& stream, Type const& type)
{
    switch (type.kind) {
    case Type::Kind::sequence:
    case Type::Kind::text:
        return stream.size() - stream.available();
    case Type::Kind::object:
        return stream.size() - stream.available() + 4; // behind the namespace
    case Type::Kind::array:
        for (unsigned long i = 0; i < type.count; ++i) {
            if (auto const place = firstCount(stream, *type.element)) {
                return place;
            }
        }
        return std::nullopt;
    case Type::Kind::record:
        for (catalogue::Field const& field : type.fields) {
            if (auto const place = firstCount(stream, *field.type)) {
                return place;
            }
        }
        return std::nullopt;
    default:
        catalogue::readValue(stream, type);
        return std::nullopt;
    }
}

// The same in a reply.
std::optional<std::size_t> firstCount(Bytes const& reply, Operation const* operation)
{
    if (operation == nullptr || reply.size() == messageHeaderSize) {
        return std::nullopt;
    }
    TipprmiStream stream(100);
    stream.marshall(reply.data(), static_cast<int>(reply.size()));
    stream.rewind(messageHeaderSize);
    std::optional<std::size_t> place;
    if (operation->result != nullptr) {
        place = firstCount(stream, *operation->result);
    }
    for (catalogue::Parameter const& parameter : operation->parameters) {
        if (!place && !parameter.isIn) {
            place = firstCount(stream, *parameter.type);
        }
    }
    return place && *place + 4 <= reply.size() ? place : std::nullopt;
}

void cut(Bytes& reply, std::uint32_t chance)
{
    std::size_t const content = reply.size() - messageHeaderSize;
    if (content != 0) {
        reply.resize(messageHeaderSize + chance % content);
        setNumber(reply, 0, static_cast<std::uint32_t>(reply.size() - lengthSize));
    }
}

void flip(Bytes& reply, std::uint32_t chance)
{
    std::size_t const bit = chance % ((reply.size() - lengthSize) * 8);
    reply[lengthSize + bit / 8] = static_cast<char>(reply[lengthSize + bit / 8] ^ (1 << bit % 8));
}

void lie(Bytes& reply, std::uint32_t chance, Operation const* operation)
{
    std::size_t const place = firstCount(reply, operation).value_or(0);
    setNumber(reply, place, chance % 2 == 0 && place != 0 ? greatestCount : numberAt(reply, place) + 1);
}

// What an operation answers that refuses: a status of failure, if it tells one.
bool refuse(TipprmiStream& reply, Operation const* operation)
{
    if (operation == nullptr || operation->result == nullptr || operation->result->kind != Type::Kind::status) {
        return false;
    }
    catalogue::writeStatus(reply, false);
    for (catalogue::Parameter const& parameter : operation->parameters) {
        if (!parameter.isIn) {
            catalogue::writeValue(reply, *parameter.type, catalogue::zero(*parameter.type));
        }
    }
    return true;
}

} // namespace

class CallGate::Call final : public TappedCall {
public:
    Call(CallGate& gate, ObjectAddress const& address, TipprmiStream const& request)
        : gate_(gate), address_(address), begin_(std::chrono::system_clock::now()), strike_(gate.plan_.strike(address))
    {
        if (gate.log_.isOpen()) {
            auto const* const bytes = reinterpret_cast<char const*>(request.data());
            arguments_.assign(bytes + request.size() - request.available(), request.available());
        }
    }

    std::chrono::milliseconds delay() override
    {
        if (!strike_ || gate_.isEnded_) {
            return {};
        }
        switch (strike_->kind) {
        case MisbehaviourKind::delay:
            return std::exchange(isExecuting_, true) ? std::chrono::milliseconds() : strike_->delay;
        case MisbehaviourKind::late:
            return std::exchange(isExecuting_, true) ? strike_->delay : std::chrono::milliseconds();
        case MisbehaviourKind::trickle:
            return trickled_ == 0 ? std::chrono::milliseconds() : pause_;
        default:
            return {};
        }
    }

    bool isExecuted(TipprmiStream& reply, ReplyStatus& status) override
    {
        if (!strike_ || strike_->kind != MisbehaviourKind::refuse) {
            return true;
        }
        status = refuse(reply, catalogue::operationOf(address_)) ? ReplyStatus::done : ReplyStatus::unreadableRequest;
        return false;
    }

    bool answer(TipprmiStream const& reply, Send const& send) override
    {
        if (trickled_ != 0) {
            return trickle(reply, send);
        }
        if (!gate_.keep_()) {
            return false;
        }
        Bytes bytes(reinterpret_cast<char const*>(reply.data()), reply.size());
        if (gate_.log_.isOpen()) {
            gate_.log_.write({address_, arguments_, bytes, strike_ ? MisbehaviourPlan::nameOf(strike_->kind) : "",
                              begin_, gate_.unitTime_()});
        }
        auto const sendSome = [&](std::size_t from, std::size_t length) {
            return send(reinterpret_cast<unsigned char const*>(bytes.data()) + from, length);
        };
        auto const sendAll = [&] { return sendSome(0, bytes.size()); };
        if (!strike_) {
            return sendAll();
        }
        switch (strike_->kind) {
        case MisbehaviourKind::refuse:
        case MisbehaviourKind::delay:
        case MisbehaviourKind::late:
            return sendAll();
        case MisbehaviourKind::drop:
            return true;
        case MisbehaviourKind::twice:
            sendAll();
            return sendAll();
        case MisbehaviourKind::cut:
            cut(bytes, strike_->chance);
            return sendAll();
        case MisbehaviourKind::flip:
            flip(bytes, strike_->chance);
            return sendAll();
        case MisbehaviourKind::lie:
            lie(bytes, strike_->chance, catalogue::operationOf(address_));
            return sendAll();
        case MisbehaviourKind::close:
            sendSome(0, bytes.size() / 2);
            return false;
        case MisbehaviourKind::trickle:
            pause_ = std::min(std::chrono::milliseconds(1), longestTrickle / static_cast<int>(bytes.size()));
            return trickle(reply, send);
        }
        return true;
    }

    bool isAnswered() override { return left_ == 0; }

private:
    // The next byte; all that are left when nothing is to wait any more.
    bool trickle(TipprmiStream const& reply, Send const& send)
    {
        std::size_t const count = pause_.count() == 0 || gate_.isEnded_ ? reply.size() - trickled_ : 1;
        bool const isSent = send(reply.data() + trickled_, count);
        trickled_ += count;
        left_ = reply.size() - trickled_;
        return isSent;
    }

    CallGate& gate_;
    ObjectAddress const& address_;
    CallLog::Time const begin_;
    std::optional<MisbehaviourPlan::Strike> const strike_;
    Bytes arguments_;
    bool isExecuting_ = false; // or has been: the first of the two times to wait is over
    std::chrono::milliseconds pause_{};
    std::size_t trickled_ = 0; // bytes
    std::size_t left_ = 0;
};

std::unique_ptr<TappedCall> CallGate::begin(ObjectAddress const& address, TipprmiStream const& request)
{
    ++count_;
    return std::make_unique<Call>(*this, address, request);
}

} // namespace trs::sim
