#include "broker/serving/ServerConnection.h"

#include "broker/serving/ConnectionTable.h"

namespace trs {

namespace {

constexpr unsigned mostInARow = 16;               // requests, when others wait
constexpr std::chrono::milliseconds stayTime{10}; // for which a worker waits for the next one
constexpr std::size_t mostExchanges = 64;         // that wait at the same time
constexpr unsigned char oneTimedOf = 8;           // calls
constexpr unsigned mostUntold = 256;              // calls that are counted here alone
constexpr std::size_t leastRoom = 8192;           // for 64 short requests that come together
// Streams that have held a longer message are not kept.
constexpr std::size_t greatestKeptStorage = 65536;
constexpr std::size_t leastStorageOfInput = 256; // within the stream

void releaseStorage(TipprmiStream& stream, std::size_t greatest)
{
    if (stream.capacity() > greatest) {
        std::destroy_at(&stream);
        std::construct_at(&stream, 100);
    }
}

} // namespace

ServerConnection::ServerConnection(std::unique_ptr<Channel> channel, std::string const& endpoint, House const& house)
    : house_(house), connection_(std::move(channel), leastRoom),
      session_(connection_, *this, *this, endpoint, house.tap, house.log)
{
}

void ServerConnection::open()
{
    house_.table.rest(*this, Idle::waiting);
    number_ = house_.poller.add(shared_from_this());
    messageDue_ = Clock::now() + Deadline::current();
    remind(*messageDue_);
    want(Poller::canReceive);
}

bool ServerConnection::change(Phase from, Phase to)
{
    std::lock_guard const lock(mutex_);
    if (phase_ != from) {
        return false;
    }
    phase_ = to;
    return true;
}

ServerConnection::Phase ServerConnection::phase()
{
    std::lock_guard const lock(mutex_);
    return phase_;
}

bool ServerConnection::dismiss()
{
    Activity idle = Activity::idle;
    if (!activity_.compare_exchange_strong(idle, Activity::dismissed)) {
        return false;
    }
    connection_.shutDown(); // which whoever waits for it sees
    return true;
}

void ServerConnection::endReceiving()
{
    isEnding_ = true;
    if (!dismiss()) {
        connection_.endReceiving();
        hurryExchanges();
    }
}

void ServerConnection::shutDown()
{
    isShut_ = true;
    connection_.shutDown();
    hurryExchanges();
    endSoon();
}

void ServerConnection::endSoon() { house_.poller.tell(number_); }

void ServerConnection::awaitSending(Clock::time_point due)
{
    remind(due);
    want(Poller::canSend);
}

void ServerConnection::want(Poller::Events events)
{
    std::lock_guard const lock(mutex_);
    if (phase_ != Phase::ended) {
        wanted_ |= events;
        watch();
    }
}

// Under the lock.
void ServerConnection::watch()
{
    if (!connection_.watch(house_.poller, number_, wanted_)) {
        session_.logClosed("the system lets it not be waited for", 3);
        shutDown();
    }
}

void ServerConnection::remind(Clock::time_point due)
{
    std::lock_guard const lock(mutex_);
    if (phase_ != Phase::ended && (!reminder_ || due < *reminder_)) {
        reminder_ = due;
        house_.poller.setTimer(number_, due);
    }
}

void ServerConnection::ready(Poller::Events events)
{
    constexpr Poller::Events channelEvents = Poller::canReceive | Poller::canSend;
    if ((events & channelEvents) != 0) {
        std::lock_guard const lock(mutex_);
        wanted_ &= ~events;
        if (wanted_ != Poller::nothing && phase_ != Phase::ended) {
            watch(); // the poller told once of both
        }
    }
    if ((events & Poller::timeIsOver) != 0) {
        checkTime();
    }
    Outlet& outlet = session_.outlet();
    if ((events & Poller::canSend) != 0) {
        outlet.drain();
    }
    Phase const present = phase();
    bool const isTaken = present == Phase::queued || present == Phase::served || present == Phase::ended;
    if (!isTaken && (isShut_ || outlet.isLost())) {
        endFrom(present);
    } else if (present == Phase::greeting && (events & Poller::canReceive) != 0) {
        greet();
    } else if (present == Phase::resting && (events & Poller::canReceive) != 0) {
        if (change(Phase::resting, Phase::queued)) {
            house_.table.unrest(*this);
            submit();
        }
    } else if (present == Phase::resting && (events & Poller::isCalled) != 0 && !hasExchanges()) {
        beginIdling();
    } else if (present == Phase::held && !isHeldUp()) {
        resume();
    } else if (present == Phase::finishing && isOver()) {
        endFrom(Phase::finishing);
    }
}

void ServerConnection::checkTime()
{
    Phase present{};
    {
        std::lock_guard const lock(mutex_);
        reminder_.reset();
        present = phase_;
    }
    Clock::time_point const now = Clock::now();
    // Whatever it is that must have come by then, the poller's thread alone takes it from here.
    if ((present == Phase::greeting || present == Phase::resting) && messageDue_) {
        if (now < *messageDue_) {
            remind(*messageDue_);
        } else {
            bool const isGreeting = present == Phase::greeting;
            session_.logClosed(isGreeting ? "no greeting came in time" : "a message that was begun did not end in time",
                               isGreeting ? 6 : 4);
            endFrom(present);
        }
    }
    if (auto const next = session_.outlet().checkTime(now)) {
        remind(*next);
    }
}

void ServerConnection::greet()
{
    switch (session_.greet()) {
    case Session::Greeted::yes:
        messageDue_.reset();
        if (change(Phase::greeting, Phase::resting)) {
            want(Poller::canReceive);
        }
        break;
    case Session::Greeted::notYet:
        want(Poller::canReceive);
        break;
    case Session::Greeted::no:
        endFrom(Phase::greeting);
        break;
    }
}

void ServerConnection::submit()
{
    if (!house_.workers.submit(shared_from_this())) {
        refuse();
    }
}

void ServerConnection::resume()
{
    if (change(Phase::held, Phase::queued)) {
        submit();
    }
}

void ServerConnection::run() { serve(Session::Way::served); }
void ServerConnection::refuse() { serve(Session::Way::refused); }

// What was answered so far is not to wait for what the object waits for.
void ServerConnection::pause()
{
    session_.outlet().flush();
    if (tally_ != nullptr) {
        house_.total.add(*tally_);
    }
}

void ServerConnection::serve(Session::Way way)
{
    if (!change(Phase::queued, Phase::served)) {
        return;
    }
    isStaying_ = false;
    TipprmiStream reply(100);
    Tally tally;
    tally_ = &tally;
    Next const next = answerAll({way, reply, false, tally});
    tally_ = nullptr;
    house_.total.add(tally);
    Outlet& outlet = session_.outlet();
    outlet.flush();
    switch (next) {
    case Next::rest:
        rest();
        break;
    case Next::queue:
        if (change(Phase::served, Phase::queued)) {
            submit();
        }
        break;
    case Next::hold:
        change(Phase::served, Phase::held);
        if (!isHeldUp() || isShut_ || outlet.isLost()) {
            resume();
        }
        break;
    case Next::finish:
        change(Phase::served, Phase::finishing);
        if (isOver() || isShut_) {
            endFrom(Phase::finishing);
        }
        break;
    }
}

// As long as there is something, or may be in a moment.
ServerConnection::Next ServerConnection::answerAll(Session::Turn turn)
{
    Connection::Received received = connection_.receiveNow(message_);
    for (unsigned inARow = 1;; ++inARow) {
        switch (received) {
        case Connection::Received::message:
            break;
        case Connection::Received::timedOut:
            return Next::rest;
        case Connection::Received::malformed:
            session_.logClosed("a malformed message came");
            return Next::finish;
        case Connection::Received::closed:
        case Connection::Received::lost:
            return Next::finish;
        }
        // Unless it was dismissed while the message came.
        if (activity_.exchange(Activity::busy) == Activity::dismissed || isEnding_) {
            return Next::finish;
        }
        turn.isMoreToCome = connection_.isMessageAhead();
        if (!answerNext(turn)) {
            return Next::finish;
        }
        if (isHeldUp()) [[unlikely]] {
            return Next::hold;
        }
        if (turn.isMoreToCome) {
            if (inARow >= mostInARow && turn.way == Session::Way::served && house_.workers.isShort()) {
                return Next::queue;
            }
            received = connection_.receiveNow(message_);
        } else {
            received = turn.way == Session::Way::served ? receiveMore() : Connection::Received::timedOut;
        }
    }
}

bool ServerConnection::answerNext(Session::Turn const& turn)
{
    bool const isTimed = untimed_ == 0; // asking for the time takes as long as all other counting
    untimed_ = isTimed ? oneTimedOf - 1 : untimed_ - 1;
    Clock::time_point const begin = isTimed ? Clock::now() : Clock::time_point();
    bool const isAnswered = session_.answer(message_, turn);
    if (isTimed) {
        turn.tally.time(Clock::now() - begin);
    }
    if (turn.tally.size() >= mostUntold) {
        house_.total.add(turn.tally);
    }
    releaseStorage(message_, greatestKeptStorage);
    releaseStorage(turn.reply, greatestKeptStorage);
    return isAnswered;
}

// Waits for the next message, if a worker can be spared for that.
Connection::Received ServerConnection::receiveMore()
{
    if (!house_.workers.stay()) {
        return Connection::Received::timedOut;
    }
    if (!isStaying_) {
        isStaying_ = true;
        house_.table.rest(*this, Idle::staying);
    }
    if (!hasExchanges()) { // whose answers nobody may send away
        activity_.store(Activity::idle);
    }
    Deadline stay(stayTime);
    return connection_.receiveSoon(message_, stay);
}

void ServerConnection::rest()
{
    if (connection_.isBegun()) {
        messageDue_ = messageDue_.value_or(Clock::now() + Deadline::current());
        remind(*messageDue_);
    } else {
        messageDue_.reset();
        releaseStorage(message_, leastStorageOfInput);
        connection_.releaseStorage();
    }
    bool const isIdle = !hasExchanges();
    if (isIdle) {
        beginIdling();
    } else {
        house_.table.unrest(*this);
    }
    {
        std::lock_guard const lock(mutex_);
        phase_ = Phase::resting; // from here on it is the poller's
        wanted_ |= Poller::canReceive;
        watch();
    }
    if (!isIdle && !hasExchanges()) {
        endSoon(); // the last was released meanwhile
    }
}

void ServerConnection::beginIdling()
{
    Activity busy = Activity::busy; // it may be dismissed
    activity_.compare_exchange_strong(busy, Activity::idle);
    house_.table.rest(*this, Idle::waiting);
}

std::shared_ptr<TappedExchange::Host> ServerConnection::keep(std::shared_ptr<TappedExchange> exchange)
{
    session_.outlet().admitOthers();
    std::lock_guard const lock(mutex_);
    exchanges_.push_back(std::move(exchange));
    ++exchangeCount_;
    return shared_from_this();
}

void ServerConnection::release(TappedExchange& exchange)
{
    {
        std::lock_guard const lock(mutex_);
        std::erase_if(exchanges_, [&exchange](auto const& present) { return present.get() == &exchange; });
        --exchangeCount_;
    }
    endSoon(); // or go on
}

void ServerConnection::hurryExchanges()
{
    std::lock_guard const lock(mutex_);
    for (std::shared_ptr<TappedExchange> const& exchange : exchanges_) {
        exchange->hurry();
    }
}

bool ServerConnection::isHeldUp() { return session_.outlet().isHeldUp() || exchangeCount_ >= mostExchanges; }
bool ServerConnection::isOver() { return !hasExchanges() && !session_.outlet().isWaiting(); }

void ServerConnection::endFrom(Phase from)
{
    if (!change(from, Phase::ended)) {
        return;
    }
    connection_.shutDown();
    session_.end();
    house_.poller.remove(number_);
    house_.table.remove(*this);
}

} // namespace trs
