#include "catalogue/Json.h"

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

} // namespace

std::string parseJson(std::string_view text, Value& value)
{
    if (isTooDeep(text)) {
        return "JSON nested more than " + std::to_string(deepestJson) + " levels deep";
    }
    value = Value::parse(text, nullptr, false);
    return value.is_discarded() ? "no JSON" : "";
}

} // namespace trs::catalogue
