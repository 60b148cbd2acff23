// Notifications that may be missing: what observers learn when the connection for them is lost and made again.
#include "broker/NotificationGap.h"

#include "broker/calls/Subscriptions.h"
#include "broker/framework/QelOperations.h"
#include "platform/TreflectObserver.h"
#include "tests/support/Sockets.h"

#include <algorithm>
#include <condition_variable>
#include <gmock/gmock.h>
#include <list>
#include <memory>
#include <random>

namespace {

using std::chrono::milliseconds;
using support::Descriptor;
using support::Octets;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using trs::NotificationGap;
using trs::OperationKey;
using trs::Subscriptions;
using Asking = Subscriptions::Message::Kind;

constexpr unsigned long setClass = 0xa6d4e092; // QelLong
constexpr unsigned long setIndex = 1;

std::vector<std::string> idsOf(NotificationGap const& gap)
{
    std::vector<std::string> ids;
    for (OperationKey const& key : gap.operations) {
        ids.push_back(key.oid.getIdString());
    }
    return ids;
}

// The decisions, with time and chance in the test's hand.
class Decisions : public testing::Test {
protected:
    static OperationKey key(char const* id) { return {TipprmiOID(id), setClass, setIndex}; }
    trs::TimeAndChance timing()
    {
        trs::TimeAndChance made;
        made.now = [this] { return trs::TimeAndChance::Time(now); };
        made.date = [this] { return at(now); };
        made.random = [this](std::uint64_t most) {
            mosts.push_back(most);
            return most / 2;
        };
        return made;
    }
    static trs::TimeAndChance::Date at(milliseconds time) { return trs::TimeAndChance::Date(time); }
    // Subscribes with a way, and has it confirmed.
    void subscribe(char const* id)
    {
        auto const message = subscriptions.add(key(id));
        ASSERT_TRUE(message && message->kind == Asking::subscribe);
        subscriptions.confirm(message->number, true);
        ASSERT_EQ(subscriptions.state(key(id)), Subscriptions::State::confirmed);
    }

