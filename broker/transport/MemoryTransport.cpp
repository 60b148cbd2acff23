#include "broker/transport/MemoryTransport.h"

#include "platform/NmaLogHelper.h"

#include <asio/post.hpp>

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <vector>

namespace trs {

namespace {

constexpr std::size_t mostWaiting = std::size_t{256} * 1024; // bytes

// Who listens in this process, by name.
struct Names {
    std::mutex mutex;
    std::map<std::string, MemoryListener*> listeners;

    // Never destroyed: servers with static storage end after it would be.
    static Names& instance()
    {
        static Names& names = *new Names;
        return names;
    }
};

} // namespace

// One direction.
class MemoryChannel::Pipe {
public:
    // Puts in what fits. None when nothing will ever be taken any more.
    std::size_t put(unsigned char const* bytes, std::size_t length, bool& isOver)
    {
        std::lock_guard const lock(mutex_);
        isOver = hasSenderEnded_ || hasReceiverEnded_;
        std::size_t const count = isOver ? 0 : std::min(length, mostWaiting - bytes_.size());
        bytes_.insert(bytes_.end(), bytes, bytes + count);
        tellBoth();
        return count;
    }
    // Until there is room, or nothing will be taken any more. False when the time is over.
    bool awaitRoom(Deadline const& deadline)
    {
        return await(&deadline, [this] { return isSendable(); });
    }
    Received take(unsigned char* place, std::size_t room, Deadline const* deadline, std::size_t& count)
    {
        if (!await(deadline, [this] { return isReceivable(); })) {
            return Received::timedOut;
        }
        std::lock_guard const lock(mutex_);
        if (hasReceiverEnded_ || bytes_.empty()) {
            return Received::closed;
        }
        count = std::min(room, bytes_.size());
        auto const end = bytes_.begin() + static_cast<std::ptrdiff_t>(count);
        std::copy(bytes_.begin(), end, place);
        bytes_.erase(bytes_.begin(), end);
        tellBoth();
        return Received::some;
    }
    // The same without waiting.
    Received takeNow(unsigned char* place, std::size_t room, std::size_t& count)
    {
        {
            std::lock_guard const lock(mutex_);
            if (!isReceivable()) {
                return Received::timedOut;
            }
        }
        return take(place, room, nullptr, count);
    }
    void watchReceiving(Poller* poller, Poller::Number number)
    {
        std::lock_guard const lock(mutex_);
        receiver_ = {poller, number};
        tellReceiver();
    }
    void watchSending(Poller* poller, Poller::Number number)
    {
        std::lock_guard const lock(mutex_);
        sender_ = {poller, number};
        tellSender();
    }
    bool isStale()
    {
        std::lock_guard const lock(mutex_);
        return hasSenderEnded_ || hasReceiverEnded_ || !bytes_.empty();
    }
    void end(bool bySender, bool byReceiver)
    {
        std::lock_guard const lock(mutex_);
        hasSenderEnded_ = hasSenderEnded_ || bySender;
        hasReceiverEnded_ = hasReceiverEnded_ || byReceiver;
        tellBoth();
    }

private:
    // Who is to be told by a poller; null: nobody.
    struct Watched {
        Poller* poller = nullptr;
        Poller::Number number = 0;

        void tell(Poller::Events events)
        {
            if (poller != nullptr) {
                poller->tell(number, events);
                poller = poller->tellsAlways() ? poller : nullptr;
            }
        }
    };

    bool isReceivable() const { return hasReceiverEnded_ || hasSenderEnded_ || !bytes_.empty(); }
    bool isSendable() const { return hasReceiverEnded_ || hasSenderEnded_ || bytes_.size() < mostWaiting; }
    void tellReceiver()
    {
        if (isReceivable()) {
            receiver_.tell(Poller::canReceive);
        }
    }
    void tellSender()
    {
        if (isSendable()) {
            sender_.tell(Poller::canSend);
        }
    }
    void tellBoth()
    {
        changed_.notify_all();
        tellReceiver();
        tellSender();
    }

