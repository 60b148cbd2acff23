// The server's side of connections: what goes out, who gives way to whom, and how it ends.
#include "broker/serving/Server.h"

#include "broker/framework/QelOperations.h"
#include "broker/machine/RepeatedLines.h"
#include "rmi/Servant.h"
#include "rmi/TipprmiAny.h"
#include "rmi/TipprmiSequence.h"
#include "tests/support/Requests.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/resource.h>

namespace {

using support::Descriptor;
using support::Gate;
using support::Octets;
using support::operator+;
using support::isDone;
using support::isFull;
using support::isSubscribed;
using support::message;
using support::setting;
using support::subscribing;
using support::withdrawing;

// Answers nothing by itself: replies only take the way of tapped calls.
class PlainTap : public trs::ServerTap {
public:
    std::unique_ptr<trs::TappedCall> begin(trs::ObjectAddress const&, TipprmiStream const&) override
    {
        class Call : public trs::TappedCall {
            bool isExecuted(TipprmiStream&, trs::ReplyStatus&) override { return true; }
            bool answer(TipprmiStream const& reply, Send const& send) override
            {
                return send(reply.data(), 5) && send(reply.data() + 5, reply.size() - 5);
            }
        };
        return std::make_unique<Call>();
    }
};

class Serving : public support::BrokerTest {
protected:
    Serving()
    {
        service.on<&QelLongClient::set>([this](long const&) {
            if (whenSet) {
                whenSet();
            }
            return true;
        });
    }
    ~Serving() override
    {
        trs::Broker::instance().stop();
        trs::Broker::instance().setTap(nullptr);
    }
    void serve() const { ASSERT_EQ(trs::Broker::instance().serve("unix:" + path), ""); }
    std::unique_ptr<trs::Server> serverOf(std::size_t mostConnections) const
    {
        auto server = std::make_unique<trs::Server>(nullptr, mostConnections);
        trs::Endpoint endpoint;
        EXPECT_EQ(trs::Endpoint::parse("unix:" + path, endpoint), "");
        EXPECT_EQ(server->listen(endpoint), "");
        return server;
    }
    static void expectServed(Descriptor const& client)
    {
        client.write(setting);
        EXPECT_EQ(client.readMessage(), isDone);
    }

