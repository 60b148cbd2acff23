// The subscriptions at one peer, and what is to be done about them.
#pragma once

#include "broker/NotificationGap.h"
#include "broker/framing/OperationKey.h"
#include "broker/machine/Backoff.h"
#include "broker/machine/TimeAndChance.h"

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace trs {

// Decides without a thread, a socket or a lock: it is told what happens on the way to the peer, and answers with the
// messages to send over it, the gaps to tell, and when to look for another.
class Subscriptions {
public:
    using Gaps = std::vector<NotificationGap>; // whose peer is left open
    enum class State { none, asked, confirmed, noSuchObject, failed };
    struct Message {
        enum class Kind { subscribe, renew, unsubscribe };
        Kind kind;
        OperationKey key;
        std::uint32_t number;
    };

    explicit Subscriptions(TimeAndChance timing);

    // One user more, one less. The message to send, if there is a way to the peer and one is due.
    std::optional<Message> add(OperationKey const& key);
    std::optional<Message> remove(OperationKey const& key);
    State state(OperationKey const& key) const;
    bool isEmpty() const { return all_.empty(); }
    void clear()
    {
        all_.clear();
        backoff_.reset();
    }

    // There is a way to the peer: what to send first.
    std::vector<Message> begin();
    // The peer has answered the message of that number. The gaps that are over with it: all at once, unless
    // notifications come in between.
    Gaps confirm(std::uint32_t number, bool isThere);
    // A notification has come, and is to be delivered after the gaps that are over were told.
    Gaps notice(OperationView const& operation);
    bool hasGaps() const;
    // The way to the peer is lost, and whatever came until `since` was delivered; or there is none. The gap that begins
    // with it, if it is one.
    Gaps lose(TimeAndChance::Date since);
    // When to look for a way: at once when somebody waits for an answer. None when there is one, or nobody needs it.
    std::optional<TimeAndChance::Time> attemptAt() const;

private:
    struct Loss {
        TimeAndChance::Date since;
        TimeAndChance::Date noticed;
        friend bool operator==(Loss const&, Loss const&) = default;
    };
    struct Subscription {
        unsigned users = 0;
        State state = State::failed;
        std::uint32_t number = 0; // of the message that asked, while it is not answered
        std::optional<Loss> loss; // the gap that it is in
        bool isBack = false;      // and that is over
    };
    using Table = std::map<OperationKey, Subscription, OperationOrder>;

    bool isAnyAsked() const;
    Message ask(Table::value_type& entry);
    Gaps takeEnded();
    static NotificationGap& gapOf(Gaps& gaps, Loss const& loss);

    TimeAndChance const timing_;
    Backoff backoff_;
    TimeAndChance::Time attemptAt_;
    Table all_;
    std::uint32_t lastNumber_ = 0; // never used again, so that no answer is taken for another connection's
    bool hasWay_ = false;
};

} // namespace trs
