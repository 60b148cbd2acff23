#include "broker/calls/Subscriptions.h"

#include "broker/machine/Mutation.h"

#include <algorithm>

namespace trs {

namespace {

constexpr Backoff::Duration leastBackoff{50};
constexpr Backoff::Duration greatestBackoff{2000};

} // namespace

Subscriptions::Subscriptions(TimeAndChance timing)
    : timing_(std::move(timing)), backoff_(leastBackoff, greatestBackoff, timing_.random)
{
}

Subscriptions::Message Subscriptions::ask(Table::value_type& entry)
{
    auto& [key, subscription] = entry;
    bool const isRenewal = subscription.state == State::confirmed;
    subscription.number = ++lastNumber_;
    return {isRenewal ? Message::Kind::renew : Message::Kind::subscribe, key, subscription.number};
}

std::optional<Subscriptions::Message> Subscriptions::add(OperationKey const& key)
{
    auto const place = all_.try_emplace(key).first;
    Subscription& subscription = place->second;
    ++subscription.users;
    if (subscription.state == State::asked || subscription.state == State::confirmed) {
        return std::nullopt;
    }
    subscription.state = State::asked;
    return hasWay_ ? std::optional(ask(*place)) : std::nullopt;
}

std::optional<Subscriptions::Message> Subscriptions::remove(OperationKey const& key)
{
    auto const place = all_.find(key);
    if (place == all_.end() || --place->second.users != 0) {
        return std::nullopt;
    }
    State const state = place->second.state;
    all_.erase(place);
    if (!hasWay_ || (state != State::asked && state != State::confirmed)) {
        return std::nullopt;
    }
    return Message{Message::Kind::unsubscribe, key, ++lastNumber_};
}

Subscriptions::State Subscriptions::state(OperationKey const& key) const
{
    auto const found = all_.find(key);
    return found != all_.end() ? found->second.state : State::none;
}

bool Subscriptions::isAnyAsked() const
{
    return std::ranges::any_of(all_, [](auto const& entry) { return entry.second.state == State::asked; });
}

std::optional<TimeAndChance::Time> Subscriptions::attemptAt() const
{
    if (hasWay_ || isEmpty()) {
        return std::nullopt;
    }
    return isAnyAsked() ? TimeAndChance::Time() : attemptAt_;
}

std::vector<Subscriptions::Message> Subscriptions::begin()
{
    hasWay_ = true;
    std::vector<Message> messages;
    for (auto& entry : all_) {
        if (entry.second.state == State::asked || entry.second.state == State::confirmed) {
            messages.push_back(ask(entry));
            entry.second.isBack = mutated(Fault::renewalUnconfirmed);
        }
    }
    return messages;
}

// An answer to what was given up meanwhile, or answered already, is not looked at.
Subscriptions::Gaps Subscriptions::confirm(std::uint32_t number, bool isThere)
{
    bool isAllAnswered = true;
    for (auto& [key, subscription] : all_) {
        if (subscription.number != 0 && subscription.number == number) {
            subscription.number = 0;
            subscription.isBack = true;
            if (subscription.state == State::asked) {
                subscription.state = isThere ? State::confirmed : State::noSuchObject;
            }
        }
        isAllAnswered = isAllAnswered && subscription.number == 0;
    }
    if (!isAllAnswered) {
        return {};
    }
    backoff_.reset(); // the way is as good as before
    return takeEnded();
}

Subscriptions::Gaps Subscriptions::notice(OperationView const& operation)
{
    auto const place = all_.find(operation);
    if (place != all_.end()) {
        place->second.isBack = !mutated(Fault::eventInGap);
    }
    return takeEnded();
}

bool Subscriptions::hasGaps() const
{
    return std::ranges::any_of(all_, [](auto const& entry) { return entry.second.loss.has_value(); });
}

NotificationGap& Subscriptions::gapOf(Gaps& gaps, Loss const& loss)
{
    auto const found = std::ranges::find_if(gaps, [&loss](auto const& gap) {
        return Loss{gap.since, gap.lost} == loss;
    });
    return found != gaps.end() ? *found : gaps.emplace_back(NotificationGap{{}, {}, loss.since, loss.noticed, {}});
}

Subscriptions::Gaps Subscriptions::takeEnded()
{
    Gaps gaps;
    for (auto& [key, subscription] : all_) {
        if (subscription.loss && subscription.isBack) {
            NotificationGap& gap = gapOf(gaps, *subscription.loss);
            gap.operations.push_back(key);
            gap.until = timing_.date();
            subscription.loss.reset();
        }
    }
    return gaps;
}

Subscriptions::Gaps Subscriptions::lose(TimeAndChance::Date since)
{
    hasWay_ = false;
    attemptAt_ = timing_.now() + backoff_.next();
    Gaps gaps;
    Loss const loss{since, timing_.date()};
    for (auto& [key, subscription] : all_) {
        subscription.number = 0;
        subscription.isBack = false;
        if (subscription.state == State::asked) {
            subscription.state = State::failed;
        } else if (subscription.state == State::confirmed && !subscription.loss) {
            subscription.loss = loss;
            gapOf(gaps, loss).operations.push_back(key);
        }
    }
    return gaps;
}

} // namespace trs
