// Text that XML can carry.
#pragma once

#include <string>
#include <string_view>

namespace trs::adapter {

// `bytes` as the content of an element or a quoted attribute of an XML 1.0 document in UTF-8, on one line. What XML
// cannot carry, control characters and what is not UTF-8, becomes \x and two digits for each byte.
std::string xmlText(std::string_view bytes);

} // namespace trs::adapter
