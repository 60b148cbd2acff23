#include "catalogue/Value.h"

#include "catalogue/Json.h"
#include "catalogue/ObjectName.h"
#include "catalogue/Text.h"
#include "rmi/ResponseInfo.h"
#include "rmi/Wire.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <fmt/format.h>
#include <optional>

namespace trs::catalogue {

namespace {

using Kind = Type::Kind;

struct Range {
    std::int64_t least;
    std::int64_t most;
};

Range rangeOf(Type const& type)
{
    switch (type.kind) {
    case Kind::octet:
        return {0, UINT8_MAX};
    case Kind::int16:
        return {INT16_MIN, INT16_MAX};
    case Kind::unsigned16:
        return {0, UINT16_MAX};
    case Kind::unsigned32:
        return {0, UINT32_MAX};
    default:
        return {INT32_MIN, INT32_MAX};
    }
}

// The text of the octets; nothing when one is none.
std::optional<std::string> addressText(Value const& octets)
{
    bool const isIp = octets.size() == 4;
    std::string text;
    for (Value const& octet : octets) {
        int const number = octet.get<int>();
        if (number < 0 || number > 255) {
            return std::nullopt;
        }
        text += text.empty() ? "" : isIp ? "." : ":";
        text += isIp ? fmt::format("{}", number) : fmt::format("{:02x}", number);
    }
    return text;
}

// The octets of "10.0.0.1" or "02:00:5e:10:00:01"; null when the text is none.
Value addressOctets(std::string const& text, unsigned long count)
{
    Value octets = Value::array();
    char const* at = text.data();
    char const* const end = at + text.size();
    for (unsigned long i = 0; i < count; ++i) {
        int octet = 0;
        if (i != 0 && (at == end || *at++ != (count == 4 ? '.' : ':'))) {
            return nullptr;
        }
        auto const [next, error] = std::from_chars(at, end, octet, count == 4 ? 10 : 16);
        if (error != std::errc() || next == at || next - at > 3 || octet < 0 || octet > 255) {
            return nullptr;
        }
        octets.push_back(octet);
        at = next;
    }
    return at == end ? octets : Value();
}

template <class T>
T take(TipprmiStream& stream)
{
    T value{};
    Wire<T>::read(stream, value);
    return value;
}

Value readElements(TipprmiStream& stream, Type const& type, unsigned long count)
{
    Value elements = Value::array();
    for (unsigned long i = 0; i < count && !stream.hasUnmarshallingFailed(); ++i) {
        elements.push_back(readValue(stream, *type.element));
    }
    if (isAddress(type) && !stream.hasUnmarshallingFailed()) {
        std::optional<std::string> const text = addressText(elements);
        return text ? Value(*text) : elements;
    }
    return elements;
}

std::string shown(Value const& value) { return toJson(value, -1); }

// Puts the field or element in front of what is wrong with its value.
std::string within(std::string const& part, std::string const& wrong)
{
    return wrong.empty() ? wrong : part + (wrong.front() == '.' || wrong.front() == '[' ? "" : ": ") + wrong;
}

std::string writeNumber(TipprmiStream& stream, Type const& type, Value const& value)
{
    Range const range = rangeOf(type);
    bool const isInRange = value.is_number_unsigned()
                               ? value.get<std::uint64_t>() <= static_cast<std::uint64_t>(range.most)
                               : value.is_number_integer() && value.get<std::int64_t>() >= range.least &&
                                     value.get<std::int64_t>() <= range.most;
    if (!isInRange) {
        return fmt::format("{} is no number from {} to {}", shown(value), range.least, range.most);
    }
    std::int64_t const number = value.get<std::int64_t>();
    switch (type.kind) {
    case Kind::octet:
        Wire<unsigned char>::write(stream, static_cast<unsigned char>(number));
        break;
    case Kind::int16:
        Wire<short>::write(stream, static_cast<short>(number));
        break;
    case Kind::unsigned16:
        Wire<unsigned short>::write(stream, static_cast<unsigned short>(number));
        break;
    default:
        Wire<unsigned long>::write(stream, static_cast<unsigned long>(number));
    }
    return {};
}

std::string writeEnumerator(TipprmiStream& stream, Type const& type, Value const& value)
{
    if (value.is_string()) {
        auto const& name = value.get_ref<std::string const&>();
        auto found = std::ranges::find(type.enumerators, name, &Enumerator::name);
        if (found == type.enumerators.end()) { // in whatever case where it can be only one
            auto const isCalled = [&name](Enumerator const& each) { return isSameWord(each.name, name); };
            found = std::ranges::count_if(type.enumerators, isCalled) == 1
                        ? std::ranges::find_if(type.enumerators, isCalled)
                        : found;
        }
        if (found != type.enumerators.end()) {
            return writeNumber(stream, type, found->value);
        }
        std::string names;
        for (Enumerator const& enumerator : type.enumerators) {
            names += (names.empty() ? "" : ", ") + std::string(enumerator.name);
        }
        return shown(value) + " is none of " + names + ", or a number";
    }
    return writeNumber(stream, type, value);
}

std::string writeElements(TipprmiStream& stream, Type const& type, Value const& value)
{
    if (isAddress(type) && value.is_string()) {
        Value const octets = addressOctets(value.get<std::string>(), type.count);
        return octets.is_null()
                   ? shown(value) + " is no address such as " + (type.count == 4 ? "10.0.0.1" : "02:00:5e:10:00:01")
                   : writeElements(stream, type, octets);
    }
    if (!value.is_array()) {
        return shown(value) + " is no array";
    }
    if (type.kind == Kind::array && value.size() != type.count) {
        return fmt::format("an array of {} elements, not {}", value.size(), type.count);
    }
    if (type.kind == Kind::sequence) {
        Wire<unsigned long>::write(stream, value.size());
    }
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (std::string wrong = writeValue(stream, *type.element, value[i]); !wrong.empty()) {
            return within(fmt::format("[{}]", i), wrong);
        }
    }
    return {};
}

std::string writeRecord(TipprmiStream& stream, Type const& type, Value const& value)
{
    if (!value.is_object()) {
        return shown(value) + " is no object with the fields of " + std::string(type.name);
    }
    for (auto const& [name, unused] : value.items()) {
        if (std::ranges::find(type.fields, name, &Field::name) == type.fields.end()) {
            return '\'' + name + "' is no field of " + std::string(type.name);
        }
    }
    for (Field const& field : type.fields) {
        std::string const name(field.name);
        auto const found = value.find(name);
        if (found == value.end()) {
            return '\'' + name + "' is missing, a field of " + std::string(type.name);
        }
        if (std::string wrong = writeValue(stream, *field.type, *found); !wrong.empty()) {
            return within('.' + name, wrong);
        }
    }
    return {};
}

std::string writeObject(TipprmiStream& stream, Value const& value)
{
    ObjectName name;
    if (value.is_string()) {
        if (std::string wrong = ObjectName::parse(value.get<std::string>(), name); !wrong.empty()) {
            return wrong;
        }
    } else if (!value.is_null()) {
        return shown(value) + " is no object, Class:identifier, and not null";
    }
    stream << TipprmiObjectClient(TipprmiOID(name.id));
    return {};
}

Value plainZero(Type const& type)
{
    switch (type.kind) {
    case Type::Kind::boolean:
        return false;
    case Type::Kind::text:
        return "";
    case Type::Kind::sequence:
        return Value::array();
    case Type::Kind::array:
        return std::vector<Value>(type.count, plainZero(*type.element));
    case Type::Kind::record: {
        Value record = Value::object();
        for (Field const& field : type.fields) {
            record[std::string(field.name)] = plainZero(*field.type);
        }
        return record;
    }
    case Type::Kind::object:
        return {};
    default:
        return 0;
    }
}

} // namespace