    milliseconds now{1000};
    std::vector<std::uint64_t> mosts;
    Subscriptions subscriptions{timing()};
};

TEST_F(Decisions, AGapLastsUntilThePeerHasTheSubscriptionAgain)
{
    EXPECT_FALSE(subscriptions.add(key("A"))) << "there is no way yet";
    std::vector<Subscriptions::Message> const first = subscriptions.begin();
    ASSERT_THAT(first, SizeIs(1));
    EXPECT_THAT(subscriptions.confirm(first[0].number, true), IsEmpty()) << "nothing was missed";
    subscribe("B");
    subscribe("C");

    now = milliseconds(5000);
    Subscriptions::Gaps const begun = subscriptions.lose(at(milliseconds(4000)));
    ASSERT_THAT(begun, SizeIs(1));
    EXPECT_THAT(idsOf(begun[0]), ElementsAre("A", "B", "C"));
    EXPECT_EQ(begun[0].since, at(milliseconds(4000)));
    EXPECT_EQ(begun[0].lost, at(milliseconds(5000)));
    EXPECT_FALSE(begun[0].until);
    now = milliseconds(6000);
    EXPECT_THAT(subscriptions.lose(at(milliseconds(5500))), IsEmpty()) << "an attempt failed: it is the same gap";

    std::vector<Subscriptions::Message> const renewals = subscriptions.begin();
    ASSERT_THAT(renewals, SizeIs(3));
    EXPECT_TRUE(std::ranges::all_of(renewals, [](auto const& each) { return each.kind == Asking::renew; }));
    EXPECT_THAT(subscriptions.confirm(renewals[0].number, true), IsEmpty()) << "the others are awaited";
    EXPECT_THAT(subscriptions.confirm(first[0].number, false), IsEmpty()) << "an answer to an earlier connection";
    // A notification of B comes before the answer for B: it must not be delivered before its gap is told.
    Subscriptions::Gaps ended = subscriptions.notice(key("B").view());
    ASSERT_THAT(ended, SizeIs(1));
    EXPECT_THAT(idsOf(ended[0]), ElementsAre("A", "B"));
    EXPECT_EQ(ended[0].since, at(milliseconds(4000)));
    EXPECT_EQ(ended[0].until, at(milliseconds(6000)));
    EXPECT_THAT(subscriptions.notice(key("B").view()), IsEmpty());

    // Lost once more: C is in its first gap still, A and B are in another.
    now = milliseconds(8000);
    Subscriptions::Gaps const again = subscriptions.lose(at(milliseconds(7000)));
    ASSERT_THAT(again, SizeIs(1));
    EXPECT_THAT(idsOf(again[0]), ElementsAre("A", "B"));
    for (Subscriptions::Message const& message : subscriptions.begin()) {
        ended = subscriptions.confirm(message.number, true);
    }
    ASSERT_THAT(ended, SizeIs(2));
    EXPECT_THAT(idsOf(ended[0]), ElementsAre("A", "B"));
    EXPECT_THAT(idsOf(ended[1]), ElementsAre("C"));
    EXPECT_EQ(ended[1].since, at(milliseconds(4000)));
    EXPECT_FALSE(subscriptions.hasGaps());
}

TEST_F(Decisions, WhoeverAskedAndGotNoAnswerIsInNoGap)
{
    subscriptions.begin();
    auto const asked = subscriptions.add(key("A"));
    ASSERT_TRUE(asked);
    EXPECT_FALSE(subscriptions.add(key("A"))) << "it is asked already";
    EXPECT_THAT(subscriptions.lose(at(now)), IsEmpty());
    EXPECT_EQ(subscriptions.state(key("A")), Subscriptions::State::failed);
    EXPECT_THAT(subscriptions.begin(), IsEmpty()) << "nobody waits for it any more";
    subscriptions.confirm(asked->number, true);
    EXPECT_EQ(subscriptions.state(key("A")), Subscriptions::State::failed);

    auto const anew = subscriptions.add(key("A"));
    ASSERT_TRUE(anew);
    subscriptions.confirm(anew->number, true);
    subscriptions.confirm(anew->number, false);
    EXPECT_EQ(subscriptions.state(key("A")), Subscriptions::State::confirmed) << "the second answer does not count";
    EXPECT_FALSE(subscriptions.remove(key("A")));
    EXPECT_FALSE(subscriptions.remove(key("A")));
    auto const left = subscriptions.remove(key("A"));
    EXPECT_TRUE(left && left->kind == Asking::unsubscribe);
    EXPECT_TRUE(subscriptions.isEmpty());
}

TEST_F(Decisions, PausesGrowUntilThePeerHasAnsweredEverything)
{
    subscriptions.begin();
    subscribe("A");
    subscribe("B");
    EXPECT_FALSE(subscriptions.attemptAt()) << "there is a way";
    for (int attempt = 0; attempt < 8; ++attempt) {
        subscriptions.lose(at(now));
        EXPECT_EQ(subscriptions.attemptAt(), trs::TimeAndChance::Time(now + milliseconds(mosts.back() / 2)))
            << "as chance has it";
    }
    EXPECT_THAT(mosts, ElementsAre(50, 100, 200, 400, 800, 1600, 2000, 2000));
    auto const renewals = subscriptions.begin();
    subscriptions.confirm(renewals.at(0).number, true);
    subscriptions.lose(at(now));
    EXPECT_EQ(mosts.back(), 2000U) << "a peer that answers half is not back";
    for (Subscriptions::Message const& message : subscriptions.begin()) {
        subscriptions.confirm(message.number, true);
    }
    subscriptions.lose(at(now));
    EXPECT_EQ(mosts.back(), 50U);
    subscriptions.add(key("C"));
    EXPECT_LT(subscriptions.attemptAt(), trs::TimeAndChance::Time(now)) << "somebody waits for it";
}

// Many who lost one peer at one moment, simulated until it is there again.
TEST(Reconnection, IsSpreadOverTime)
{
    constexpr std::size_t clients = 1000;
    constexpr milliseconds isBackAt{10000};
    std::mt19937_64 numbers(1);
    milliseconds time{0};
    trs::TimeAndChance timing;
    timing.now = [&time] { return trs::TimeAndChance::Time(time); };
    timing.random = [&numbers](std::uint64_t most) {
        return std::uniform_int_distribution<std::uint64_t>(0, most)(numbers);
    };
    std::map<milliseconds::rep, std::size_t> attempts; // by their time, in steps of 50 ms
    std::size_t count = 0;
    for (std::size_t client = 0; client < clients; ++client) {
        Subscriptions subscriptions(timing);
        OperationKey const key(TipprmiOID("A"), setClass, setIndex);
        time = milliseconds(0);
        subscriptions.begin();
        subscriptions.confirm(subscriptions.add(key)->number, true);
        for (subscriptions.lose({}); time < isBackAt; subscriptions.lose({})) {
            time = std::chrono::duration_cast<milliseconds>(subscriptions.attemptAt()->time_since_epoch());
            ++attempts[time.count() / 50];
            ++count;
        }
    }
    EXPECT_LT(count, clients * 25) << "10 s have no more pauses of up to 2 s";
    for (auto const& [step, number] : attempts) {
        EXPECT_TRUE(step < 3000 / 50 || number < clients / 10) << number << " at once after " << step * 50 << " ms";
    }
}

// What observer and gap listener were told, in its order.
class Story {
public:
    void add(std::string const& event)
    {
        std::lock_guard const lock(mutex_);
        events_.push_back(event);
        changed_.notify_all();
    }
    std::vector<std::string> await(std::size_t count)
    {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, support::patience, [&] { return events_.size() >= count; });
        return events_;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> events_;
};

class Teller final : public TreflectObserver {
public:
    explicit Teller(Story& story, std::string name)
        : TreflectObserver(TipprmiOID(""), nullptr, "teller"), story_(story), name_(std::move(name))
    {
    }
    ~Teller() override { withdraw(); }
    bool detected() override
    {
        if (whenTold) {
            whenTold();
        }
        story_.add(name_);
        return true;
    }

