// How comments state limits; docs/limits.md tells it.
#pragma once

#include "catalogue/Class.h"
#include "catalogue/Limits.h"

#include <string>
#include <string_view>
#include <vector>

namespace trs::catalogue {

// What a comment says of one value.
struct StatedLimit {
    std::string_view subject;   // the word before it, which may be the name of a parameter
    std::string_view reference; // the operation whose limits these are, such as "setMtu" or "IfNetClient::setMtu", or
    Limit limit;                // the limit itself
};

struct StatedLimits {
    std::vector<StatedLimit> limits;
    std::vector<std::string> wrong; // a line for each that cannot be read
};

// The class that "Class::name" names, null when there is none, or `scope`; `name` becomes what is behind the class.
Class const* splitScope(std::string_view& name, Class const* scope);

// `scope`: the class whose constants and operations names without a class stand for, and those of its bases; null for
// none.
StatedLimits readLimits(std::string_view comment, Class const* scope);

} // namespace trs::catalogue
