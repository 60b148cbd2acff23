#include "broker/objects/NameTree.h"

namespace trs {

// Never destroyed: proxies with static storage may ask for their names to the end.
NameTree& NameTree::instance()
{
    static NameTree& tree = *new NameTree;
    return tree;
}

NameTree::Placed const* NameTree::find(TipprmiOID const& oid) const
{
    auto const found = placed_.find(keyOf(oid));
    return found != placed_.end() ? &found->second : nullptr;
}

bool NameTree::add(TreflectObject const& parent, std::string const& name, TreflectObject const& child)
{
    if (parent.getOID().isNull() || child.getOID().isNull() || name.empty() || name.find('/') != std::string::npos) {
        return false;
    }
    std::lock_guard const lock(mutex_);
    if (find(child.getOID()) != nullptr) {
        return false;
    }
    Key const childKey = keyOf(child.getOID());
    TipprmiOID above = parent.getOID();
    for (;;) {
        if (keyOf(above) == childKey) {
            return false;
        }
        Placed const* const place = find(above);
        if (place == nullptr) {
            break;
        }
        above = place->parent.getOID();
    }
    if (!children_[keyOf(parent.getOID())].emplace(name, child).second) {
        return false;
    }
    placed_.emplace(childKey, Placed{parent, name});
    return true;
}

bool NameTree::remove(TreflectObject const& parent, std::string const& name)
{
    std::lock_guard const lock(mutex_);
    auto const siblings = children_.find(keyOf(parent.getOID()));
    if (siblings == children_.end()) {
        return false;
    }
    auto const child = siblings->second.find(name);
    if (child == siblings->second.end()) {
        return false;
    }
    placed_.erase(keyOf(child->second.getOID()));
    siblings->second.erase(child);
    if (siblings->second.empty()) {
        children_.erase(siblings);
    }
    return true;
}

std::string NameTree::relName(TipprmiOID const& oid)
{
    std::lock_guard const lock(mutex_);
    Placed const* const place = find(oid);
    return place != nullptr ? place->name : oid.getIdString();
}

std::string NameTree::absName(TipprmiOID const& oid)
{
    std::lock_guard const lock(mutex_);
    std::string path;
    TipprmiOID at = oid;
    while (Placed const* const place = find(at)) {
        path.insert(0, "/" + place->name);
        at = place->parent.getOID();
    }
    return at.getIdString() + path;
}

TreflectObject NameTree::parent(TipprmiOID const& oid)
{
    std::lock_guard const lock(mutex_);
    Placed const* const place = find(oid);
    return place != nullptr ? place->parent : TreflectObject();
}

TreflectObject NameTree::child(TipprmiOID const& oid, std::string const& name)
{
    std::lock_guard const lock(mutex_);
    auto const siblings = children_.find(keyOf(oid));
    if (siblings == children_.end()) {
        return {};
    }
    auto const found = siblings->second.find(name);
    return found != siblings->second.end() ? found->second : TreflectObject();
}

std::vector<TreflectObject> NameTree::children(TipprmiOID const& oid)
{
    std::lock_guard const lock(mutex_);
    std::vector<TreflectObject> all;
    auto const siblings = children_.find(keyOf(oid));
    if (siblings != children_.end()) {
        for (auto const& [name, object] : siblings->second) {
            all.push_back(object);
        }
    }
    return all;
}

} // namespace trs
