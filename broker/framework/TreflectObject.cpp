#include "platform/TreflectObject.h"

#include "broker/calls/Observation.h"
#include "broker/objects/NameTree.h"

#include <cxxabi.h>
#include <new>
#include <string_view>
#include <typeinfo>

namespace {

constexpr unsigned long afterExecution = 1;

// The name of a class that is no member of anything, from its mangled form: the length and the name. Empty for others.
std::string_view globalClassName(std::type_info const& type)
{
    std::string_view mangled = type.name();
    std::size_t length = 0;
    while (!mangled.empty() && mangled.front() >= '0' && mangled.front() <= '9') {
        length = length * 10 + static_cast<std::size_t>(mangled.front() - '0');
        mangled.remove_prefix(1);
    }
    return length == mangled.size() ? mangled : std::string_view();
}

} // namespace

TreflectOperation::TreflectOperation(TreflectObject const& object, TreflectMetaOperation const& meta, bool exists)
    : object_(object), meta_(meta), exists_(exists)
{
}

bool TreflectOperation::postObserve(TreflectObserver* observer) const
{
    return exists_ && observer != nullptr && trs::observe(object_, meta_.classId, meta_.index, *observer);
}

bool TreflectOperation::removeObserver(TreflectObserver* observer) const
{
    return exists_ && observer != nullptr && trs::endObservation(object_, meta_.classId, meta_.index, *observer);
}

TreflectObject::TreflectObject() = default;
TreflectObject::~TreflectObject() = default;

void* TreflectObject::operator new(std::size_t size) noexcept { return ::operator new(size, std::nothrow); }
void TreflectObject::operator delete(void* place) noexcept { ::operator delete(place); }

TreflectMetaObject::MetaAttrData const* TreflectObject::attribute(std::string const&) const { return nullptr; }

TreflectOperation TreflectObject::operation(std::string const& name) const
{
    TreflectMetaOperation found{"", 0, 0};
    TreflectMetaObject* const own = meta();
    bool const exists = own != nullptr && own->findOperation(name, found);
    return {*this, found, exists};
}

// A class that an application derives from a proxy has its proxy's meta object.
TreflectMetaObject* TreflectObject::meta() const
{
    std::type_info const* type = &typeid(*this);
    while (type != nullptr) {
        std::string_view const name = globalClassName(*type);
        if (!name.empty()) {
            if (TreflectMetaObject* const found = TreflectMetaObject::find(std::string(name))) {
                return found;
            }
        }
        auto const* const derived = dynamic_cast<abi::__si_class_type_info const*>(type);
        type = derived != nullptr ? derived->__base_type : nullptr;
    }
    return nullptr;
}

std::string TreflectObject::getAbsName() const { return trs::NameTree::instance().absName(getOID()); }
std::string TreflectObject::getRelName() const { return trs::NameTree::instance().relName(getOID()); }
TreflectObject TreflectObject::getParent() const { return trs::NameTree::instance().parent(getOID()); }
TreflectObject TreflectObject::getChild(std::string const& name) const
{
    return trs::NameTree::instance().child(getOID(), name);
}
std::vector<TreflectObject> TreflectObject::getChilds() const { return trs::NameTree::instance().children(getOID()); }
bool TreflectObject::registerChild(std::string const& name, TreflectObject const& child) const
{
    return trs::NameTree::instance().add(*this, name, child);
}
bool TreflectObject::unregisterChild(std::string const& name) const
{
    return trs::NameTree::instance().remove(*this, name);
}

void TreflectObject::connect(TipprmiOID const& oid) { connect(nullptr, oid); }

bool TreflectObject::registerObserver(unsigned long kind, TreflectMetaOperation const* operation,
                                      TreflectObserver* observer) const
{
    return kind == afterExecution && operation != nullptr &&
           TreflectOperation(*this, *operation, true).postObserve(observer);
}

bool TreflectObject::removeObserver(TreflectMetaOperation const* operation, TreflectObserver* observer) const
{
    return operation != nullptr && TreflectOperation(*this, *operation, true).removeObserver(observer);
}

TipprmiStream& operator>>(TipprmiStream& stream, TreflectObject& object)
{
    return stream >> static_cast<TipprmiObjectClient&>(object);
}
