#include "broker/calls/Link.h"

#include "broker/calls/Engine.h"
#include "broker/framing/Message.h"
#include "broker/transport/Connector.h"
#include "platform/NmaLogHelper.h"

#include <algorithm>

namespace trs {

namespace {

// The queue of a local server is full: there is nothing to wait for but time.
constexpr std::chrono::milliseconds queueInterval{1};
// Memory that an idle link keeps.
constexpr std::size_t greatestKeptMessage = 4096;
// Others on the engine have their turn after so many times its room.
constexpr int mostRoomsInARow = 4;

} // namespace

void Link::begin(Poller::Number number, std::chrono::milliseconds time)
{
    number_ = number;
    duration_ = static_cast<int>(time.count());
    deadline_ = Poller::Clock::now() + time;
    way_ = 0;
    dial();
}

// By the present way, or the next one that can be begun.
void Link::dial()
{
    retryAt_.reset();
    for (; way_ < dialer_.ways(); ++way_) {
        bool isTooEarly = false;
        channel_ = dialer_.begin(way_, isTooEarly, why_);
        if (channel_ != nullptr) {
            isConnected_ = isReceivingWatched_ = false;
            isSendingWatched_ = true;
            greeting_.clear();
            assembler_.emplace();
            message_.clear();
            if (watch()) {
                return;
            }
            channel_.reset();
            why_ = "the system has no room for one more";
        }
        why_.insert(0, "no connection: ");
        if (isTooEarly) {
            retryAt_ = Poller::Clock::now() + queueInterval;
            return;
        }
    }
    retryAt_ = Poller::Clock::now(); // to tell that there is none
}

bool Link::watch()
{
    return channel_->watch(Engine::instance().poller(), number_,
                           (isReceivingWatched_ ? Poller::canReceive : Poller::nothing) |
                               (isSendingWatched_ ? Poller::canSend : Poller::nothing));
}

std::optional<Link::Time> Link::nextTime() const
{
    if (isOpen_ || isNone()) {
        return std::nullopt;
    }
    return retryAt_ ? std::min(*retryAt_, deadline_) : deadline_;
}

void Link::fail(std::string why)
{
    why_ = std::move(why);
    channel_.reset();
    ++way_;
    dial();
}

bool Link::advance(Poller::Events events)
{
    if (isOpen_ || isNone()) {
        return false;
    }
    if (Poller::Clock::now() >= deadline_) {
        if (isConnected_) {
            why_ = LogMakeString("no greeting within %d ms", duration_);
        } else if (!retryAt_) {
            why_ = LogMakeString("no connection within %d ms", duration_);
        }
        close();
        return true;
    }
    if (retryAt_ && *retryAt_ <= Poller::Clock::now()) {
        if (way_ >= dialer_.ways()) {
            close();
            return true;
        }
        dial();
    } else if (channel_ != nullptr && !isConnected_ && (events & Poller::canSend) != 0) {
        if (std::string failure = channel_->connectFailure(); !failure.empty()) {
            fail("no connection: " + failure);
            return false;
        }
        isConnected_ = true;
        Greeting const own = makeGreeting();
        channel_->sendSome(own.data(), own.size()); // if it is not taken, what has come tells why
        isSendingWatched_ = false;
        isReceivingWatched_ = true;
        watch();
    } else if (isConnected_ && (events & Poller::canReceive) != 0) {
        isOpen_ = greet();
    }
    return isOpen_;
}

bool Link::greet()
{
    for (;;) {
        std::size_t const had = greeting_.size();
        std::size_t const known = greetingLength(greeting_.data(), had);
        if (known <= had) {
            std::optional<std::string> complaint = Connector::complaint(greeting_.data(), had);
            if (!complaint) {
                greeting_ = {};
                return true;
            }
            fail(*std::move(complaint));
            return false;
        }
        greeting_.resize(std::min(known, Connector::greatestGreeting));
        std::size_t count = 0;
        Channel::Received const received = channel_->receiveNow(greeting_.data() + had, greeting_.size() - had, count);
        greeting_.resize(had + count);
        if (received == Channel::Received::timedOut) {
            return false;
        }
        if (received != Channel::Received::some) {
            fail(Connector::closedEarly);
            return false;
        }
    }
}

std::size_t Link::send(Pieces pieces)
{
    std::size_t length = 0;
    std::ranges::for_each(pieces, [&length](Channel::Piece const& piece) { length += piece.length; });
    std::size_t const taken = channel_->sendSome(pieces);
    if (taken < length && !isSendingWatched_) {
        isSendingWatched_ = true;
        watch();
    }
    return taken;
}

void Link::rest()
{
    if (isSendingWatched_) {
        isSendingWatched_ = false;
        watch();
    }
}

void Link::stopReceiving()
{
    isReceivingWatched_ = false;
    watch();
}

void Link::receiveAgain()
{
    isReceivingWatched_ = true;
    watch();
}

bool Link::receive(std::function<bool(TipprmiStream& message)> const& take, bool& isMalformed)
{
    std::span<unsigned char> const room = Engine::instance().room();
    isMalformed = false;
    std::size_t count = room.size();
    for (int i = 0; i < mostRoomsInARow && count == room.size(); ++i) {
        switch (channel_->receiveNow(room.data(), room.size(), count)) {
        case Channel::Received::timedOut:
            return true;
        case Channel::Received::closed:
        case Channel::Received::lost:
            return false;
        case Channel::Received::some:
            break;
        }
        std::span<unsigned char const> bytes = room.first(count);
        for (Assembler::State state = assembler_->feed(message_, bytes); state != Assembler::State::incomplete;
             state = assembler_->feed(message_, bytes)) {
            if (state == Assembler::State::malformed || !take(message_)) {
                isMalformed = true;
                return false;
            }
            if (message_.capacity() > greatestKeptMessage) {
                std::destroy_at(&message_);
                std::construct_at(&message_, 100);
            }
            message_.clear();
        }
    }
    return true;
}

void Link::shutDown()
{
    if (channel_ != nullptr) {
        channel_->shutDown();
    }
}

void Link::close()
{
    channel_.reset();
    retryAt_.reset();
    isOpen_ = isConnected_ = false;
}

} // namespace trs
