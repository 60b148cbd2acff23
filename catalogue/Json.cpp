#include "catalogue/Json.h"

#include <algorithm>
#include <fmt/format.h>

namespace trs::catalogue {

namespace {

// Of text that need not be JSON: at least as deep as what a parser makes of it.
bool isTooDeep(std::string_view text)
{
    int depth = 0;
    bool isInString = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char const each = text[i];
        if (each == '"') {
            isInString = !isInString;
        } else if (isInString) {
            i += each == '\\' ? 1 : 0;
        } else if (each == '[' || each == '{') {
            if (++depth > deepestJson) {
                return true;
            }
        } else if (each == ']' || each == '}') {
            --depth;
        }
    }
    return false;
}

// On one line. A terminal takes U+007F to U+009F for controls, which JSON need not escape, but may.
std::string dumped(Value const& value)
{
    std::string const plain = value.dump(-1, ' ', false, Value::error_handler_t::replace);
    std::string text;
    std::size_t copied = 0;
    for (std::size_t i = plain.find_first_of("\x7f\xc2"); i != std::string::npos;
         i = plain.find_first_of("\x7f\xc2", i + 1)) {
        std::size_t const length = plain[i] == '\x7f' ? 1 : 2;
        auto const control = static_cast<unsigned char>(plain[i + length - 1]);
        if (control < 0xa0) {
            text.append(plain, copied, i - copied) += fmt::format("\\u{:04x}", control);
            copied = i + length;
        }
    }
    return text.append(plain, copied);
}

// Each part on a line of its own, but for lists of plain values. `margin`: a line's end and the indentation of the
// next.
void appendJson(std::string& text, Value const& value, std::string const& margin, std::string const& step)
{
    bool const isList =
        value.is_array() && std::ranges::none_of(value, [](Value const& part) { return part.is_structured(); });
    if (!value.is_structured() || value.empty() || isList) {
        text += dumped(value);
        return;
    }
    std::string const inner = margin + step;
    text += value.is_object() ? '{' : '[';
    char const* separator = "";
    for (auto const& [name, part] : value.items()) {
        (text += separator) += inner;
        separator = ",";
        if (value.is_object()) {
            text += dumped(name) + ": ";
        }
        appendJson(text, part, inner, step);
    }
    (text += margin) += value.is_object() ? '}' : ']';
}

} // namespace

std::string parseJson(std::string_view text, Value& value)
{
    if (isTooDeep(text)) {
        return "JSON nested more than " + std::to_string(deepestJson) + " levels deep";
    }
    value = Value::parse(text, nullptr, false);
    return value.is_discarded() ? "no JSON" : "";
}

std::string toJson(Value const& value, int indent)
{
    if (indent < 0) {
        return dumped(value);
    }
    std::string text;
    appendJson(text, value, "\n", std::string(static_cast<std::size_t>(indent), ' '));
    return text;
}

} // namespace trs::catalogue
