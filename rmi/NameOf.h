// Names of classes and members as the compiler knows them, so that nobody types them a second time.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace reflect {

template <auto Member>
consteval char const* prettyMember()
{
    return __PRETTY_FUNCTION__; // ... [with auto Member = &IfNetClient::getMtu] / [Member = &IfNetClient::getMtu]
}

template <class T>
consteval char const* prettyClass()
{
    return __PRETTY_FUNCTION__; // ... [with T = IfNetClient] / [T = IfNetClient]
}

consteval std::string_view argumentOf(std::string_view pretty)
{
    std::size_t const start = pretty.find("= ") + 2;
    return pretty.substr(start, pretty.rfind(']') - start);
}

consteval std::string_view lastComponent(std::string_view qualified)
{
    return qualified.substr(qualified.rfind(':') + 1);
}

template <std::string_view const& Text>
struct Terminated {
    static constexpr auto characters = [] {
        std::array<char, Text.size() + 1> copy{};
        for (std::size_t i = 0; i < Text.size(); ++i) {
            copy[i] = Text[i];
        }
        return copy;
    }();
};

template <auto Member>
struct MemberName {
    static constexpr std::string_view text = lastComponent(argumentOf(prettyMember<Member>()));
    static_assert(!text.empty() && text.find_first_of(" &()<>{},") == std::string_view::npos,
                  "the compiler spells members in a way this header does not know");
};

template <class T>
struct ClassName {
    static constexpr std::string_view text = argumentOf(prettyClass<T>());
};

// "getMtu" for &IfNetClient::getMtu, "ipAddress" for &IfNetClient::IpAddrInfo::ipAddress.
template <auto Member>
inline constexpr std::string_view memberName = MemberName<Member>::text;
// The same, ended by a zero byte.
template <auto Member>
inline constexpr char const* memberNameZ = Terminated<MemberName<Member>::text>::characters.data();

// "IfNetClient" for that class, "IfNetClient::IpAddrInfo" for a nested one.
template <class T>
inline constexpr std::string_view className = ClassName<T>::text;

} // namespace reflect
