// What has come from a peer and is to be told to observers.
#pragma once

#include "broker/NotificationGap.h"
#include "broker/framing/OperationKey.h"
#include "rmi/TipprmiAny.h"
#include "rmi/TipprmiSequence.h"

#include <cstddef>
#include <deque>
#include <utility>
#include <variant>

namespace trs {

// In its order, and with a bound on the memory that it takes.
class Inbox {
public:
    struct Notification {
        OperationKey operation;
        TipprmiSequence<TipprmiAny> parameters;
    };
    using Entry = std::variant<Notification, NotificationGap>;

    // Bytes.
    static constexpr std::size_t capacity = 262144;

    bool isEmpty() const { return entries_.empty(); }
    // From when nothing more is to come until half of it has been taken.
    bool isFull() const { return isFull_; }

    void put(Entry entry)
    {
        size_ += sizeOf(entry);
        isFull_ = isFull_ || size_ >= capacity;
        entries_.push_back(std::move(entry));
    }
    // The oldest of at least one.
    Entry take()
    {
        Entry entry = std::move(entries_.front());
        entries_.pop_front();
        size_ -= sizeOf(entry);
        isFull_ = isFull_ && size_ > capacity / 2;
        return entry;
    }
    void clear()
    {
        entries_.clear();
        size_ = 0;
        isFull_ = false;
    }

private:
    static std::size_t sizeOf(Entry const& entry)
    {
        std::size_t size = sizeof entry;
        if (auto const* const notification = std::get_if<Notification>(&entry)) {
            for (TipprmiAny const& value : notification->parameters) {
                size += sizeof value + value.size();
            }
        }
        return size;
    }

    std::deque<Entry> entries_;
    std::size_t size_ = 0;
    bool isFull_ = false;
};

} // namespace trs
