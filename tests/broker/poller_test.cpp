// Waiting for many channels on one thread, over sockets and in memory.
#include "broker/transport/MemoryTransport.h"
#include "broker/transport/SocketChannel.h"
#include "broker/transport/Transport.h"

#include <gtest/gtest.h>

#include <array>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <numeric>
#include <sys/socket.h>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;
using trs::Channel;
using trs::Poller;
using ChannelPair = std::pair<std::unique_ptr<Channel>, std::unique_ptr<Channel>>;

ChannelPair socketPair()
{
    std::array<int, 2> descriptors{};
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, descriptors.data()), 0);
    return {std::make_unique<trs::SocketChannel>(descriptors[0]), std::make_unique<trs::SocketChannel>(descriptors[1])};
}

// Writes down what it is told, and answers with what the test does then.
class Notebook final : public Poller::Watcher {
public:
    explicit Notebook(std::function<void(Poller::Events)> act = {}) : act_(std::move(act)) {}

    void ready(Poller::Events events) override
    {
        if (act_) {
            act_(events);
        }
        std::lock_guard const lock(mutex_);
        told_.push_back(events);
        changed_.notify_all();
    }
    // Nothing when it is not told in time.
    Poller::Events next()
    {
        std::unique_lock lock(mutex_);
        if (!changed_.wait_for(lock, 5s, [this] { return !told_.empty(); })) {
            return Poller::nothing;
        }
        Poller::Events const events = told_.front();
        told_.pop_front();
        return events;
    }
    bool isQuiet(std::chrono::milliseconds time)
    {
        std::unique_lock lock(mutex_);
        return !changed_.wait_for(lock, time, [this] { return !told_.empty(); });
    }

private:
    std::function<void(Poller::Events)> const act_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Poller::Events> told_;
};

class Running {
public:
    explicit Running(Poller& poller) : poller_(poller), thread_([&poller] { poller.run(); }) {}
    ~Running()
    {
        poller_.stop();
        thread_.join();
    }

private:
    Poller& poller_;
    std::thread thread_;
};

class Pollers : public testing::TestWithParam<ChannelPair (*)()> {
protected:
    ChannelPair ends = GetParam()();
    Channel& near = *ends.first;
    Channel& far = *ends.second;
    std::array<unsigned char, 100> room{};
    std::size_t count = 0;
};

TEST_P(Pollers, TellOnceForEachTimeThatTheyAreAsked)
{
    Poller poller(Poller::Tells::once);
    ASSERT_EQ(poller.complaint(), "");
    Running const running(poller);
    auto const notebook = std::make_shared<Notebook>();
    Poller::Number const number = poller.add(notebook);
    ASSERT_TRUE(near.watch(poller, number, Poller::canReceive));
    EXPECT_TRUE(notebook->isQuiet(20ms));
    far.sendSome(room.data(), 2);
    EXPECT_EQ(notebook->next(), Poller::canReceive);
    far.sendSome(room.data(), 2);
    EXPECT_TRUE(notebook->isQuiet(20ms)) << "it was not asked again";
    ASSERT_TRUE(near.watch(poller, number, Poller::canReceive));
    EXPECT_EQ(notebook->next(), Poller::canReceive) << "what has come before is told";
    EXPECT_EQ(near.receiveNow(room.data(), room.size(), count), Channel::Received::some);
    EXPECT_EQ(count, 4U);
    EXPECT_EQ(near.receiveNow(room.data(), room.size(), count), Channel::Received::timedOut);
    near.watch(poller, number, Poller::canReceive);
    ends.second.reset();
    EXPECT_NE(notebook->next() & Poller::canReceive, 0U);
    EXPECT_EQ(near.receiveNow(room.data(), room.size(), count), Channel::Received::closed);
    ends.first.reset();
}

TEST_P(Pollers, TellAsLongAsThereIsSomething)
{
    Poller poller(Poller::Tells::always);
    std::vector<unsigned char> received;
    auto const notebook = std::make_shared<Notebook>([&](Poller::Events) {
        unsigned char byte = 0;
        if (near.receiveNow(&byte, 1, count) == Channel::Received::some) {
            received.push_back(byte);
        }
    });
    Poller::Number const number = poller.add(notebook);
    ASSERT_TRUE(near.watch(poller, number, Poller::canReceive));
    std::array<unsigned char, 5> const bytes{1, 2, 3, 4, 5};
    std::array<Channel::Piece, 3> const pieces{{{bytes.data(), 2}, {bytes.data() + 2, 0}, {bytes.data() + 2, 3}}};
    EXPECT_EQ(far.sendSome(pieces), 5U);
    {
        Running const running(poller);
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            EXPECT_EQ(notebook->next(), Poller::canReceive);
        }
        EXPECT_TRUE(notebook->isQuiet(20ms));
    }
    EXPECT_EQ(received, (std::vector<unsigned char>{1, 2, 3, 4, 5}));
    ends.first.reset(); // before its poller
}

