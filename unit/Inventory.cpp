#include "unit/Inventory.h"

#include "catalogue/Text.h"
#include "unit/Object.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace trs::sim {

namespace {

template <class Test>
std::vector<Object*> those(std::vector<Object*> const& objects, Test test)
{
    std::vector<Object*> found;
    std::copy_if(objects.begin(), objects.end(), std::back_inserter(found), test);
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

void Inventory::setSeed(unsigned long seed)
{
    seed_ = seed;
    load_.setSeed(seed);
}

void Inventory::add(Object& object)
{
    objects_.push_back(&object);
    byId_[object.id()] = &object;
    tellChange(object);
}

void Inventory::remove(Object const& object)
{
    std::erase(objects_, &object);
    byId_.erase(object.id());
    if (keeper_ != nullptr) {
        keeper_->gone(object.id());
    }
}

Object* Inventory::find(std::string const& id) const
{
    auto const found = byId_.find(id);
    return found != byId_.end() ? found->second : nullptr;
}

std::vector<Object*> Inventory::related(std::string const& id, std::string_view className) const
{
    std::vector<Object*> const all =
        those(objects_, [&](Object const* object) { return object->id() != id && isA(object->type(), className); });
    std::vector<Object*> own = those(all, [&](Object const* object) { return object->id().starts_with(id + '/'); });
    if (!own.empty()) {
        return own;
    }
    std::vector<Object*> exact = those(all, [&](Object const* object) { return object->type().name == className; });
    return exact.empty() ? all : exact;
}

} // namespace trs::sim
