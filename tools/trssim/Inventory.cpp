#include "tools/trssim/Inventory.h"

#include <algorithm>
#include <iterator>

namespace sim {

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

void Inventory::remove(std::string const& id)
{
    std::erase_if(entries_, [&id](Entry const& entry) { return entry.id == id || entry.id.starts_with(id + '/'); });
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

} // namespace sim