    Servant service{"S"};
    std::function<void()> whenSet;
};

// Until no thread but this one has anything to do: what follows the last thing that a test saw is over then.
void awaitQuiet()
{
    auto const isAsleep = [](std::filesystem::path const& task) {
        std::ifstream file(task / "stat");
        std::string const text{std::istreambuf_iterator<char>(file), {}};
        std::size_t const end = text.rfind(") ");
        return end == std::string::npos || text[end + 2] == 'S';
    };
    auto const isQuiet = [&] {
        std::string const own = std::to_string(::gettid());
        std::error_code ignored; // of a thread that has ended
        for (auto const& task : std::filesystem::directory_iterator("/proc/self/task", ignored)) {
            if (task.path().filename() != own && !isAsleep(task.path())) {
                return false;
            }
        }
        return true;
    };
    auto const end = std::chrono::steady_clock::now() + support::patience;
    while (!isQuiet()) {
        ASSERT_LT(std::chrono::steady_clock::now(), end);
        std::this_thread::yield();
    }
}

TEST_F(Serving, AnswersAndNotificationsGoOutWholeOneAfterTheOther)
{
    PlainTap tap;
    for (trs::ServerTap* const used : {static_cast<trs::ServerTap*>(nullptr), static_cast<trs::ServerTap*>(&tap)}) {
        trs::Broker::instance().setTap(used);
        serve();
        TipprmiSequence<TipprmiAny> parameters;
        parameters.push_back(TipprmiAny(std::string(60000, 'x')));
        whenSet = [&] { service.notifyObservers(0xa6d4e092, 1, parameters); };
        Descriptor const client = support::connectTo(path);
        client.write(subscribing);
        EXPECT_EQ(client.readMessage(), isSubscribed);
        constexpr int rounds = 60;
        for (int round = 0; round < rounds; ++round) {
            client.write(setting); // many notifications wait before anything is read
        }
        int answers = 0;
        int notifications = 0;
        for (int count = 0; count < 3 * rounds; ++count) { // the execution itself is told of as well
            Octets const received = client.readMessage();
            ASSERT_GE(received.size(), 12U) << "after " << count;
            answers += received == isDone ? 1 : 0;
            notifications += received[4] == 8 && received.size() > 60000 ? 1 : 0;
        }
        EXPECT_EQ(answers, rounds);
        EXPECT_EQ(notifications, rounds);
        whenSet = nullptr;
        trs::Broker::instance().stop();
    }
}

TEST_F(Serving, ASubscriberThatIsSentAwayIsToldOf)
{
    trs::LogCapture const log;
    serve();
    TipprmiSequence<TipprmiAny> parameters;
    parameters.push_back(TipprmiAny(std::string(60000, 'x')));
    Descriptor const client = support::connectTo(path);
    client.write(subscribing);
    EXPECT_EQ(client.readMessage(), isSubscribed);
    for (int count = 0; count < 100; ++count) {
        service.notifyObservers(0xa6d4e092, 1, parameters);
    }
    trs::Broker::instance().stop();
    EXPECT_TRUE(log.contains("a connection to unix:" + path + " is closed: it lets too many notifications wait, "));
    EXPECT_TRUE(log.contains(" notifications are lost"));
}

TEST_F(Serving, SubscriptionsAreBoundedByTheMemoryThatTheyTakeNow)
{
    trs::LogCapture const log;
    serve();
    Descriptor const patient = support::connectTo(path);
    for (int round = 0; round < 40; ++round) {
        Octets batch; // of subscriptions that are withdrawn, and others that are there already
        Octets answers;
        for (int count = 0; count < 500; ++count) {
            batch = batch + subscribing + (round % 2 == 0 ? withdrawing : Octets());
            answers = answers + isSubscribed;
        }
        patient.write(batch);
        ASSERT_EQ(patient.read(answers.size()), answers) << round;
    }
    Descriptor const greedy = support::connectTo(path);
    std::string id(500000, 'a');
    for (char const last : {'b', 'c'}) {
        id.back() = last;
        greedy.write(message(5, 1, id)); // renewals need no object
        EXPECT_EQ(greedy.readMessage(), isSubscribed);
    }
    id.back() = 'd';
    greedy.write(message(5, 1, id));
    EXPECT_TRUE(greedy.isClosedByPeer());
    EXPECT_TRUE(log.contains("its subscriptions take too much memory"));
    expectServed(support::connectTo(path));
}

TEST_F(Serving, TheLongestIdleGivesWayWhenTheServerIsFull)
{
    auto const server = serverOf(3);
    Descriptor const subscriber = support::connectTo(path);
    subscriber.write(subscribing);
    EXPECT_EQ(subscriber.readMessage(), isSubscribed);
    Descriptor const first = support::connectTo(path);
    Descriptor const second = support::connectTo(path);
    expectServed(first);
    awaitQuiet(); // a connection rests a moment after its answer has come
    Descriptor const third = support::connectTo(path);
    EXPECT_TRUE(second.isClosedByPeer()) << "it was idle longest but for the subscriber";
    expectServed(third);
    awaitQuiet();
    Descriptor const fourth = support::connectTo(path);
    EXPECT_TRUE(first.isClosedByPeer());

    std::vector<Descriptor> silent; // who do not even greet lock nobody out
    for (int count = 0; count < 10; ++count) {
        silent.push_back(support::connectTo(path, false));
    }
    expectServed(support::connectTo(path));
}

TEST_F(Serving, AServerThatIsBusyToTheLastConnectionSaysThatItIsFull)
{
    auto const server = serverOf(1);
    Gate gate;
    whenSet = [&] { gate.pass(); };
    Descriptor const busy = support::connectTo(path);
    busy.write(setting);
    gate.awaitReached();

    Descriptor const refused = support::connectTo(path, false);
    refused.write(support::greeting);
    EXPECT_EQ(refused.read(9), isFull);
    trs::LogCapture const log;
    EXPECT_FALSE(support::boundTo<QelLongClient>(peerAt("unix:" + path), "S").set(1));
    EXPECT_TRUE(log.contains("the server is full"));
    gate.open();
    EXPECT_EQ(busy.readMessage(), isDone) << "in the middle of its request nobody gives way";
}

TEST_F(Serving, WhatIsUnderWayWhenServingEndsIsAnswered)
{
    serve();
    Gate gate;
    whenSet = [&] { gate.pass(); };
    Descriptor const busy = support::connectTo(path);
    Descriptor const idle = support::connectTo(path);
    busy.write(setting + setting);
    gate.awaitReached();
    std::thread stopping([] { trs::Broker::instance().stop(); });
    EXPECT_TRUE(idle.isClosedByPeer()); // so stopping has begun
    gate.open();
    EXPECT_EQ(busy.readMessage(), isDone);
    EXPECT_TRUE(busy.isClosedByPeer()) << "no other request is begun";
    stopping.join();
}

#ifndef TRSMAN_SANITIZED // whose checks of types want descriptors of their own
TEST_F(Serving, WithoutDescriptorsItTellsWhyItCannot)
{
    rlimit former{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &former), 0);
    trs::Broker& broker = trs::Broker::instance();
    std::string const endpoint = "unix:" + path;
    int served = 0;
    for (rlim_t spare = 0; spare < 8; ++spare) {
        int const next = ::dup(STDERR_FILENO);
        ::close(next);
        rlimit const scarce{static_cast<rlim_t>(next) + spare, former.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &scarce);
        std::string const why = broker.serve(endpoint);
        std::string const peer = broker.addPeer("tcp:127.0.0.1:1");
        ::setrlimit(RLIMIT_NOFILE, &former);
        served += why.empty() ? 1 : 0;
        if (spare == 0) {
            EXPECT_THAT(why, testing::HasSubstr("Too many open files"));
            EXPECT_THAT(peer, testing::AnyOf("", testing::HasSubstr("Too many open files")));
        }
        broker.stop();
    }
    EXPECT_GT(served, 0);
    serve();
    expectServed(support::connectTo(path));
}
#endif

