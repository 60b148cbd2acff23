// The limits of values: what an operation's arguments may be, as its comment and those of record fields state it
// (docs/limits.md), and as types have it: octets of addresses, enumerations. Checks are for whoever asks: calls go out,
// and answers come in, whatever their values.
#pragma once

#include "catalogue/Class.h"
#include "catalogue/Value.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace trs::catalogue {

// A value with a name: a constant or an enumerator.
struct NamedValue {
    std::string_view name;
    Value value; // a number or a text
};

// Numbers from `least` to `most`, in steps from `least` on.
struct NumberRange {
    std::int64_t least = 0;
    std::int64_t most = 0;
    std::int64_t step = 1;
};

// What one value may be.
struct Limit {
    enum class Kind {
        ranges,     // a number in one of `ranges`
        named,      // one of `names`
        bits,       // a number made of the bits of `names`, and of others where `orOthers`
        netmask,    // an IPv4 mask: ones, then zeros
        characters, // a text of so many octets
        entries,    // a sequence of so many elements
    };

    Kind kind = Kind::ranges;
    std::vector<NumberRange> ranges = {};
    std::vector<NamedValue> names = {};
    bool orOthers = false;

    // For people: "68..65535", "0 or 2..10", "0..1000000 step 100", "one of ENABLED (11), DISABLED (12)".
    std::string text() const;
    // For programs: {"least": 68, "most": 65535}, {"oneOf": {"ENABLED": 11, "DISABLED": 12}}; docs/limits.md has all.
    Value json() const;
};

// Whether values of the operation's in-parameters can be outside limits. Prepared once; a lookup.
bool hasLimits(Operation const& operation);

// A value that is outside a limit.
struct Violation {
    std::string path;    // from the parameter on: "params.vlanId", "routes[2].netmask", "address[3]"
    std::string value;   // as it was given; of a text or a sequence its length, "21 characters", "4 entries"
    std::string allowed; // Limit::text()

    // "params.vlanId: 5000 is not 1..4094"
    std::string text() const;
};

// What is outside limits in the values of the in-parameters, in their order; the first `most` of it. Values that are
// not of their parameter's type, or missing, are passed over: writeValue() tells of them. Takes no memory when all is
// well.
std::vector<Violation> violations(Operation const& operation, std::span<Value const> in,
                                  std::size_t most = static_cast<std::size_t>(-1));

// Replaces what is outside limits by the least that is allowed, or by the first name; too much text or too many
// elements are left out. So zero() becomes a value to begin with.
void bringWithin(Operation const& operation, std::span<Value> in);

// A part of a parameter, or of the result, that has a limit.
struct LimitedPart {
    std::string path; // "mtu", "result", "params.vlanId", "routes[].netmask"; "[]" is any element
    Limit const* limit;
    bool isIn; // else told by the operation, and for information
};

// All of the operation, in the order of its parameters and fields.
std::vector<LimitedPart> limitedParts(Operation const& operation);

// What is wrong with the comments' limits: those that belong to no parameter or field, or that cannot be. Empty in a
// catalogue that is right; a line for each, with the operation or field.
std::vector<std::string> const& wrongLimits();

} // namespace trs::catalogue
