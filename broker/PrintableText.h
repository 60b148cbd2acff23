// Text that came from elsewhere, where people read it.
#pragma once

#include <string>
#include <string_view>

namespace trs {

// The whole text for a terminal: control characters (U+0000 to U+001F, U+007F to U+009F), backslashes and bytes that
// are no UTF-8 become \xNN, so that it neither moves the cursor nor reads as something else.
std::string escaped(std::string_view text);
// The same for a line of a log or a complaint: of a long text the beginning, cut between two characters, and "...".
std::string printable(std::string_view text);

} // namespace trs
