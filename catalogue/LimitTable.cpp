#include "catalogue/LimitTable.h"

#include "catalogue/LimitNotation.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

namespace trs::catalogue {

namespace {

constexpr int mostReferences = 4; // from one operation's comment to another's
constexpr int slotBits = 10;      // 1024 slots, for about 200 operations with limits

bool isOctets(Type const& type)
{
    return type.kind == Type::Kind::array && type.element->kind == Type::Kind::int16 &&
           (type.count == 4 || type.count == 6);
}

// Whether a number travels as this type, or is the value of an attribute object.
bool travels(std::int64_t number, Type const& type)
{
    switch (type.kind) {
    case Type::Kind::octet:
        return number >= 0 && number <= UINT8_MAX;
    case Type::Kind::int16:
        return number >= INT16_MIN && number <= INT16_MAX;
    case Type::Kind::unsigned16:
        return number >= 0 && number <= UINT16_MAX;
    case Type::Kind::int32:
        return number >= INT32_MIN && number <= INT32_MAX;
    case Type::Kind::unsigned32:
        return number >= 0 && number <= UINT32_MAX;
    case Type::Kind::object:
        return type.name == "QelLongClient" || type.name == "QelShortClient";
    default:
        return false;
    }
}

// Whether a limit can be one of a value of this type itself, not of its elements.
bool suits(Limit const& limit, Type const& type)
{
    switch (limit.kind) {
    case Limit::Kind::netmask:
        return isOctets(type) && type.count == 4;
    case Limit::Kind::characters:
        return type.kind == Type::Kind::text;
    case Limit::Kind::entries:
        return type.kind == Type::Kind::sequence;
    case Limit::Kind::named:
        if (limit.names.front().value.is_string()) {
            return type.kind == Type::Kind::text;
        }
        [[fallthrough]];
    case Limit::Kind::bits:
        return std::ranges::all_of(
            limit.names, [&](NamedValue const& each) { return travels(each.value.get<std::int64_t>(), type); });
    default:
        return std::ranges::all_of(limit.ranges, [&](NumberRange const& each) {
            return travels(each.least, type) && travels(each.most, type);
        });
    }
}

// Whether it can be one of a value of this type, or of its elements or fields.
bool isAbout(Limit const& limit, Type const& type)
{
    return suits(limit, type) || (type.element != nullptr && !isOctets(type) && isAbout(limit, *type.element)) ||
           std::ranges::any_of(type.fields, [&](Field const& field) { return isAbout(limit, *field.type); });
}

// Finds what a comment's limits are of.
class LimitAttachment {
public:
    LimitAttachment(Operation const& operation, std::vector<std::string>& wrong)
        : operation_(operation), names_(operation.parameterNames()), wrong_(wrong),
          subject_(std::string(operation.className) + "::" + std::string(operation.name) + "()")
    {
    }

    std::vector<LimitedValue> attach(std::string_view comment)
    {
        std::vector<LimitedValue> limited;
        std::vector<StatedLimit> const stated = statedLimits(comment, findClass(operation_.classId));
        std::vector<std::size_t> const places = placesOf(stated);
        std::size_t taken = 0;
        for (std::size_t i = 0; i < operation_.parameters.size(); ++i) {
            Parameter const& parameter = operation_.parameters[i];
            LimitedValue value = limitedValueOf(*parameter.type, limitsAt(stated, places, i));
            value.isIn = parameter.isIn;
            value.place = taken;
            taken += parameter.isIn ? 1 : 0;
            addLimited(limited, std::move(value), names_[i]);
        }
        if (operation_.result != nullptr) {
            LimitedValue value =
                limitedValueOf(*operation_.result, limitsAt(stated, places, operation_.parameters.size()));
            value.isIn = false;
            addLimited(limited, std::move(value), "result");
        }
        return limited;
    }

private:
    // A field is met in every operation that takes its record.
    void complain(std::string const& what)
    {
        std::string line = subject_ + ": " + what;
        if (std::ranges::find(wrong_, line) == wrong_.end()) {
            wrong_.push_back(std::move(line));
        }
    }

    // What a comment says, with references followed.
    std::vector<StatedLimit> statedLimits(std::string_view comment, Class const* scope)
    {
        StatedLimits stated = readLimits(comment, scope);
        for (std::string const& each : stated.wrong) {
            complain(each);
        }
        std::erase_if(stated.limits,
                      [&](StatedLimit& each) { return !each.reference.empty() && !follow(each, scope); });
        return std::move(stated.limits);
    }

    bool follow(StatedLimit& stated, Class const* scope)
    {
        std::string_view name = stated.reference;
        for (int i = 0; i < mostReferences; ++i) {
            Class const* const publisher = splitScope(name, scope);
            Operation const* const operation = publisher != nullptr ? publisher->find(name) : nullptr;
            if (operation == nullptr) {
                break;
            }
            scope = findClass(operation->classId);
            StatedLimits found = readLimits(operation->comment(), scope);
            if (found.limits.size() != 1) {
                break;
            }
            if (found.limits[0].reference.empty()) {
                stated.limit = std::move(found.limits[0].limit);
                return true;
            }
            name = found.limits[0].reference;
        }
        complain("as " + std::string(stated.reference) + "(): no operation with one limit");
        return false;
    }