TEST_F(Serving, ASocketThatCannotBeReplacedIsToldAsWhatItIs)
{
    Descriptor const other(::socket(AF_UNIX, SOCK_DGRAM, 0));
    sockaddr_un const address = support::addressOf(path);
    ASSERT_EQ(::bind(other.get(), reinterpret_cast<sockaddr const*>(&address), sizeof address), 0);
    EXPECT_THAT(trs::Broker::instance().serve("unix:" + path), testing::HasSubstr("Protocol wrong type for socket"));
}

TEST_F(Serving, HostileClientsDoNotFillTheLog)
{
    trs::LogCapture const log;
    serve();
    for (int count = 0; count < 200; ++count) {
        Descriptor const client = support::connectTo(path);
        client.write(Octets(12, 0xff));
        EXPECT_TRUE(client.isClosedByPeer());
    }
    trs::Broker::instance().stop();
    std::vector<trs::LogEntry> const lines = log.entries();
    EXPECT_TRUE(log.contains("a malformed message came"));
    EXPECT_LT(lines.size(), 100U);
}

TEST_F(Serving, WhatIsCountedIsToldThoughNothingMoreHappens)
{
    trs::LogCapture const log;
    serve();
    for (int count = 0; count < 3; ++count) {
        Descriptor const client = support::connectTo(path);
        client.write(Octets(12, 0xff));
        EXPECT_TRUE(client.isClosedByPeer());
    }
    auto const end = std::chrono::steady_clock::now() + support::patience;
    while (!log.contains("(and 1 more like it in the last second)") && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_THAT(log.entries(), testing::SizeIs(2));
}

TEST(RepeatedLines, AreCountedAndToldOnceASecond)
{
    using std::chrono::milliseconds;
    trs::setLogLevel(0);
    trs::LogCapture const log;
    {
        trs::TimeAndChance::Time now{};
        trs::TimeAndChance timing;
        timing.now = [&now] { return now; };
        trs::RepeatedLines lines(timing);
        for (int count = 0; count < 5; ++count, now += milliseconds(200)) {
            lines.tell(4, "wrong", ": " + std::to_string(count));
        }
        lines.tell(3, "other"); // after a second
        now += milliseconds(999);
        lines.tell(4, "wrong", ": 5");
        now += milliseconds(2001);
        lines.tell(4, "wrong", ": 6");
        now += milliseconds(1000);
        lines.tell(3, "other");
        lines.tell(3, "other");
    }
    std::vector<std::string> texts;
    for (trs::LogEntry const& entry : log.entries()) {
        texts.push_back(std::to_string(entry.severity) + ' ' + entry.text);
    }
    EXPECT_THAT(texts, testing::ElementsAre("4 wrong: 0", "4 wrong: 4 (and 3 more like it in the last second)",
                                            "3 other", "4 wrong: 5", "4 wrong: 6", "3 other", "3 other"));
    trs::setLogLevel(6);
}

TEST(RepeatedLines, RemindOfWhatIsDue)
{
    using std::chrono::milliseconds;
    trs::setLogLevel(0);
    trs::LogCapture const log;
    {
        trs::TimeAndChance::Time now{};
        trs::TimeAndChance timing;
        timing.now = [&now] { return now; };
        std::vector<milliseconds> dues;
        trs::RepeatedLines lines(timing, [&](trs::RepeatedLines::Time due) {
            dues.push_back(std::chrono::duration_cast<milliseconds>(due.time_since_epoch()));
        });
        lines.tell(4, "a");
        EXPECT_THAT(dues, testing::IsEmpty()) << "nothing is counted";
        now += milliseconds(300);
        lines.tell(4, "a");
        lines.tell(4, "b");
        lines.tell(4, "b");
        EXPECT_THAT(dues, testing::ElementsAre(milliseconds(1000))) << "one reminder at a time";
        now += milliseconds(700);
        EXPECT_EQ(lines.tellDue(), trs::RepeatedLines::Time(milliseconds(1300)));
        now += milliseconds(300);
        EXPECT_EQ(lines.tellDue(), std::nullopt);
        lines.tell(4, "b");
        EXPECT_EQ(dues.back(), milliseconds(2300)) << "and another when that is over";
    }
    std::vector<std::string> texts;
    for (trs::LogEntry const& entry : log.entries()) {
        texts.push_back(entry.text);
    }
    EXPECT_THAT(texts, testing::ElementsAre("a", "b", "a", "b", "b"));
    trs::setLogLevel(6);
}

} // namespace
