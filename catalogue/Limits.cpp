#include "catalogue/Limits.h"

#include "broker/PrintableText.h"
#include "catalogue/Json.h"
#include "catalogue/LimitTable.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace trs::catalogue {

namespace {

// The way to a value that is being checked.
struct ValuePath {
    ValuePath const* outer; // null: a parameter
    std::string_view name;
    std::size_t index; // of an element, which has no name

    std::string text() const
    {
        std::string const before = outer != nullptr ? outer->text() : std::string();
        return name.empty() ? before + '[' + std::to_string(index) + ']'
                            : before + (outer != nullptr ? "." : "") + std::string(name);
    }
};

// The number of a value; nothing when it is none. Greater ones than the greatest travel as no type.
std::optional<std::int64_t> integerOf(Value const& value)
{
    bool const isGreat = value.is_number_unsigned() && value.get<std::uint64_t>() > INT64_MAX;
    return value.is_number_integer() && !isGreat ? std::optional(value.get<std::int64_t>()) : std::nullopt;
}

// The mask of "255.255.0.0" or of four octets; nothing when it is none.
std::optional<std::uint32_t> maskOf(Value const& value)
{
    std::uint32_t mask = 0;
    if (value.is_array() && value.size() == 4) {
        for (Value const& each : value) {
            std::int64_t const octet = integerOf(each).value_or(-1);
            if (octet < 0 || octet > UINT8_MAX) {
                return std::nullopt;
            }
            mask = mask << 8 | static_cast<std::uint32_t>(octet);
        }
        return mask;
    }
    if (!value.is_string()) {
        return std::nullopt;
    }
    auto const& text = value.get_ref<std::string const&>();
    char const* at = text.data();
    char const* const end = at + text.size();
    for (int i = 0; i < 4; ++i) {
        unsigned char octet = 0;
        auto const [next, error] = std::from_chars(at, end, octet);
        if (error != std::errc() || (i < 3 ? next == end || *next != '.' : next != end)) {
            return std::nullopt;
        }
        mask = mask << 8 | octet;
        at = next + 1;
    }
    return mask;
}

bool isWithin(Limit const& limit, std::int64_t number)
{
    switch (limit.kind) {
    case Limit::Kind::named:
        return std::ranges::any_of(limit.names, [number](NamedValue const& each) { return each.value == number; });
    case Limit::Kind::bits:
        for (NamedValue const& each : limit.names) {
            number &= ~each.value.get<std::int64_t>();
        }
        return number == 0 || limit.orOthers;
    default:
        return std::ranges::any_of(limit.ranges, [number](NumberRange const& each) {
            return number >= each.least && number <= each.most && (number - each.least) % each.step == 0;
        });
    }
}

// Whether the value is within; of what has another type the limit says nothing.
bool isWithin(Limit const& limit, Value const& value)
{
    switch (limit.kind) {
    case Limit::Kind::netmask: {
        std::optional<std::uint32_t> const mask = maskOf(value);
        return !mask || (~*mask & (~*mask + 1)) == 0;
    }
    case Limit::Kind::characters:
        return !value.is_string() ||
               isWithin(limit, static_cast<std::int64_t>(value.get_ref<std::string const&>().size()));
    case Limit::Kind::entries:
        return !value.is_array() || isWithin(limit, static_cast<std::int64_t>(value.size()));
    default:
        break;
    }
    if (value.is_string() && limit.kind == Limit::Kind::named) {
        return !limit.names.front().value.is_string() ||
               std::ranges::any_of(limit.names, [&](NamedValue const& each) { return each.value == value; });
    }
    std::optional<std::int64_t> const number = integerOf(value);
    return !number || isWithin(limit, *number);
}

std::string shownValue(Limit const& limit, Value const& value)
{
    switch (limit.kind) {
    case Limit::Kind::characters:
        return std::to_string(value.get_ref<std::string const&>().size()) + " characters";
    case Limit::Kind::entries:
        return std::to_string(value.size()) + " entries";
    case Limit::Kind::netmask:
        return value.is_string() ? printable(value.get_ref<std::string const&>()) : toJson(value, -1);
    default:
        return printable(toJson(value, -1));
    }
}

class LimitCheck {
public:
    explicit LimitCheck(std::size_t most) : most_(most) {}

    void look(LimitedValue const& limited, Value const& value, ValuePath const& path)
    {
        for (Limit const& limit : limited.limits) {
            if (found_.size() < most_ && !isWithin(limit, value)) {
                found_.push_back({path.text(), shownValue(limit, value), limit.text()});
            }
        }
        if (value.is_object()) {
            for (LimitedValue const& field : limited.fields) {
                if (auto const found = value.find(field.name); found != value.end()) {
                    look(field, *found, {&path, field.name, 0});
                }
            }
        } else if (value.is_array() && !limited.element.empty()) {
            for (std::size_t i = 0; i < value.size() && found_.size() < most_; ++i) {
                look(limited.element.front(), value[i], {&path, {}, i});
            }
        }
    }