    // For each limit the parameter that it is of, or their number for the result: the one that the word before it
    // names, or else the only one that the operation takes, or, when it takes none, tells.
    std::vector<std::size_t> placesOf(std::vector<StatedLimit> const& stated)
    {
        std::size_t const count = operation_.parameters.size();
        std::vector<std::size_t> taken;
        std::vector<std::size_t> told;
        for (std::size_t i = 0; i < count; ++i) {
            (operation_.parameters[i].isIn ? taken : told).push_back(i);
        }
        if (operation_.result != nullptr && operation_.result->kind != Type::Kind::status) {
            told.push_back(count);
        }
        std::vector<std::size_t> const& only = taken.empty() ? told : taken;
        std::vector<std::size_t> places;
        for (StatedLimit const& each : stated) {
            auto const named = std::ranges::find(names_, each.subject);
            if (named != names_.end()) {
                places.push_back(static_cast<std::size_t>(named - names_.begin()));
            } else if (only.size() == 1) {
                places.push_back(only.front());
            } else {
                complain("'" + std::string(each.subject) + "' before " + each.limit.text() + " is no parameter");
                places.push_back(count + 1);
            }
        }
        return places;
    }

    static std::vector<Limit> limitsAt(std::vector<StatedLimit> const& stated, std::vector<std::size_t> const& places,
                                       std::size_t place)
    {
        std::vector<Limit> limits;
        for (std::size_t i = 0; i < stated.size(); ++i) {
            if (places[i] == place) {
                limits.push_back(stated[i].limit);
            }
        }
        return limits;
    }

    std::vector<Limit> limitsOfField(Type const& record, Field const& field)
    {
        std::string_view name = record.name;
        std::vector<Limit> limits;
        for (StatedLimit& each : statedLimits(record.commentOf(field.name), splitScope(name, nullptr))) {
            limits.push_back(std::move(each.limit));
        }
        return limits;
    }

    // A value of this type, of which, or of whose elements or fields, `stated` holds.
    LimitedValue limitedValueOf(Type const& type, std::vector<Limit> const& stated)
    {
        LimitedValue limited;
        for (Limit const& each : stated) {
            if (!isAbout(each, type)) {
                complain("a value of type " + type.text() + " cannot be limited to " + each.text());
            } else if (suits(each, type)) {
                if (std::ranges::find(limited.limits, each.kind, &Limit::kind) != limited.limits.end()) {
                    complain(each.text() + " is a second limit of the same");
                }
                limited.limits.push_back(each);
            }
        }
        if (type.kind == Type::Kind::enumeration && type.enumerators.size() > 1) {
            Limit& limit = limited.limits.emplace_back(Limit{.kind = Limit::Kind::named});
            for (Enumerator const& each : type.enumerators) {
                limit.names.push_back({each.name, each.value});
            }
        }
        if (isOctets(type)) {
            limited.element.push_back({.limits = {{.ranges = {{0, UINT8_MAX}}}}});
        } else if (type.element != nullptr) {
            addLimited(limited.element, limitedValueOf(*type.element, thoseAbout(stated, *type.element)), {});
        }
        for (Field const& field : type.fields) {
            std::string const outer = subject_;
            subject_ = std::string(type.name) + "::" + std::string(field.name);
            std::vector<Limit> const own = limitsOfField(type, field);
            addLimited(limited.fields, limitedValueOf(*field.type, own.empty() ? thoseAbout(stated, *field.type) : own),
                       field.name);
            subject_ = outer;
        }
        return limited;
    }

    static std::vector<Limit> thoseAbout(std::vector<Limit> limits, Type const& type)
    {
        std::erase_if(limits, [&type](Limit const& each) { return !isAbout(each, type); });
        return limits;
    }

    static void addLimited(std::vector<LimitedValue>& values, LimitedValue value, std::string_view name)
    {
        if (value.isLimited()) {
            value.name = name;
            values.push_back(std::move(value));
        }
    }

    Operation const& operation_;
    std::vector<std::string_view> const names_; // of its parameters
    std::vector<std::string>& wrong_;
    std::string subject_; // what the limits are of: the operation, or a field
};

// All of the catalogue. A hash table with open addressing, since every call of an operation may ask it.
class LimitTable {
public:
    LimitTable()
    {
        for (Class const* const type : classes()) {
            for (Operation const& operation : type->own) {
                std::vector<LimitedValue> values = limitedValues(operation, operation.comment(), wrong);
                if (!values.empty()) {
                    insert(operation, std::move(values));
                }
            }
        }
    }

    std::span<LimitedValue const> find(Operation const& operation) const
    {
        for (std::size_t i = slotOf(operation); slots_[i].operation != nullptr; i = (i + 1) % slots_.size()) {
            if (slots_[i].operation == &operation) {
                return slots_[i].values;
            }
        }
        return {};
    }

    std::vector<std::string> wrong;

private:
    struct Slot {
        Operation const* operation = nullptr;
        std::vector<LimitedValue> values;
    };

    static std::size_t slotOf(Operation const& operation)
    {
        constexpr std::uint64_t spread = 0x9e3779b97f4a7c15; // 2^64 divided by the golden ratio
        return reinterpret_cast<std::uintptr_t>(&operation) * spread >> (64 - slotBits);
    }

    void insert(Operation const& operation, std::vector<LimitedValue> values)
    {
        std::size_t i = slotOf(operation);
        while (slots_[i].operation != nullptr) {
            i = (i + 1) % slots_.size();
        }
        slots_[i] = {&operation, std::move(values)};
    }

    std::vector<Slot> slots_ = std::vector<Slot>(std::size_t{1} << slotBits);
};

LimitTable const& limitTable()
{
    static LimitTable const table;
    return table;
}

} // namespace

std::vector<LimitedValue> limitedValues(Operation const& operation, std::string_view comment,
                                        std::vector<std::string>& wrong)
{
    return LimitAttachment(operation, wrong).attach(comment);
}

std::span<LimitedValue const> limitedValues(Operation const& operation) { return limitTable().find(operation); }

std::vector<std::string> const& wrongLimits() { return limitTable().wrong; }

} // namespace trs::catalogue
