#include "tools/traffic/Dissector.h"

#include "catalogue/Class.h"
#include "catalogue/MessageText.h"

#include <fmt/format.h>
#include <map>
#include <string>
#include <vector>

namespace trs::traffic {

namespace {

using catalogue::Type;

constexpr char const* runtime =
#include "traffic/dissector.inc"
    ;

char const* kindOf(Type::Kind kind)
{
    constexpr char const* names[] = {"boolean",    "octet",       "int16", "unsigned16", "int32",
                                     "unsigned32", "enumeration", "text",  "array",      "sequence",
                                     "record",     "object",      "status"};
    return names[static_cast<std::size_t>(kind)];
}

// The types, numbered from 1 on as they are met.
class Types {
public:
    std::size_t numberOf(Type const& type)
    {
        auto const [found, isNew] = numbers_.try_emplace(&type, numbers_.size() + 1);
        std::size_t const number = found->second;
        if (isNew) {
            rows_.emplace_back(); // its place; parts come behind
            std::string row = rowOf(type);
            rows_[number - 1] = std::move(row);
        }
        return number;
    }
    std::string text() const
    {
        std::string table = "local types = {\n";
        for (std::string const& row : rows_) {
            table += "    " + row + ",\n";
        }
        return table + "}\n";
    }

private:
    std::string rowOf(Type const& type)
    {
        std::string fields;
        for (catalogue::Field const& field : type.fields) {
            fields += fmt::format("{{\"{}\", {}}}, ", field.name, numberOf(*field.type));
        }
        std::string enumerators;
        for (catalogue::Enumerator const& each : type.enumerators) {
            enumerators += fmt::format("[{}] = \"{}\", ", each.value, each.name);
        }
        std::size_t const element = type.element != nullptr ? numberOf(*type.element) : 0;
        return fmt::format(R"({{"{}", "{}", {}, {}, {{{}}}, {{{}}}}})", kindOf(type.kind), type.name, element,
                           type.count, fields, enumerators);
    }

    std::map<Type const*, std::size_t> numbers_;
    std::vector<std::string> rows_;
};

std::string rowOf(catalogue::Operation const& operation, Types& types)
{
    std::string row = fmt::format("[{}] = {{\"{}.{}\", {}", operation.index, operation.className, operation.name,
                                  operation.result != nullptr ? types.numberOf(*operation.result) : 0);
    std::vector<std::string_view> const names = operation.parameterNames();
    for (std::size_t i = 0; i < names.size(); ++i) {
        catalogue::Parameter const& parameter = operation.parameters[i];
        row += fmt::format(", {{\"{}\", {}, {}}}", names[i], types.numberOf(*parameter.type), parameter.isIn);
    }
    return row + '}';
}

template <class Code>
std::string namesText(char const* table, Code first, Code last)
{
    std::string text = fmt::format("local {} = {{\n", table);
    for (auto code = static_cast<int>(first); code <= static_cast<int>(last); ++code) {
        text += fmt::format("    [{}] = \"{}\",\n", code, catalogue::nameOf(static_cast<Code>(code)));
    }
    return text + "}\n";
}

// A text of Lua, whatever bytes it has.
std::string quoted(std::string_view bytes)
{
    std::string text = "\"";
    for (char const each : bytes) {
        text += fmt::format("\\{:03}", static_cast<unsigned char>(each));
    }
    return text + '"';
}

std::string quoted(Greeting const& greeting)
{
    return quoted(std::string_view(reinterpret_cast<char const*>(greeting.data()), greeting.size()));
}

std::string wireText()
{
    TipprmiStream refusal(100);
    appendRefusal(refusal, {});
    Greeting refusing{};
    std::copy_n(refusal.data(), refusing.size(), refusing.begin());
    return fmt::format("local wire = {{\n"
                       "    greeting = {},\n    full = {},\n    refusal = {},\n    refusalSize = {},\n"
                       "    lengthSize = {},\n    headSize = {},\n"
                       "    greatestReason = {},\n    greatestMessage = {},\n}}\n",
                       quoted(makeGreeting()), quoted(makeFullGreeting()), quoted(refusing), refusal.size(),
                       messageLengthSize, messageHeaderSize, mostReason, TIPPRMI_MAX_MESSAGE);
}

} // namespace

std::string dissector()
{
    Types types;
    std::string operations = "local operations = {\n";
    for (catalogue::Class const* const type : catalogue::classes()) {
        operations += fmt::format("    [0x{:08x}] = {{\n", type->id);
        for (catalogue::Operation const& operation : type->own) {
            operations += "        " + rowOf(operation, types) + ",\n";
        }
        operations += "    },\n";
    }
    operations += "}\n";
    return "-- Made by `trsctl dissector`.\n" + wireText() +
           namesText("kinds", MessageKind::request, MessageKind::notification) +
           namesText("statuses", ReplyStatus::done, ReplyStatus::busy) + types.text() + operations + runtime;
}

} // namespace trs::traffic