    std::vector<Violation> found() { return std::move(found_); }

private:
    std::size_t most_;
    std::vector<Violation> found_;
};

// Replaces a value that is outside the limit.
void bringWithin(Limit const& limit, Value& value)
{
    switch (limit.kind) {
    case Limit::Kind::netmask:
        value = "0.0.0.0";
        break;
    case Limit::Kind::characters:
        value.get_ref<std::string&>().resize(static_cast<std::size_t>(limit.ranges.front().least), ' ');
        break;
    case Limit::Kind::entries:
        if (auto const most = static_cast<std::size_t>(limit.ranges.front().most); value.size() > most) {
            value.erase(value.begin() + limit.ranges.front().most, value.end());
        }
        break;
    case Limit::Kind::named:
        value = limit.names.front().value;
        break;
    case Limit::Kind::bits:
        value = 0;
        break;
    default:
        value = limit.ranges.front().least;
    }
}

void bringWithin(LimitedValue const& limited, Value& value)
{
    for (Limit const& limit : limited.limits) {
        if (!isWithin(limit, value)) {
            bringWithin(limit, value);
        }
    }
    for (LimitedValue const& field : limited.fields) {
        if (value.is_object() && value.contains(field.name)) {
            bringWithin(field, value[field.name]);
        }
    }
    if (value.is_array() && !limited.element.empty()) {
        for (Value& element : value) {
            bringWithin(limited.element.front(), element);
        }
    }
}

void list(LimitedValue const& limited, std::string const& path, bool isIn, std::vector<LimitedPart>& parts)
{
    for (Limit const& limit : limited.limits) {
        parts.push_back({path, &limit, isIn});
    }
    for (LimitedValue const& field : limited.fields) {
        list(field, path + '.' + field.name, isIn, parts);
    }
    for (LimitedValue const& element : limited.element) {
        list(element, path + "[]", isIn, parts);
    }
}

} // namespace

std::string Limit::text() const
{
    std::string list;
    for (NumberRange const& each : ranges) {
        list += (list.empty() ? "" : " or ") + std::to_string(each.least);
        list += each.most != each.least ? ".." + std::to_string(each.most) : "";
        list += each.step != 1 ? " step " + std::to_string(each.step) : "";
    }
    for (NamedValue const& each : names) {
        bool const isItsName = each.value == each.name;
        list += (list.empty() ? "" : ", ") + std::string(each.name);
        list += isItsName ? "" : " (" + toJson(each.value, -1) + ')';
    }
    switch (kind) {
    case Kind::netmask:
        return "a contiguous netmask";
    case Kind::characters:
        return list + " characters";
    case Kind::entries:
        return list + " entries";
    case Kind::named:
        return "one of " + list;
    case Kind::bits:
        return "made of the bits " + list + (orOthers ? " and others" : "");
    default:
        return list;
    }
}

Value Limit::json() const
{
    Value list = Value::array();
    for (NumberRange const& each : ranges) {
        Value& range = list.emplace_back(Value{{"least", each.least}, {"most", each.most}});
        if (each.step != 1) {
            range["step"] = each.step;
        }
    }
    Value range = list.size() == 1 ? list[0] : Value{{"anyOf", list}};
    Value named = Value::object();
    for (NamedValue const& each : names) {
        named[std::string(each.name)] = each.value;
    }
    switch (kind) {
    case Kind::netmask:
        return {{"netmask", true}};
    case Kind::characters:
        return {{"characters", range}};
    case Kind::entries:
        return {{"entries", range}};
    case Kind::named:
        return {{"oneOf", named}};
    case Kind::bits:
        return {{"bits", named}, {"otherBits", orOthers}};
    default:
        return range;
    }
}

std::string Violation::text() const { return path + ": " + value + " is not " + allowed; }

bool hasLimits(Operation const& operation)
{
    return std::ranges::any_of(limitedValues(operation), &LimitedValue::isIn);
}

std::vector<Violation> violations(Operation const& operation, std::span<Value const> in, std::size_t most)
{
    LimitCheck check(most);
    for (LimitedValue const& parameter : limitedValues(operation)) {
        if (parameter.isIn && parameter.place < in.size()) {
            check.look(parameter, in[parameter.place], {nullptr, parameter.name, 0});
        }
    }
    return check.found();
}

void bringWithin(Operation const& operation, std::span<Value> in)
{
    for (LimitedValue const& parameter : limitedValues(operation)) {
        if (parameter.isIn && parameter.place < in.size()) {
            bringWithin(parameter, in[parameter.place]);
        }
    }
}

std::vector<LimitedPart> limitedParts(Operation const& operation)
{
    std::vector<LimitedPart> parts;
    for (LimitedValue const& value : limitedValues(operation)) {
        list(value, value.name, value.isIn, parts);
    }
    return parts;
}

} // namespace trs::catalogue
