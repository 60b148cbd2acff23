#include "tools/traffic/Relay.h"

#include "broker/framing/Message.h"
#include "broker/machine/Thread.h"
#include "broker/transport/Acceptor.h"
#include "broker/transport/Transport.h"
#include "tools/support/SignalWatch.h"

#include <array>
#include <atomic>
#include <condition_variable>
#include <csignal>
#include <list>
#include <mutex>

namespace trs::traffic {

namespace {

// For a client to read why it is not served.
constexpr std::chrono::milliseconds refusalTime{1000};

constexpr char const* noThread = "the relay has no thread for another connection";

} // namespace

class Relay::Parts {
public:
    Parts(Endpoint itsListen, Endpoint itsUnit, Tap itsTap, Complain itsComplain);

    void admit(std::unique_ptr<Channel> client);
    // On any thread.
    void tell(std::uint32_t connection, Direction direction, std::string_view bytes)
    {
        std::lock_guard const lock(telling);
        hasHadEnough = hasHadEnough || !tap(connection, direction, bytes);
    }
    void endIfOver()
    {
        if (hasHadEnough) {
            end();
        }
    }
    void end()
    {
        std::lock_guard const lock(ending);
        isOver = true;
        over.notify_all();
    }

    Endpoint const listen;
    Endpoint const unit;
    Tap const tap;
    Complain const complain;
    std::unique_ptr<Dialer> dialer;
    std::mutex telling;
    std::atomic<bool> hasHadEnough = false; // the tap
    std::mutex ending;
    std::condition_variable over;
    bool isOver = false;
    std::optional<tools::SignalWatch> signals;
    std::uint32_t connections = 0; // the acceptor's thread's own, like the pairs while it runs
    std::list<Pair> pairs;
    Acceptor acceptor;
};

// One connection, with its other half: a thread for each direction.
class Relay::Pair {
public:
    Pair(Parts& parts, std::unique_ptr<Channel> client)
        : parts_(parts), number_(++parts.connections), client_(std::move(client)), cutClient_(cut_, *client_)
    {
    }
    Pair(Pair const&) = delete;
    Pair& operator=(Pair const&) = delete;
    ~Pair()
    {
        cut_.cut();
        toUnit_.join();
    }

    void start()
    {
        if (!toUnit_.start([this] { run(); })) {
            refuse(noThread);
            parts_.tell(number_, Direction::toUnit, {});
            isEnded_ = true;
        }
    }
    bool isEnded() const { return isEnded_; }

private:
    void run()
    {
        std::string why;
        if (!connect(why) || !carryBothWays(why)) {
            refuse(why);
            awaitEnd();
        }
        parts_.endIfOver();
        isEnded_ = true;
    }
    bool connect(std::string& why)
    {
        Deadline deadline;
        for (std::size_t way = 0; unit_ == nullptr && way < parts_.dialer->ways(); ++way) {
            unit_ = parts_.dialer->dial(way, deadline, cut_, why);
        }
        if (unit_ == nullptr) {
            why.insert(0, "the relay cannot reach " + parts_.unit.text() + ": ");
        }
        return unit_ != nullptr;
    }
    bool carryBothWays(std::string& why)
    {
        Cut::Member const cutUnit(cut_, *unit_);
        Thread fromUnit;
        if (!fromUnit.start([this] { carry(Direction::fromUnit); })) {
            why = noThread;
            return false;
        }
        carry(Direction::toUnit);
        fromUnit.join();
        return true;
    }
    void carry(Direction direction)
    {
        bool const isToUnit = direction == Direction::toUnit;
        Channel& from = isToUnit ? *client_ : *unit_;
        Channel& to = isToUnit ? *unit_ : *client_;
        std::array<unsigned char, 65536> room;
        for (;;) {
            std::size_t count = 0;
            Channel::Received const received = from.receive(room.data(), room.size(), nullptr, count);
            if (received == Channel::Received::closed) {
                to.endSending(); // the other direction may still have something to carry
                break;
            }
            if (received != Channel::Received::some) {
                cut_.cut();
                break;
            }
            parts_.tell(number_, direction, {reinterpret_cast<char const*>(room.data()), count});
            Deadline patient(std::chrono::milliseconds::max());
            if (to.send(room.data(), count, patient) != Channel::Sent::all) {
                cut_.cut();
                break;
            }
            parts_.endIfOver();
        }
        parts_.tell(number_, direction, {});
    }
    void refuse(std::string const& why)
    {
        parts_.complain(why);
        TipprmiStream refusal(100);
        appendRefusal(refusal, why);
        parts_.tell(number_, Direction::fromUnit, {reinterpret_cast<char const*>(refusal.data()), refusal.size()});
        parts_.tell(number_, Direction::fromUnit, {});
        client_->sendSome(refusal.data(), refusal.size());
        client_->endSending();
    }
    // Hanging up on what a client has sent would take back what it was told.
    void awaitEnd()
    {
        std::array<unsigned char, 4096> room;
        std::size_t count = 0;
        Deadline const deadline(refusalTime);
        while (client_->receiveRest(room.data(), room.size(), deadline, count) == Channel::Received::some) {
            parts_.tell(number_, Direction::toUnit, {reinterpret_cast<char const*>(room.data()), count});
        }
        parts_.tell(number_, Direction::toUnit, {});
        client_->shutDown();
    }

    Parts& parts_;
    std::uint32_t const number_;
    Cut cut_;
    std::unique_ptr<Channel> const client_;
    Cut::Member const cutClient_;
    std::unique_ptr<Channel> unit_;
    std::atomic<bool> isEnded_ = false;
    Thread toUnit_;
};

Relay::Parts::Parts(Endpoint itsListen, Endpoint itsUnit, Tap itsTap, Complain itsComplain)
    : listen(std::move(itsListen)), unit(std::move(itsUnit)), tap(std::move(itsTap)), complain(std::move(itsComplain)),
      acceptor([this](std::unique_ptr<Channel> client, std::string const&) { admit(std::move(client)); })
{
}

void Relay::Parts::admit(std::unique_ptr<Channel> client)
{
    pairs.remove_if([](Pair const& pair) { return pair.isEnded(); });
    pairs.emplace_back(*this, std::move(client)).start();
}

Relay::Relay(Endpoint listen, Endpoint unit, Tap tap, Complain complain)
    : parts_(std::make_unique<Parts>(std::move(listen), std::move(unit), std::move(tap), std::move(complain)))
{
}

Relay::~Relay() = default;

std::string Relay::open()
{
    Parts& parts = *parts_;
    std::string why;
    parts.dialer = makeDialer(parts.unit, why);
    if (parts.dialer == nullptr) {
        return why;
    }
    parts.signals.emplace(std::initializer_list<int>{SIGINT, SIGTERM}, [&parts] { parts.end(); });
    return parts.acceptor.listen(parts.listen);
}

std::string Relay::endpoint() const { return parts_->acceptor.endpoints().front(); }

void Relay::run(std::optional<std::chrono::milliseconds> time)
{
    Parts& parts = *parts_;
    {
        std::unique_lock lock(parts.ending);
        auto const isOver = [&parts] { return parts.isOver; };
        if (time) {
            parts.over.wait_for(lock, *time, isOver);
        } else {
            parts.over.wait(lock, isOver);
        }
    }
    parts.acceptor.stop();
    parts.pairs.clear();
}

} // namespace trs::traffic
