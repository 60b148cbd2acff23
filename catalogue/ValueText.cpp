#include "catalogue/ValueText.h"

#include "catalogue/File.h"
#include "catalogue/Json.h"

#include <charconv>
#include <fmt/format.h>

namespace trs::catalogue {

namespace {

// JSON, or that of a file.
std::string parseComposed(std::string const& text, Value& value)
{
    std::string json = text;
    if (text.starts_with('@')) {
        std::string const file = text.substr(1);
        if (std::string why = file == "-" ? readStandardInput(json) : readWholeFile(file, json); !why.empty()) {
            return why;
        }
    }
    std::string const wrong = parseJson(json, value);
    return wrong.empty() ? wrong : '\'' + text + "' is " + wrong;
}

// The number, or the text when it is none: it may be the name of one.
Value readNumber(std::string const& text)
{
    bool const isHexadecimal = text.starts_with("0x");
    std::int64_t number = 0;
    char const* const begin = text.data() + (isHexadecimal ? 2 : 0);
    char const* const end = text.data() + text.size();
    auto const [next, error] = std::from_chars(begin, end, number, isHexadecimal ? 16 : 10);
    return error == std::errc() && next == end && begin != end ? Value(number) : Value(text);
}

} // namespace

std::string parseValue(Type const& type, std::string const& text, Value& value)
{
    bool const isSimple = type.kind != Type::Kind::record && type.kind != Type::Kind::sequence &&
                          (type.kind != Type::Kind::array || isAddress(type));
    if (isSimple && text == "@-") {
        std::string given;
        std::string why = readStandardInput(given);
        bool const isLine = type.kind != Type::Kind::text && given.ends_with('\n');
        given.resize(given.size() - (isLine ? 1 : 0));
        return !why.empty() ? why : given == "@-" ? "standard input refers to itself" : parseValue(type, given, value);
    }
    bool const isComposed = type.kind == Type::Kind::record || type.kind == Type::Kind::sequence ||
                            (type.kind == Type::Kind::array && (!isAddress(type) || text.starts_with('[')));
    if (isComposed) {
        return parseComposed(text, value);
    }
    if (type.kind == Type::Kind::text || type.kind == Type::Kind::array) {
        value = text;
    } else if (type.kind == Type::Kind::object) {
        value = text == "none" ? Value() : Value(text);
    } else if (text == "true" || text == "false") {
        value = text == "true";
    } else {
        value = readNumber(text);
    }
    return {};
}

void forEachLeaf(Value const& value, LeafVisitor const& visit, std::string const& path)
{
    if (value.is_object() && !value.empty()) {
        for (auto const& [name, part] : value.items()) {
            forEachLeaf(part, visit, path.empty() ? name : fmt::format("{}.{}", path, name));
        }
    } else if (value.is_array() && !value.empty()) {
        for (std::size_t i = 0; i < value.size(); ++i) {
            forEachLeaf(value[i], visit, fmt::format("{}[{}]", path, i));
        }
    } else {
        visit(path, value);
    }
}

std::string textOf(Value const& leaf)
{
    return leaf.is_string() ? leaf.get<std::string>() : leaf.is_null() ? "none" : toJson(leaf, -1);
}

} // namespace trs::catalogue
