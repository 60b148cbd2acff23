#include "platform/TreflectMetaObject.h"

#include <mutex>

namespace {

// All meta objects. They add themselves without a lock: one may be made in the middle of another's completion.
constinit std::atomic<TreflectMetaObject*> newest = nullptr;

// Recursive, because an object's completion completes its parent. Never destroyed: proxies with static storage may
// ask for their meta object to the end.
std::recursive_mutex& completionMutex()
{
    static std::recursive_mutex& mutex = *new std::recursive_mutex;
    return mutex;
}

} // namespace

TreflectMetaObject::TreflectMetaObject(std::string const& name, unsigned long id)
    : name_(name), id_(id), next_(newest.load(std::memory_order_relaxed))
{
    while (!newest.compare_exchange_weak(next_, this, std::memory_order_release, std::memory_order_relaxed)) {
    }
}

TreflectMetaObject::~TreflectMetaObject()
{
    std::lock_guard const lock(completionMutex());
    TreflectMetaObject* first = this;
    if (newest.compare_exchange_strong(first, next_, std::memory_order_acq_rel, std::memory_order_acquire)) {
        return;
    }
    for (TreflectMetaObject* other = first; other != nullptr; other = other->next_) {
        if (other->next_ == this) {
            other->next_ = next_;
            return;
        }
    }
}

std::string const& TreflectMetaObject::name() const { return name_; }

void TreflectMetaObject::completeMetaInformationHelper(MetaOpData const* operations, unsigned long operationCount,
                                                       MetaAttrData const* attributes, unsigned long attributeCount)
{
    operations_ = operations;
    operationCount_ = operationCount;
    attributes_ = attributes;
    attributeCount_ = attributeCount;
}

bool TreflectMetaObject::findOperation(std::string const& name, TreflectMetaOperation& found)
{
    completeMetaInformation();
    for (TreflectMetaObject const* meta = this; meta != nullptr; meta = meta->parent_) {
        for (MetaOpData const& operation : meta->operations()) {
            if (name == operation.name) {
                found = {operation.name, operation.index, meta->id_};
                return true;
            }
        }
    }
    return false;
}

TreflectMetaObject* TreflectMetaObject::find(std::string const& name)
{
    TreflectMetaObject* found = nullptr;
    {
        std::lock_guard const lock(completionMutex());
        found = newest.load(std::memory_order_acquire);
        while (found != nullptr && found->name_ != name) {
            found = found->next_;
        }
    }
    if (found != nullptr) {
        found->completeMetaInformation();
    }
    return found;
}

TreflectMetaObject::Completion::Completion(TreflectMetaObject& object) : object_(object)
{
    if (object_.isComplete()) {
        return;
    }
    completionMutex().lock();
    if (object_.state_.load(std::memory_order_relaxed) == State::untouched) {
        object_.state_.store(State::started, std::memory_order_relaxed);
        first_ = true; // the lock is kept until the work is done
        return;
    }
    completionMutex().unlock();
}

TreflectMetaObject::Completion::~Completion()
{
    if (first_) {
        object_.state_.store(State::complete, std::memory_order_release);
        completionMutex().unlock();
    }
}