    std::function<void()> whenTold;

private:
    Story& story_;
    std::string const name_;
};

class Gaps : public support::BrokerTest {
protected:
    // Reads subscriptions, and answers each.
    static void answer(Descriptor const& connection, int count)
    {
        for (; count > 0; --count) {
            Octets const request = connection.readMessage();
            if (request.size() >= 12) {
                connection.write(replyTo(request));
            }
        }
    }
    static Octets replyTo(Octets const& request)
    {
        return {0, 0, 0, 8, 7, 0, 0, 0, request[8], request[9], request[10], request[11]};
    }
    // An execution of QelLong::set of an object whose identifier is one letter.
    static Octets notification(char id)
    {
        return {0,
                0,
                0,
                29,
                8,
                0,
                0,
                0,
                0,
                0,
                0,
                0,
                0xa6,
                0xd4,
                0xe0,
                0x92,
                0,
                0,
                0,
                1,
                0,
                0,
                0,
                1,
                0,
                0,
                0,
                1,
                static_cast<unsigned char>(id),
                0,
                0,
                0,
                0};
    }
    std::string toldOf(NotificationGap const& gap) const
    {
        std::string text = (gap.until ? "over" : "lost") + std::string(gap.peer == "unix:" + path ? "" : " elsewhere");
        for (std::string const& id : idsOf(gap)) {
            text += ' ' + id;
        }
        bool const isOrdered = gap.since <= gap.lost && gap.lost <= gap.until.value_or(gap.lost);
        return text + (isOrdered && TreflectORB::hasRunPermission() ? "" : "?");
    }

