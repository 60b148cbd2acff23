// Single calls, byte by byte: what they send, and what they make of replies.
#pragma once

#include "rmi/Operations.h"
#include "tests/support/Recorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <tuple>
#include <type_traits>

namespace golden {

// Calls an operation and gives what came back: the result and the out-arguments, in wire form.
template <class Proxy, class R, class... A>
[[gnu::noinline]] std::string received(Proxy const& proxy, R (Proxy::*operation)(A...) const,
                                       std::tuple<std::remove_cvref_t<A>...>& arguments)
{
    TipprmiStream stream(100);
    std::apply(
        [&](auto&... argument) {
            if constexpr (std::is_void_v<R>) {
                (proxy.*operation)(argument...);
            } else {
                stream << (proxy.*operation)(argument...);
            }
        },
        arguments);
    [[maybe_unused]] auto const append = [&stream]<class Argument>(std::type_identity<Argument&>,
                                                                   auto const& argument) {
        if constexpr (!std::is_const_v<Argument>) {
            stream << argument;
        }
    };
    std::apply([&](auto const&... argument) { (append(std::type_identity<A>{}, argument), ...); }, arguments);
    return hex(stream);
}

// Pieces of a wire form, one after the other.
inline std::string bytes(std::initializer_list<std::string> pieces)
{
    std::string text;
    for (std::string const& piece : pieces) {
        text += text.empty() ? "" : " ";
        text += piece;
    }
    return text;
}

// Wire forms that many calls have.
inline constexpr char const* ok = "00 00 00 00 00 00 00 00";
inline constexpr char const* failed = "00 00 00 00 00 00 00 01";
inline constexpr char const* yes = "00 00 00 01";
inline constexpr char const* no = "00 00 00 00";
inline constexpr char const* none = "00 00 00 00"; // an empty sequence or string
inline constexpr char const* unbound = "00 00 00 01 00 00 00 00";
inline constexpr char const* referenceToA = "00 00 00 01 00 00 00 01 61";
inline constexpr char const* referenceToBc = "00 00 00 01 00 00 00 02 62 63";

// A value of an enumeration whose values only servers know.
template <class Enumeration>
constexpr Enumeration valueOf(int value)
{
    return static_cast<Enumeration>(value);
}

struct RequestCase {
    std::function<void(Recorder&)> call;
    Recorder::Call expected;
};
inline void expectRequests(std::initializer_list<RequestCase> cases)
{
    for (auto const& [call, expected] : cases) {
        Recorder object;
        call(object);
        EXPECT_THAT(object.calls, testing::ElementsAre(expected));
    }
}

// What a call gives that finds all its arguments zero, empty and unbound.
struct ReplyCase {
    std::string_view operation;
    std::string (*call)(TipprmiObjectSkeleton& object);
    std::string bytes;
};
template <auto Member>
ReplyCase replyTo(std::string bytesOfReply)
{
    return {reflect::memberName<Member>,
            [](TipprmiObjectSkeleton& object) {
                return []<class Proxy, class R, class... A>(Proxy const& proxy, R (Proxy::*operation)(A...) const) {
                    std::tuple<std::remove_cvref_t<A>...> arguments{};
                    return received(proxy, operation, arguments);
                }(reflect::DeclaringClass<Member>(&object), Member);
            },
            std::move(bytesOfReply)};
}
// That the values of a reply arrive in the result and the out-arguments. Written again, they give the same bytes; that
// fields are what their names say follows for records from the requests that carry them.
inline void expectReplies(std::initializer_list<ReplyCase> cases)
{
    for (ReplyCase const& reply : cases) {
        Recorder object;
        object.reply = reply.bytes;
        EXPECT_EQ(reply.call(object), reply.bytes) << reply.operation;
    }
}

// An object that carries out no call.
class Refuser : public TipprmiObjectSkeleton {
public:
    bool dispatch(bool, unsigned long, unsigned long, TipprmiStream&, TipprmiStream&) override { return false; }
};
inline void expectOfRefusedCalls(std::initializer_list<ReplyCase> cases)
{
    for (ReplyCase const& refused : cases) {
        Refuser object;
        EXPECT_EQ(refused.call(object), refused.bytes) << refused.operation;
    }
}

} // namespace golden
