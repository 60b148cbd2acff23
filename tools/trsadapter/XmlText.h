// Text that XML can carry.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace trs::adapter {

// `bytes` as the content of an element or a quoted attribute of an XML 1.0 document in UTF-8, on one line. What XML
// cannot carry, control characters and what is not UTF-8, becomes \x and two digits for each byte.
std::string xmlText(std::string_view bytes);
// The same for as much of the beginning of `bytes` as gives `most` bytes of text; `bytes` is the rest afterwards.
std::string xmlTextOfHead(std::string_view& bytes, std::size_t most);

} // namespace trs::adapter