    template <class Condition>
    bool await(Deadline const* deadline, Condition const& condition)
    {
        std::unique_lock lock(mutex_);
        if (deadline == nullptr) {
            changed_.wait(lock, condition);
            return true;
        }
        return changed_.wait_for(lock, std::chrono::milliseconds(deadline->remaining()), condition);
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<unsigned char> bytes_;
    bool hasSenderEnded_ = false;
    bool hasReceiverEnded_ = false;
    Watched sender_;
    Watched receiver_;
};

std::pair<std::unique_ptr<Channel>, std::unique_ptr<Channel>> MemoryChannel::makePair()
{
    auto const there = std::make_shared<Pipe>();
    auto const back = std::make_shared<Pipe>();
    return {std::unique_ptr<Channel>(new MemoryChannel(back, there)),
            std::unique_ptr<Channel>(new MemoryChannel(there, back))};
}

MemoryChannel::~MemoryChannel()
{
    // The poller may be gone before the channel is.
    in_->watchReceiving(nullptr, 0);
    out_->watchSending(nullptr, 0);
    shutDown();
}

Channel::Sent MemoryChannel::send(unsigned char const* bytes, std::size_t length, Deadline& deadline)
{
    bool isOver = false;
    for (std::size_t sent = out_->put(bytes, length, isOver); sent < length || isOver;
         sent += out_->put(bytes + sent, length - sent, isOver)) {
        if (isOver) {
            return sent == 0 ? Sent::nothing : Sent::part;
        }
        deadline.startWaiting();
        if (!out_->awaitRoom(deadline)) {
            return Sent::part;
        }
    }
    return Sent::all;
}

std::size_t MemoryChannel::sendSome(std::span<Piece const> pieces)
{
    std::size_t sent = 0;
    for (Piece const& piece : pieces) {
        bool isOver = false;
        std::size_t const count = out_->put(piece.bytes, piece.length, isOver);
        sent += count;
        if (count < piece.length) {
            break;
        }
    }
    return sent;
}

Channel::Received MemoryChannel::receive(unsigned char* place, std::size_t room, Deadline* deadline, std::size_t& count)
{
    return in_->take(place, room, deadline, count);
}

Channel::Received MemoryChannel::receiveRest(unsigned char* place, std::size_t room, Deadline const& deadline,
                                             std::size_t& count)
{
    return in_->take(place, room, &deadline, count);
}

Channel::Received MemoryChannel::receiveNow(unsigned char* place, std::size_t room, std::size_t& count)
{
    return in_->takeNow(place, room, count);
}

bool MemoryChannel::watch(Poller& poller, Poller::Number number, Poller::Events events)
{
    in_->watchReceiving((events & Poller::canReceive) != 0 ? &poller : nullptr, number);
    out_->watchSending((events & Poller::canSend) != 0 ? &poller : nullptr, number);
    return true;
}

bool MemoryChannel::isStale() const { return in_->isStale(); }
void MemoryChannel::endSending() { out_->end(true, false); }
void MemoryChannel::endReceiving() { in_->end(false, true); }

void MemoryChannel::shutDown()
{
    out_->end(true, false);
    in_->end(false, true);
}

MemoryListener::~MemoryListener()
{
    Names& names = Names::instance();
    std::lock_guard const lock(names.mutex);
    auto const own = names.listeners.find(endpoint_.path);
    if (own != names.listeners.end() && own->second == this) {
        names.listeners.erase(own);
    }
}

std::string MemoryListener::open()
{
    Names& names = Names::instance();
    std::lock_guard const lock(names.mutex);
    bool const isNew = names.listeners.try_emplace(endpoint_.path, this).second;
    return isNew ? std::string()
                 : LogMakeString("endpoint '%s' cannot be served: it is already", endpoint_.text().c_str());
}

void MemoryListener::start(Admit admit) { *admit_ = std::move(admit); }

std::unique_ptr<Channel> MemoryListener::connect()
{
    auto [near, far] = MemoryChannel::makePair();
    // Behind start(), which was posted before anybody could know the endpoint.
    asio::post(context_, [admit = admit_, accepted = std::move(far)]() mutable {
        if (*admit) {
            (*admit)(std::move(accepted));
        }
    });
    return std::move(near);
}

std::unique_ptr<Channel> MemoryDialer::dial(std::size_t way, Deadline&, Cut const&, std::string& why) const
{
    bool isTooEarly = false;
    return begin(way, isTooEarly, why);
}

std::unique_ptr<Channel> MemoryDialer::begin(std::size_t, bool& isTooEarly, std::string& why) const
{
    isTooEarly = false;
    Names& names = Names::instance();
    std::lock_guard const lock(names.mutex);
    auto const found = names.listeners.find(endpoint_.path);
    if (found == names.listeners.end()) {
        why = "nobody in this process serves " + endpoint_.text();
        return nullptr;
    }
    return found->second->connect();
}

} // namespace trs