bool isAddress(Type const& type)
{
    return type.kind == Kind::array && type.element->kind == Kind::int16 && (type.count == 4 || type.count == 6);
}

Value readValue(TipprmiStream& stream, Type const& type)
{
    switch (type.kind) {
    case Kind::boolean:
        return take<bool>(stream);
    case Kind::octet:
        return take<unsigned char>(stream);
    case Kind::int16:
        return take<short>(stream);
    case Kind::unsigned16:
        return take<unsigned short>(stream);
    case Kind::int32:
        return take<int>(stream);
    case Kind::unsigned32:
        return take<unsigned long>(stream);
    case Kind::text:
        return take<std::string>(stream);
    case Kind::array:
        return readElements(stream, type, type.count);
    case Kind::sequence: {
        // Every element takes a byte at least, so that a count which cannot be true takes no memory.
        auto const count = take<unsigned long>(stream);
        if (count > stream.available()) {
            stream.fail();
        }
        return readElements(stream, type, count);
    }
    case Kind::enumeration: {
        int const number = take<int>(stream);
        auto const found = std::ranges::find(type.enumerators, number, &Enumerator::value);
        return found != type.enumerators.end() ? Value(found->name) : Value(number);
    }
    case Kind::record: {
        Value record = Value::object();
        for (Field const& field : type.fields) {
            record[std::string(field.name)] = readValue(stream, *field.type);
        }
        return record;
    }
    case Kind::object: {
        TipprmiObjectClient object;
        stream >> object;
        std::string const& id = object.getOID().getIdString();
        return id.empty() ? Value() : Value(ObjectName{std::string(type.name), id}.text());
    }
    case Kind::status:
        break;
    }
    auto const subSystem = take<unsigned long>(stream);
    return {{"subSystem", subSystem}, {"failed", take<unsigned long>(stream)}};
}

Value zero(Type const& type)
{
    TipprmiStream stream(100);
    writeValue(stream, type, plainZero(type));
    return readValue(stream, type); // as it is read: an address, the name of an enumerator
}

std::string writeValue(TipprmiStream& stream, Type const& type, Value const& value)
{
    switch (type.kind) {
    case Kind::boolean:
        if (!value.is_boolean()) {
            return shown(value) + " is neither true nor false";
        }
        Wire<bool>::write(stream, value.get<bool>());
        return {};
    case Kind::text:
        if (!value.is_string()) {
            return shown(value) + " is no text";
        }
        stream << value.get<std::string>();
        return {};
    case Kind::enumeration:
        return writeEnumerator(stream, type, value);
    case Kind::array:
    case Kind::sequence:
        return writeElements(stream, type, value);
    case Kind::record:
        return writeRecord(stream, type, value);
    case Kind::object:
        return writeObject(stream, value);
    case Kind::status:
        return "a status is never sent";
    default:
        return writeNumber(stream, type, value);
    }
}

void writeStatus(TipprmiStream& stream, bool isDone)
{
    Wire<ResponseInfo<SetClient>>::write(stream, isDone ? SetClient::OK : SetClient::FAILED);
}

} // namespace trs::catalogue
