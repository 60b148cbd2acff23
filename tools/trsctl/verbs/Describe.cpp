// trsctl list and describe: what the catalogue says, without a unit.
#include "catalogue/Class.h"
#include "catalogue/Constants.h"
#include "catalogue/Json.h"
#include "catalogue/Limits.h"
#include "tools/support/StandardStreams.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Target.h"
#include "tools/trsctl/Verbs.h"

#include <charconv>
#include <fmt/format.h>
#include <memory>

namespace trs::ctl {

namespace {

using catalogue::Class;
using catalogue::Type;
using catalogue::Value;

std::string hexadecimal(std::uint32_t id) { return fmt::format("0x{:08x}", id); }

// A class by name, interface name or identifier; null, and said why, when there is none.
Class const* find(std::string const& name)
{
    Class const* found = nullptr;
    if (name.starts_with("0x")) {
        std::uint32_t id = 0;
        auto const [end, error] = std::from_chars(name.data() + 2, name.data() + name.size(), id, 16);
        found = error == std::errc() && end == name.data() + name.size() ? catalogue::findClass(id) : nullptr;
    }
    return found != nullptr ? found : findClass(name);
}

// The records and enumerations that a type consists of, each once, in the order in which they are met.
void collect(Type const& type, std::vector<Type const*>& types)
{
    if (type.element != nullptr) {
        collect(*type.element, types);
    }
    bool const isNamed = type.kind == Type::Kind::record || type.kind == Type::Kind::enumeration;
    if (isNamed && std::find(types.begin(), types.end(), &type) == types.end()) {
        types.push_back(&type);
        for (catalogue::Field const& field : type.fields) {
            collect(*field.type, types);
        }
    }
}

Value partsOf(Type const& type)
{
    Value parts = Value::object();
    for (catalogue::Field const& field : type.fields) {
        parts[std::string(field.name)] = field.type->text();
    }
    for (catalogue::Enumerator const& enumerator : type.enumerators) {
        parts[std::string(enumerator.name)] = enumerator.value;
    }
    return parts;
}

// By part, such as "params.vlanId": the limits in words, or as programs read them.
Value limitsOf(catalogue::Operation const& operation, Format format)
{
    Value limits = Value::object();
    for (catalogue::LimitedPart const& part : catalogue::limitedParts(operation)) {
        Value& told = limits[part.path];
        if (format == Format::json) {
            told.update(part.limit->json());
        } else {
            told = (told.is_null() ? "" : told.get<std::string>() + ", ") + part.limit->text();
        }
    }
    return limits;
}

// The names of limits of a parameter and its parts, without the parameter's own: "" and ".vlanId".
Value limitsOf(catalogue::Operation const& operation, std::string const& parameter)
{
    Value limits = Value::object();
    for (catalogue::LimitedPart const& part : catalogue::limitedParts(operation)) {
        bool const isPart = part.path.starts_with(parameter) &&
                            (part.path.size() == parameter.size() || part.path[parameter.size()] == '.' ||
                             part.path[parameter.size()] == '[');
        if (isPart) {
            limits[part.path.substr(parameter.size())].update(part.limit->json());
        }
    }
    return limits;
}

// As programs read it: what it takes and tells, each with type, direction, limits and unit where there are any.
Value parametersOf(catalogue::Operation const& operation)
{
    Value parameters = Value::array();
    std::vector<std::string_view> const names = operation.parameterNames();
    for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
        catalogue::Parameter const& each = operation.parameters[i];
        Value parameter{{"name", names[i]}, {"type", each.type->text()}, {"direction", each.isIn ? "in" : "out"}};
        if (Value limits = limitsOf(operation, std::string(names[i])); !limits.empty()) {
            parameter["limits"] = limits.size() == 1 && limits.contains("") ? limits[""] : std::move(limits);
        }
        if (std::string_view const unit = operation.unitOf(each); !unit.empty()) {
            parameter["unit"] = unit;
        }
        parameters.push_back(std::move(parameter));
    }
    return parameters;
}

char const* roadOf(catalogue::Operation const& operation) { return operation.isLocal ? "local" : "remote"; }

// An operation in the list of its class.
Value summary(catalogue::Operation const& operation, Format format)
{
    if (format != Format::json) {
        return fmt::format("{} {}", operation.index, operation.signature());
    }
    return {{"name", operation.name},
            {"index", operation.index},
            {"road", roadOf(operation)},
            {"result", operation.result != nullptr ? operation.result->text() : "void"},
            {"parameters", parametersOf(operation)}};
}

Value described(catalogue::Operation const& operation, Format format)
{
    std::vector<Type const*> types;
    for (catalogue::Parameter const& parameter : operation.parameters) {
        collect(*parameter.type, types);
    }
    if (operation.result != nullptr) {
        collect(*operation.result, types);
    }
    Value named = Value::object();
    for (Type const* const type : types) {
        named[std::string(type->name)] = partsOf(*type);
    }
    Value value{
        {"operation", operation.name},   {"class", operation.className}, {"classId", hexadecimal(operation.classId)},
        {"index", operation.index},      {"road", roadOf(operation)},    {"signature", operation.signature()},
        {"comment", operation.comment()}};
    if (format == Format::json) {
        value["result"] = operation.result != nullptr ? operation.result->text() : "void";
        value["parameters"] = parametersOf(operation);
    } else {
        std::vector<std::string_view> const names = operation.parameterNames();
        for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
            std::string_view const unit = operation.unitOf(operation.parameters[i]);
            if (!unit.empty()) {
                value["units"][std::string(names[i])] = unit;
            }
        }
    }
    if (!named.empty()) {
        value["types"] = named;
    }
    if (Value const limits = limitsOf(operation, format); !limits.empty()) {
        value["limits"] = limits;
    }
    return value;
}

