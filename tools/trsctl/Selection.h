// Parts of results that a path selects: the simple part of JSONPath (RFC 9535).
#pragma once

#include "catalogue/Value.h"

#include <string>
#include <string_view>
#include <vector>

namespace trs::ctl {

// $.objects[*].mtu: from the root, which may be left out with its dot, by names (.name, ['name']), by indexes ([0],
// [-1] from the end), by all children (.*, [*]), and by descendants (..name, ..*). There are no filters, slices and
// unions.
class Selection {
public:
    // Selects the whole.
    Selection() = default;
    // Empty, or what is wrong with the text.
    static std::string parse(std::string const& text, Selection& selection);

    bool isWhole() const { return steps_.empty(); }
    // What it was read from.
    std::string const& text() const { return text_; }
    // Whether it selects one part at most, whatever there is (a singular query).
    bool isSingular() const;
    // The parts, in the order of the value.
    std::vector<catalogue::Value> of(catalogue::Value const& value) const;

private:
    struct Step {
        enum class Kind { name, index, all } kind;
        bool isDeep; // of all descendants
        std::string name = {};
        long index = 0;
    };

    static bool takeStep(std::string_view& rest, bool isFirst, Step& step);
    static bool takeBracketed(std::string_view& rest, Step& step);
    static void addChildren(catalogue::Value const& base, Step const& step,
                            std::vector<catalogue::Value const*>& parts);

    std::string text_;
    std::vector<Step> steps_;
};

} // namespace trs::ctl