    Story story;
};

TEST_F(Gaps, AreToldBeforeTheNextNotification)
{
    int connections = 0;
    support::FakePeer const peer(path, [&connections](Descriptor const& connection) {
        if (++connections == 1) {
            answer(connection, 2);
            connection.write(notification('A'));
            return;
        }
        Octets const renewal = connection.readMessage(); // of A
        connection.write(notification('A'));
        connection.write(replyTo(renewal));
        answer(connection, 1);
        connection.write(notification('B'));
        connection.isClosedByPeer();
    });
    trs::GapListener const listener([this](NotificationGap const& gap) { story.add(toldOf(gap)); });
    TreflectORB const* const orb = peerAt("unix:" + path);
    Teller a(story, "A");
    Teller b(story, "B");
    ASSERT_TRUE(support::boundTo<QelLongClient>(orb, "A").operation("set").postObserve(&a));
    ASSERT_TRUE(support::boundTo<QelLongClient>(orb, "B").operation("set").postObserve(&b));
    EXPECT_THAT(story.await(6), ElementsAre("A", "lost A B", "over A", "A", "over B", "B"));
}

// What was read late was sent early: the gap begins before it.
TEST_F(Gaps, BeginWithTheLastTimeThatNothingWaited)
{
    std::mutex mutex;
    std::condition_variable changed;
    bool isSent = false;
    NotificationGap::Time begin;
    support::FakePeer const peer(path, [&](Descriptor const& connection) {
        if (isSent) {
            return;
        }
        answer(connection, 1);
        std::lock_guard const lock(mutex);
        connection.write(notification('A'));
        begin = std::chrono::system_clock::now(); // until the first one came nothing waited
        for (int count = 1; count < 100; ++count) {
            connection.write(notification('A'));
        }
        isSent = true;
        changed.notify_all();
    });
    NotificationGap::Time since;
    trs::GapListener const listener([&](NotificationGap const& gap) {
        since = gap.since;
        story.add(toldOf(gap));
    });
    Teller a(story, "A");
    a.whenTold = [&] { // as slow as somebody who was stopped
        std::unique_lock lock(mutex);
        changed.wait_for(lock, support::patience, [&] { return isSent; });
        lock.unlock();
        auto const end = std::chrono::steady_clock::now() + milliseconds(1);
        while (std::chrono::steady_clock::now() < end) {
        }
    };
    ASSERT_TRUE(support::boundTo<QelLongClient>(peerAt("unix:" + path), "A").operation("set").postObserve(&a));
    EXPECT_THAT(story.await(101).back(), testing::StrEq("lost A"));
    EXPECT_LE(since, begin) << "100 ms before it was noticed";
}

TEST_F(Gaps, AreNotToldOfWhatWasEndedHere)
{
    support::FakePeer const peer(path, [](Descriptor const& connection) {
        answer(connection, 1);
        connection.isClosedByPeer();
    });
    trs::GapListener const listener([this](NotificationGap const& gap) { story.add(toldOf(gap)); });
    Teller a(story, "A");
    TreflectORB const* const orb = peerAt("unix:" + path);
    ASSERT_TRUE(support::boundTo<QelLongClient>(orb, "A").operation("set").postObserve(&a));
    trs::Broker::instance().removePeers();
    EXPECT_THAT(story.await(0), IsEmpty());
}

TEST_F(Gaps, ListenersMayGoWhileTheyAreTold)
{
    NotificationGap gap;
    std::list<trs::GapListener> listeners;
    int told = 0;
    listeners.emplace_back([&](NotificationGap const&) {
        ++told;
        listeners.clear(); // itself, and one that is not told any more
    });
    listeners.emplace_back([&](NotificationGap const&) { told += 100; });
    trs::tellGap(gap);
    EXPECT_EQ(told, 1);

    std::atomic<bool> isToldOf = false;
    std::atomic<bool> isOver = false;
    auto waited = std::make_unique<trs::GapListener>([&](NotificationGap const&) { isOver = true; });
    std::unique_ptr<TreflectHandlerState> running = std::make_unique<TreflectHandlerState>();
    std::thread telling([&] {
        isToldOf = true;
        trs::tellGap(gap); // waits for the permission that the destroying thread has
    });
    while (!isToldOf) {
        std::this_thread::yield();
    }
    waited.reset();
    bool const wasOver = isOver;
    running.reset();
    telling.join();
    EXPECT_EQ(isOver, wasOver) << "it was told after it had gone";
}

} // namespace
