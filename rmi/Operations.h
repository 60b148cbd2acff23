// The operation list: the one place that states which operations an interface has and under which index.
#pragma once

#include "platform/TreflectMetaObject.h"
#include "rmi/NameOf.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <type_traits>

// Specialised beside every proxy class:
//     template <>
//     struct Operations<IfNetClient> : OperationList<IfNetClient, 0xb86aeff7,
//         Operation<2, &IfNetClient::getMtu>,
//         Operation<3, &IfNetClient::setMtu>> {};
// Names come from the member, the interface's from the class, the call's shape from the member's type. The proxy's
// bodies, its meta object, servers' dispatchers and servants, tools and reference pages all read this list.
template <class Proxy>
struct Operations;

namespace reflect {

// CRC-32 of IEEE 802.3 (reflected, initial value and final exclusive-or of all ones).
consteval std::uint32_t crc32(std::string_view text)
{
    std::uint32_t crc = 0xffffffff;
    for (char const character : text) {
        crc ^= static_cast<unsigned char>(character);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xedb88320 : 0);
        }
    }
    return ~crc;
}

template <class Member>
struct SignatureOf;
template <class C, class R, class... A>
struct SignatureOf<R (C::*)(A...) const> {
    using Class = C;
    using Result = R;
    using Arguments = std::tuple<A...>;
    using Function = R(A...);
    template <class S>
    using SkeletonMethod = R (S::*)(A...);
};
template <class C, class R, class... A>
struct SignatureOf<R (C::*)(A...)> {
    using Class = C;
};

// The class that declares a member function.
template <auto Member>
using DeclaringClass = typename SignatureOf<std::remove_const_t<decltype(Member)>>::Class;

// Comparing these types is how members are compared: GCC 12 cannot compare pointers to virtual members themselves in
// a constant expression.
template <auto Member>
struct Tag;

} // namespace reflect

// One remote-only operation.
template <unsigned long Index, auto Member>
struct Operation {
    using Signature = reflect::SignatureOf<std::remove_const_t<decltype(Member)>>;
    using MemberTag = reflect::Tag<Member>;
    static constexpr auto member = Member;
    static constexpr unsigned long index = Index;
    static constexpr std::string_view name = reflect::memberName<Member>;
    static constexpr TreflectMetaObject::MetaOpData meta{reflect::memberNameZ<Member>, Index};
    static constexpr bool isLocal = false;
};

// One local-capable operation: when the object lives in the calling process, the skeleton's member is called.
template <unsigned long Index, auto Member, auto SkeletonMember>
struct LocalOperation : Operation<Index, Member> {
    using Skeleton = reflect::DeclaringClass<SkeletonMember>;
    static constexpr auto skeletonMember = SkeletonMember;
    static constexpr bool isLocal = true;
    static_assert(std::is_same_v<std::remove_const_t<decltype(SkeletonMember)>,
                                 typename Operation<Index, Member>::Signature::template SkeletonMethod<Skeleton>>,
                  "the skeleton's operation has another signature than the proxy's");
    static_assert(reflect::memberName<Member> == reflect::memberName<SkeletonMember>,
                  "the skeleton's operation has another name than the proxy's");
};

template <class... Row>
struct RowList;

template <class Proxy, std::uint32_t ClassId, class... Row>
struct OperationList {
    static constexpr std::string_view className = reflect::className<Proxy>;
    static_assert(className.ends_with("Client"));
    static constexpr std::string_view interfaceName = className.substr(0, className.size() - 6);
    static constexpr std::uint32_t classId = ClassId;
    static_assert(reflect::crc32(interfaceName) == ClassId, "the identifier is not the CRC-32 of the interface name");

    using Rows = RowList<Row...>;
    static constexpr std::size_t count = sizeof...(Row);
    static constexpr std::array<TreflectMetaObject::MetaOpData, count> table{Row::meta...};

    static_assert((std::is_same_v<typename Row::Signature::Class, Proxy> && ...),
                  "a listed operation belongs to another class");
    static_assert(
        [] {
            std::array<unsigned long, count> const indexes{Row::index...};
            for (std::size_t i = 1; i < count; ++i) {
                if (indexes[i] <= indexes[i - 1]) {
                    return false;
                }
            }
            return true;
        }(),
        "operations are listed once each, in index order");
    static_assert(
        [] {
            std::array<std::string_view, count> const names{Row::name...};
            for (std::size_t i = 0; i < count; ++i) {
                for (std::size_t j = 0; j < i; ++j) {
                    if (names[i] == names[j]) {
                        return false;
                    }
                }
            }
            return true;
        }(),
        "an operation is listed twice");

    // Calls `visit` with a value of each row's type, in index order.
    template <class Visitor>
    static constexpr void forEach(Visitor&& visit)
    {
        (visit(Row{}), ...);
    }

private:
    template <auto Member, class... Remaining>
    struct Find;
    template <auto Member, class First, class... Remaining>
    struct Find<Member, First, Remaining...>
        : std::conditional_t<std::is_same_v<typename First::MemberTag, reflect::Tag<Member>>, std::type_identity<First>,
                             Find<Member, Remaining...>> {};
    template <auto Member>
    struct Find<Member> {
        static_assert(Member == nullptr, "the operation is missing from its class's list");
    };

public:
    template <auto Member>
    using RowOf = typename Find<Member, Row...>::type;
};

// The row of an operation, from the list of the class that declares it.
template <auto Member>
using OperationRow = typename Operations<reflect::DeclaringClass<Member>>::template RowOf<Member>;

// The identifier of the class that declares an operation.
template <auto Member>
inline constexpr std::uint32_t operationClassId = Operations<reflect::DeclaringClass<Member>>::classId;
