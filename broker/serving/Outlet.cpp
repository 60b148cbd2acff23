#include "broker/serving/Outlet.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

namespace trs {

namespace {

constexpr std::size_t fullQueue = std::size_t{1024} * 1024; // bytes of notifications
constexpr std::size_t mostAnswers = 64;                     // that wait
constexpr std::size_t mostAnswerBytes = std::size_t{1024} * 1024;
constexpr std::size_t mostGathered = 64;
constexpr std::size_t mostGatheredBytes = 65536;
constexpr unsigned mostVainDrains = 8; // that a channel which is told to take something takes nothing: it is lost

std::size_t lengthOf(std::span<Channel::Piece const> pieces)
{
    return std::accumulate(pieces.begin(), pieces.end(), std::size_t{0},
                           [](std::size_t sum, Channel::Piece const& piece) { return sum + piece.length; });
}

} // namespace

bool Outlet::beginTurn(void const* who)
{
    std::lock_guard const lock(mutex_);
    if (turn_ == nullptr) {
        turn_ = who;
        queue_.entries.push_back({0, true});
        ++answers_;
    }
    return turn_ == who;
}

void Outlet::endTurn()
{
    std::lock_guard const lock(mutex_);
    bool const wasWaiting = queue_.size() != 0;
    turn_ = nullptr;
    noteTaken(0);
    queue_.append(behind_.bytes.data(), behind_.bytes.size());
    queue_.entries.insert(queue_.entries.end(), behind_.entries.begin(), behind_.entries.end());
    behind_ = Queue();
    if (!wasWaiting && queue_.size() != 0) {
        beginWaiting();
    }
    noteHeldUp();
}

bool Outlet::sendPart(unsigned char const* bytes, std::size_t length)
{
    std::lock_guard const lock(mutex_);
    if (isLost_ || isClosed_) {
        return false;
    }
    Channel::Piece const part{bytes, length};
    std::size_t const taken = queue_.size() == 0 ? connection_.sendSome(std::span(&part, 1)) : 0;
    if (taken < length) {
        bool const wasWaiting = queue_.size() != 0;
        queue_.append(bytes + taken, length - taken);
        queue_.entries.back().left += length - taken;
        answerBytes_ += length - taken;
        if (!wasWaiting) {
            beginWaiting();
        }
    }
    return true;
}

bool Outlet::answer(TipprmiStream const& reply, bool isMoreToCome)
{
    if (isMoreToCome || gatheredCount_ != 0) {
        if (isMoreToCome && gatheredCount_ + 1 < mostGathered && gathered_.size() + reply.size() < mostGatheredBytes) {
            gathered_.insert(gathered_.end(), reply.data(), reply.data() + reply.size());
            ++gatheredCount_;
            return true;
        }
        std::array<Channel::Piece, 2> const both{{{gathered_.data(), gathered_.size()}, {reply.data(), reply.size()}}};
        bool const isSent = sendAnswers(both, gatheredCount_ + 1);
        gathered_.clear();
        gatheredCount_ = 0;
        return isSent;
    }
    Channel::Piece const whole{reply.data(), reply.size()};
    return sendAnswers(std::span(&whole, 1), 1);
}

bool Outlet::flush()
{
    bool isSent = true;
    if (gatheredCount_ != 0) {
        Channel::Piece const all{gathered_.data(), gathered_.size()};
        isSent = sendAnswers(std::span(&all, 1), std::exchange(gatheredCount_, 0));
        gathered_ = {};
    }
    return isSent;
}

bool Outlet::sendAnswers(std::span<Channel::Piece const> pieces, std::size_t count)
{
    if (isShared_) [[unlikely]] {
        std::lock_guard const lock(mutex_);
        bool const isNext = queue_.size() == 0 && turn_ == nullptr && !isLost_;
        return queueAnswers(pieces, count, isNext ? connection_.sendSome(pieces) : 0);
    }
    std::size_t const taken = connection_.sendSome(pieces);
    if (taken == lengthOf(pieces)) [[likely]] {
        return true;
    }
    isShared_ = true; // with the poller's thread
    std::lock_guard const lock(mutex_);
    return queueAnswers(pieces, count, taken);
}

// Under the lock, as are those below.
bool Outlet::queueAnswers(std::span<Channel::Piece const> pieces, std::size_t count, std::size_t taken)
{
    if (isLost_ || isClosed_) {
        return false;
    }
    std::size_t left = lengthOf(pieces) - taken;
    if (left == 0) {
        return true;
    }
    Queue& queue = turn_ != nullptr ? behind_ : queue_;
    bool const wasWaiting = queue_.size() != 0;
    answers_ += count;
    answerBytes_ += left;
    for (std::size_t each = 1; each < count; ++each) {
        queue.entries.push_back({0, true}); // how long each is of those that leave together does not matter
    }
    queue.entries.push_back({left, true});
    for (Channel::Piece const& piece : pieces) {
        std::size_t const skipped = std::min(taken, piece.length);
        queue.append(piece.bytes + skipped, piece.length - skipped);
        taken -= skipped;
    }
    if (!wasWaiting && turn_ == nullptr) {
        beginWaiting();
    }
    noteHeldUp();
    return true;
}

void Outlet::send(TipprmiStream const& notification)
{
    std::lock_guard const lock(mutex_);
    if (isLost_ || isClosed_) {
        ++lost_;
        return;
    }
    bool const wasWaiting = queue_.size() != 0;
    std::size_t taken = 0;
    if (!wasWaiting && turn_ == nullptr) {
        taken = connection_.sendSome(notification);
        if (taken == notification.size()) [[likely]] {
            return;
        }
    }
    if (queue_.size() + behind_.size() - answerBytes_ > fullQueue) {
        lose("it lets too many notifications wait");
        ++lost_;
        return;
    }
    Queue& queue = turn_ != nullptr ? behind_ : queue_;
    queue.append(notification.data() + taken, notification.size() - taken);
    queue.entries.push_back({notification.size() - taken, false});
    if (!wasWaiting && turn_ == nullptr) {
        beginWaiting();
    }
    noteHeldUp();
}

void Outlet::beginWaiting()
{
    stalls_ = Clock::now() + Deadline::current();
    owner_.awaitSending(stalls_);
}

void Outlet::drain()
{
    std::lock_guard const lock(mutex_);
    if (isLost_ || isClosed_ || queue_.size() == 0) {
        return;
    }
    Channel::Piece const all{queue_.bytes.data() + queue_.begin, queue_.size()};
    std::size_t const taken = connection_.sendSome(std::span(&all, 1));
    noteTaken(taken);
    vainDrains_ = taken == 0 ? vainDrains_ + 1 : 0;
    if (vainDrains_ >= mostVainDrains) {
        lose("");
    } else if (queue_.size() != 0) {
        stalls_ = taken != 0 ? Clock::now() + Deadline::current() : stalls_;
        owner_.awaitSending(stalls_);
    }
}

void Outlet::noteTaken(std::size_t count)
{
    queue_.begin += count;
    // An answer that is still being sent in parts stays until it has ended.
    while (queue_.entries.size() > (turn_ != nullptr ? 1 : 0) && count >= queue_.entries.front().left) {
        Entry const& entry = queue_.entries.front();
        count -= entry.left;
        answers_ -= entry.isAnswer ? 1 : 0;
        answerBytes_ -= entry.isAnswer ? entry.left : 0;
        queue_.entries.pop_front();
    }
    if (count != 0) {
        queue_.entries.front().left -= count;
        answerBytes_ -= queue_.entries.front().isAnswer ? count : 0;
    }
    if (queue_.size() == 0) {
        queue_.bytes = {};
        queue_.begin = 0;
    } else if (queue_.begin > queue_.bytes.size() / 2) {
        queue_.bytes.erase(queue_.bytes.begin(), queue_.bytes.begin() + static_cast<std::ptrdiff_t>(queue_.begin));
        queue_.begin = 0;
    }
    noteHeldUp();
}

void Outlet::noteHeldUp()
{
    // What a client asks for is not to be why it loses notifications.
    bool const isFull = answers_ >= mostAnswers || answerBytes_ >= mostAnswerBytes ||
                        queue_.size() + behind_.size() - answerBytes_ >= fullQueue / 2;
    isHeldUp_.store(isFull, std::memory_order_release);
}

std::optional<Outlet::Clock::time_point> Outlet::checkTime(Clock::time_point now)
{
    std::lock_guard const lock(mutex_);
    if (isLost_ || isClosed_ || queue_.size() == 0) {
        return std::nullopt;
    }
    if (now < stalls_) {
        return stalls_;
    }
    lose(answers_ != 0 ? "a reply was not taken in time" : "it takes no notification");
    return std::nullopt;
}

bool Outlet::isWaiting()
{
    std::lock_guard const lock(mutex_);
    return !isLost_ && (queue_.size() != 0 || turn_ != nullptr);
}

bool Outlet::isLost()
{
    std::lock_guard const lock(mutex_);
    return isLost_;
}

// The first reason counts; none when the client has gone by itself. Whoever has the connection does the rest.
void Outlet::lose(char const* why)
{
    if (!isLost_) {
        isLost_ = true;
        why_ = why;
        connection_.shutDown();
        owner_.endSoon();
    }
}

void Outlet::abandon()
{
    std::lock_guard const lock(mutex_);
    if (!isClosed_) {
        lose("");
    }
}

std::size_t Outlet::waitingNotifications() const
{
    auto const count = [](Queue const& queue) {
        return static_cast<std::size_t>(
            std::ranges::count_if(queue.entries, [](Entry const& entry) { return !entry.isAnswer; }));
    };
    return count(queue_) + count(behind_);
}

void Outlet::close()
{
    std::lock_guard const lock(mutex_); // somebody may be notifying still
    if (isClosed_) {
        return;
    }
    isClosed_ = true;
    connection_.shutDown();
    if (!why_.empty()) {
        std::size_t const count = lost_ + waitingNotifications();
        log_.tell(4, closing(endpoint_) + why_,
                  count != 0 ? ", " + std::to_string(count) + " notifications are lost" : std::string());
    }
}

} // namespace trs