// Not even that it has ended, which would be told again and again.
TEST_P(Pollers, TellNothingOfAChannelThatIsNotWatchedForAWhile)
{
    Poller poller(Poller::Tells::always);
    Running const running(poller);
    auto const notebook = std::make_shared<Notebook>([&](Poller::Events) { near.watch(poller, 1, Poller::nothing); });
    ASSERT_EQ(poller.add(notebook), 1U);
    ASSERT_TRUE(near.watch(poller, 1, Poller::canReceive));
    far.sendSome(room.data(), 2);
    EXPECT_EQ(notebook->next(), Poller::canReceive);
    ends.second.reset();
    EXPECT_TRUE(notebook->isQuiet(20ms));
    ASSERT_TRUE(near.watch(poller, 1, Poller::canReceive));
    EXPECT_NE(notebook->next() & Poller::canReceive, 0U);
    EXPECT_EQ(near.receiveNow(room.data(), room.size(), count), Channel::Received::some);
    EXPECT_EQ(near.receiveNow(room.data(), room.size(), count), Channel::Received::closed);
    ends.first.reset();
}

TEST_P(Pollers, TellWhenThereIsRoomAgain)
{
    Poller poller(Poller::Tells::once);
    Running const running(poller);
    auto const notebook = std::make_shared<Notebook>();
    Poller::Number const number = poller.add(notebook);
    ASSERT_TRUE(near.watch(poller, number, Poller::canSend));
    EXPECT_EQ(notebook->next(), Poller::canSend);
    std::vector<unsigned char> bytes(std::size_t{1} << 20);
    std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(0));
    std::vector<Channel::Piece> pieces; // more than a system call takes
    for (std::size_t at = 0; at < bytes.size(); at += 4096) {
        pieces.push_back({bytes.data() + at, 4096});
    }
    std::size_t sent = near.sendSome(pieces);
    ASSERT_LT(sent, bytes.size());
    ASSERT_TRUE(near.watch(poller, number, Poller::canSend));
    EXPECT_TRUE(notebook->isQuiet(20ms));
    std::vector<unsigned char> received(bytes.size());
    for (std::size_t had = 0; had < bytes.size();) {
        trs::Deadline deadline(5s);
        ASSERT_EQ(far.receiveRest(received.data() + had, received.size() - had, deadline, count),
                  Channel::Received::some);
        had += count;
        if (had == sent) {
            EXPECT_EQ(notebook->next(), Poller::canSend);
            sent += near.sendSome(bytes.data() + sent, bytes.size() - sent);
            near.watch(poller, number, Poller::canSend);
        }
    }
    EXPECT_EQ(received, bytes);
    ends.first.reset();
}

INSTANTIATE_TEST_SUITE_P(Sockets, Pollers, testing::Values(&socketPair));
INSTANTIATE_TEST_SUITE_P(Memory, Pollers, testing::Values(&trs::MemoryChannel::makePair));

TEST(Pollers, KeepOneTimeForEach)
{
    Poller poller(Poller::Tells::always);
    Running const running(poller);
    auto const early = std::make_shared<Notebook>();
    auto const late = std::make_shared<Notebook>();
    Poller::Number const first = poller.add(early);
    Poller::Number const second = poller.add(late);
    auto const now = Poller::Clock::now();
    poller.setTimer(second, now + 1h);
    poller.setTimer(first, now + 30ms);
    EXPECT_EQ(early->next(), Poller::timeIsOver);
    EXPECT_GE(Poller::Clock::now(), now + 30ms);
    poller.setTimer(second, now); // while the other's hour is waited for
    EXPECT_EQ(late->next(), Poller::timeIsOver);
    poller.setTimer(first, Poller::Clock::now() + 20ms);
    poller.setTimer(first, std::nullopt);
    poller.setTimer(second, Poller::Clock::now() + 20ms);
    poller.remove(second);
    EXPECT_TRUE(early->isQuiet(50ms));
    EXPECT_TRUE(late->isQuiet(1ms));
    poller.tell(first);
    EXPECT_EQ(early->next(), Poller::isCalled);
    EXPECT_EQ(late.use_count(), 1) << "who is removed is not kept";
}

TEST(Pollers, LearnWhyThereIsNoConnection)
{
    trs::Endpoint endpoint;
    ASSERT_EQ(trs::Endpoint::parse("tcp:127.0.0.1:1", endpoint), "");
    bool isTooEarly = false;
    std::string why;
    auto const channel = trs::makeDialer(endpoint, why)->begin(0, isTooEarly, why);
    ASSERT_NE(channel, nullptr) << why;
    Poller poller(Poller::Tells::always);
    auto const notebook = std::make_shared<Notebook>([&](Poller::Events) { poller.stop(); });
    channel->watch(poller, poller.add(notebook), Poller::canSend);
    poller.run();
    EXPECT_NE(notebook->next() & Poller::canSend, 0U);
    EXPECT_EQ(channel->connectFailure(), "Connection refused");
}

} // namespace
