#include "tools/support/Colour.h"

#include <atomic>
#include <cstdlib>
#include <string_view>
#include <unistd.h>

namespace trs::tools {

namespace {

bool isSeen()
{
    char const* const none = std::getenv("NO_COLOR");
    char const* const terminal = std::getenv("TERM");
    return ::isatty(STDOUT_FILENO) == 1 && (none == nullptr || *none == '\0') && terminal != nullptr &&
           std::string_view(terminal) != "dumb";
}

std::atomic<UseOfColour> useOfColour = UseOfColour::whereItIsSeen;

bool isUsed()
{
    static bool const seen = isSeen();
    UseOfColour const use = useOfColour;
    return use == UseOfColour::always || (use == UseOfColour::whereItIsSeen && seen);
}

// ECMA-48, select graphic rendition.
char const* codeOf(Colour colour)
{
    switch (colour) {
    case Colour::head:
        return "1";
    case Colour::name:
        return "36";
    case Colour::good:
        return "32";
    case Colour::bad:
        return "31";
    case Colour::aside:
        return "2";
    }
    return "0";
}

} // namespace

void setUseOfColour(UseOfColour use) { useOfColour = use; }

std::string coloured(std::string const& text, Colour colour)
{
    return isUsed() && !text.empty() ? std::string("\033[") + codeOf(colour) + 'm' + text + "\033[0m" : text;
}

} // namespace trs::tools