ExitCode list(std::string const& className, Format format)
{
    std::vector<Row> rows;
    if (className.empty()) {
        for (Class const* const each : catalogue::classes()) {
            rows.push_back({each->name, hexadecimal(each->id), each->own.size(), each->baseName});
        }
        writeRows({"class", "identifier", "operations", "base"}, rows, format);
        return ExitCode::good;
    }
    Class const* const found = find(className);
    if (found == nullptr) {
        return ExitCode::usage;
    }
    for (catalogue::Operation const* const operation : found->operations()) {
        rows.push_back({operation->className, operation->index, operation->signature()});
    }
    writeRows({"class", "index", "signature"}, rows, format);
    return ExitCode::good;
}

// A value of a parameter to begin with: 0, false and empty in all its parts, or the least that is allowed.
ExitCode writeTemplate(catalogue::Operation const& operation, std::string const& parameter)
{
    std::vector<std::string_view> const names = operation.parameterNames();
    auto const found = std::ranges::find(names, parameter);
    if (found == names.end()) {
        return complain(fmt::format("'{}' is no parameter\n{}", parameter, operation.signature()));
    }
    auto const end = operation.parameters.begin() + (found - names.begin());
    std::vector<Value> in;
    for (auto each = operation.parameters.begin(); each != end; ++each) {
        if (each->isIn) {
            in.emplace_back(nullptr);
        }
    }
    in.push_back(catalogue::zero(*end->type));
    if (end->isIn) {
        catalogue::bringWithin(operation, in);
    }
    tools::say(catalogue::toJson(in.back()));
    return ExitCode::good;
}

ExitCode describe(std::string const& name, std::string const& parameter, Format format)
{
    std::size_t const dot = name.find('.');
    Class const* const found = find(name.substr(0, dot));
    if (found == nullptr) {
        return ExitCode::usage;
    }
    if (dot == std::string::npos && !parameter.empty()) {
        return complain("--template is for an operation: CLASS.OPERATION");
    }
    if (dot == std::string::npos) {
        Value operations = Value::array();
        for (catalogue::Operation const& operation : found->own) {
            operations.push_back(summary(operation, format));
        }
        Value value{{"class", found->name},
                    {"interface", found->interface},
                    {"identifier", hexadecimal(found->id)},
                    {"base", found->baseName},
                    {"operations", operations}};
        for (catalogue::Constant const* const constant : catalogue::constantsOf(*found)) {
            value["constants"][std::string(constant->name)] = constant->value;
        }
        writeResults(value, format);
        return ExitCode::good;
    }
    catalogue::Operation const* const operation = findOperation(*found, name.substr(dot + 1));
    if (operation == nullptr) {
        return ExitCode::usage;
    }
    if (!parameter.empty()) {
        return writeTemplate(*operation, parameter);
    }
    writeResults(described(*operation, format), format);
    return ExitCode::good;
}

} // namespace

void addDescribeVerbs(Program& program)
{
    auto const name = std::make_shared<std::string>();
    program.add(
        {.name = "list",
         .help = "List the classes, or the operations of one",
         .example = "list EthIfNet",
         .options = {{.name = "CLASS", .target = name.get(), .help = "With or without Client"}}},
        [name](Program::Options const& options) { return list(*name, options.format); }, Program::Units::none);

    auto const parameter = std::make_shared<std::string>();
    program.add(
        {.name = "describe",
         .help = "Describe a class or an operation",
         .example = "describe IfNet.getMtu",
         .options =
             {
                 {.name = "CLASS[.OPERATION]",
                  .target = name.get(),
                  .help = "The class by name or identifier, 0xb86aeff7",
                  .isRequired = true},
                 {.name = "--template",
                  .target = parameter.get(),
                  .help = "Write a value of this parameter to fill in, as JSON",
                  .type = "PARAMETER"},
             }},
        [name, parameter](Program::Options const& options) { return describe(*name, *parameter, options.format); },
        Program::Units::none);
}

} // namespace trs::ctl
