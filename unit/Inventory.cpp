#include "unit/Inventory.h"

#include "catalogue/Text.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace trs::sim {

namespace {

template <class Test>
std::vector<Inventory::Entry> those(std::vector<Inventory::Entry> const& entries, Test test)
{
    std::vector<Inventory::Entry> found;
    std::copy_if(entries.begin(), entries.end(), std::back_inserter(found), test);
    return found;
}

} // namespace

bool isA(catalogue::Class const& type, std::string_view className)
{
    catalogue::Class const* const base = type.base();
    return type.name == className || (base != nullptr && isA(*base, className));
}

unsigned long Inventory::vary(std::string_view purpose, unsigned long most) const
{
    if (seed_ == 0) {
        return 0;
    }
    std::uint64_t mixed = 0xcbf29ce484222325 ^ seed_; // FNV-1a
    for (char const character : purpose) {
        mixed = (mixed ^ static_cast<unsigned char>(character)) * 0x100000001b3;
    }
    return static_cast<unsigned long>((mixed >> 20) % (std::uint64_t{most} + 1));
}

bool numberBehind(std::string_view prefix, std::string_view id, long least, long most, long& number)
{
    return id.starts_with(prefix) && catalogue::parseNumber(id.substr(prefix.size()), least, most, number) &&
           std::to_string(number) == id.substr(prefix.size());
}

void Inventory::remove(std::string const& id)
{
    std::erase_if(entries_, [&id](Entry const& entry) { return entry.id == id || entry.id.starts_with(id + '/'); });
}

Inventory::Entry const* Inventory::find(std::string const& id) const
{
    auto const found = std::ranges::find(entries_, id, &Entry::id);
    return found != entries_.end() ? &*found : nullptr;
}

std::vector<Inventory::Entry> Inventory::related(std::string const& id, std::string_view className) const
{
    std::vector<Entry> const all =
        those(entries_, [&](Entry const& entry) { return entry.id != id && isA(*entry.type, className); });
    std::vector<Entry> own = those(all, [&](Entry const& entry) { return entry.id.starts_with(id + '/'); });
    if (!own.empty()) {
        return own;
    }
    std::vector<Entry> exact = those(all, [&](Entry const& entry) { return entry.type->name == className; });
    return exact.empty() ? all : exact;
}

} // namespace trs::sim
