// Every byte that brokers exchange. All numbers are big-endian.
//
// A connection begins with a greeting of 8 bytes in each direction, the connecting side's first:
//     4  the characters "TOIP"
//     2  the version of this format, 1
//     2  zero; 1 when the accepting side has no room for another connection, which then ends; 2 when it cannot serve
//        it for another reason, which follows, the number of its bytes (4) and those bytes, before it ends
//
// Then messages follow, of TIPPRMI_MAX_MESSAGE bytes at most. Each begins with 12 bytes:
//     4  the number of bytes that follow these four
//     1  the kind (MessageKind)
//     1  the detail: of a reply its status (ReplyStatus); of a request whether the proxy's `flag` is set (0 or 1); of a
//        subscription 1 when it renews one that an earlier connection had, else 0; of others 0
//     2  zero
//     4  the number that the sender of a request, locate, subscribe or unsubscribe gave it; a reply repeats it; 0 in
//        a notification
// Requests, locate, subscribe, unsubscribe and notifications go on with the address of an operation:
//     4  the class identifier   \ 0 in a locate
//     4  the operation index    /
//     4  the object's namespace
//     4  the number of bytes of its identifier, and those bytes
// A request ends with the in-arguments. A reply whose status is `done` ends with the result and the out-arguments; one
// with another status ends after its 12 bytes, like a locate reply and a subscription reply. A notification ends with
// the parameter list: the number of values (4), and for each the number of bytes (4) and the bytes.
#pragma once

#include "broker/framing/OperationKey.h"
#include "platform/TipprmiForward.h"
#include "platform/TipprmiOID.h"
#include "platform/TipprmiStream.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace trs {

using Greeting = std::array<unsigned char, 8>;
enum class GreetingCheck { good, full, refusal, otherVersion, foreign };

Greeting makeGreeting();
// Of a server that is full.
Greeting makeFullGreeting();
// Of who cannot serve for another reason, of which mostReason bytes at most are told.
void appendRefusal(TipprmiStream& greeting, std::string_view why);
inline constexpr std::size_t mostReason = 1024;

// The length of the greeting that begins with these bytes, as far as they tell: there may be more of them, or fewer
// than the 8 that it has at least.
std::size_t greetingLength(unsigned char const* bytes, std::size_t count);
// What a greeting of that length says; of a refusal also why.
GreetingCheck checkGreeting(unsigned char const* bytes, std::size_t length, std::string_view* why = nullptr);

enum class MessageKind : std::uint8_t {
    request = 1,
    reply = 2,
    locate = 3,
    locateReply = 4,
    subscribe = 5,
    unsubscribe = 6,
    subscriptionReply = 7,
    notification = 8,
};

enum class ReplyStatus : std::uint8_t {
    done = 0,
    noSuchObject = 1,
    noSuchOperation = 2,
    unreadableRequest = 3,
    replyTooLong = 4, // the operation was executed
    busy = 5,         // the server has no thread left for it
};

inline constexpr std::size_t messageLengthSize = 4; // of the field that a message begins with
inline constexpr std::size_t messageHeaderSize = 12;

struct MessageHeader {
    MessageKind kind;
    std::uint8_t detail;
    std::uint32_t number;

    ReplyStatus status() const { return static_cast<ReplyStatus>(detail); }
};

// The address of an operation; `id` views the stream that it was read from.
struct ObjectAddress {
    std::uint32_t classId;
    std::uint32_t opIndex;
    std::uint32_t space;
    std::string_view id;

    OperationView view() const { return {space, id, classId, opIndex}; }
};

// Writing: begin, append what the kind goes on with, finish.
void beginMessage(TipprmiStream& message, MessageKind kind, std::uint8_t detail = 0);
void beginAddressed(TipprmiStream& message, MessageKind kind, std::uint8_t detail, TipprmiOID const& oid,
                    unsigned long classId, unsigned long opIndex);
inline void beginRequest(TipprmiStream& message, bool flag, TipprmiOID const& oid, unsigned long classId,
                         unsigned long opIndex)
{
    beginAddressed(message, MessageKind::request, flag ? 1 : 0, oid, classId, opIndex);
}
void appendParameters(TipprmiStream& message, TipprmiSequence<TipprmiAny> const& parameters);
// False when the message is too long to be sent.
bool finishMessage(TipprmiStream& message, std::uint32_t number);
// Cuts a reply to its header, with another status.
void reduceReply(TipprmiStream& reply, ReplyStatus status);

// Reading. The length of the message that begins with these four bytes, with them; 0 when no message begins so.
std::size_t messageLength(unsigned char const* bytes);
// Reads the header of a whole message; false when it is not well-formed.
bool readHeader(TipprmiStream& message, MessageHeader& header);
bool readAddress(TipprmiStream& message, ObjectAddress& address);
bool readParameters(TipprmiStream& message, TipprmiSequence<TipprmiAny>& parameters);
// Places the reader of a request that was begun, and need not be finished, at its first in-argument.
bool readPreparedRequest(TipprmiStream& request, ObjectAddress& address);

} // namespace trs
