// The few words by which the message parser finds its way through a message document.
#pragma once

#include <string_view>

namespace xoh {

constexpr char PATH_SEPARATOR = '/';
constexpr std::string_view ROOT_PATH = "/BTSMessage";
constexpr std::string_view HEADER_ELEMENT = "BTSMessageHdr";

} // namespace xoh
