// One list of checks over every road that a call can take.
#include "broker/CallFailure.h"
#include "broker/Deadline.h"
#include "broker/framework/QelOperations.h"
#include "clients/services/ConditionSkeleton.h"
#include "clients/services/LocationIdSkeleton.h"
#include "clients/services/PerformanceServiceSkeleton.h"
#include "platform/TreflectObserver.h"
#include "rmi/ApplicationObjectSkeleton.h"
#include "rmi/Servant.h"
#include "tests/support/Sockets.h"

#include <atomic>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace {

using trs::CallFailure;
using trs::lastCallFailure;
using IdentData = PerformanceServiceClient::IdentData_t;

enum class Way { inProcess, unixSocket, tcp };

std::string nameOf(Way way)
{
    switch (way) {
    case Way::inProcess:
        return "InProcess";
    case Way::unixSocket:
        return "UnixSocket";
    case Way::tcp:
        break;
    }
    return "Tcp";
}
void PrintTo(Way way, std::ostream* out) { *out << nameOf(way); }

class Roads : public support::BrokerTest, public testing::WithParamInterface<Way> {
protected:
    Roads()
    {
        if (GetParam() != Way::inProcess) {
            orb = loopBack(GetParam() == Way::tcp ? "tcp:0" : "unix:" + path);
        }
    }
    template <class Proxy>
    Proxy proxyOf(TipprmiOID const& oid)
    {
        return support::boundTo<Proxy>(orb, oid);
    }

    TreflectORB const* orb = nullptr;
};

TEST_P(Roads, CarryArgumentsOfEveryKindBothWays)
{
    Servant service{"Performance"};
    service.on<&PerformanceServiceClient::getAdapterData>(
        [](TipprmiSequence<unsigned long> const& ids, TipprmiSequence<IdentData>& data) {
            data.setLength(ids.getLength());
            for (unsigned long i = 0; i < ids.getLength(); ++i) {
                data[i].value1 = ids[i];
                data[i].flag = i % 2 == 1;
                data[i].history[95] = ids[i] + 95;
            }
            return true;
        });
    std::string triggered;
    service.on<&PerformanceServiceClient::trigger>(
        [&](std::string const& name, TipprmiSequence<unsigned long> const& ids, unsigned long const& value) {
            triggered = name + ' ' + std::to_string(ids.getLength()) + ' ' + std::to_string(value);
        });
    auto const proxy = proxyOf<PerformanceServiceClient>("Performance");
    ASSERT_TRUE(proxy.isConnected());

    for (unsigned long const count : {0UL, 1UL, 2UL, 1000UL}) { // the last reply has 400 004 bytes
        TipprmiSequence<unsigned long> ids;
        ids.setLength(count);
        for (unsigned long i = 0; i < count; ++i) {
            ids[i] = 7 * i;
        }
        TipprmiSequence<IdentData> data;
        ASSERT_TRUE(proxy.getAdapterData(ids, data)) << lastCallFailure().text();
        ASSERT_EQ(data.getLength(), count);
        for (unsigned long i = 0; i < count; ++i) {
            EXPECT_EQ(data[i].value1, 7 * i);
            EXPECT_EQ(data[i].flag, i % 2 == 1);
            EXPECT_EQ(data[i].history[95], 7 * i + 95);
        }
    }
    proxy.trigger(std::string("a\0b", 3), {}, 0xffffffffUL);
    EXPECT_EQ(triggered, std::string("a\0b 0 4294967295", 16));
    EXPECT_EQ(lastCallFailure().kind, CallFailure::Kind::none);
}

TEST_P(Roads, LeadFromOneObjectToTheNext)
{
    Servant condition{"Condition"};
    condition.on<&ConditionClient::getPriority>([] { return 10L; });
    Servant application{"Application"};
    application.on<&ApplicationObjectClient::requestSupportRelease>(
        [](ApplicationObjectClient const& other, bool& granted) {
            granted = other.getOID().getIdString() == "Application";
            return SetClient::OK;
        });
    application.on<&ApplicationObjectClient::getServiceProviders>([&] {
        TipprmiSequence<ApplicationObjectClient> providers;
        providers.setLength(2);
        providers[1] = ApplicationObjectClient(TipprmiOID("Condition"));
        return providers;
    });

    auto const proxy = proxyOf<ApplicationObjectClient>("Application");
    bool granted = false;
    EXPECT_EQ(proxy.requestSupportRelease(proxy, granted), SetClient::OK);
    EXPECT_TRUE(granted);
    auto const providers = proxy.getServiceProviders();
    ASSERT_EQ(providers.getLength(), 2U);
    EXPECT_FALSE(providers[0].isConnected());
    EXPECT_EQ(ConditionClient(providers[1]).getPriority(), 10);
    EXPECT_EQ(ConditionClient(providers[1]).getStub_()->orb(), orb) << "the reference leads elsewhere";
}

TEST_P(Roads, TellWhatIsNotThere)
{
    Servant service{"Service"};
    service.on<&ConditionClient::getPriority>([] { return 3L; });
    auto const absent = proxyOf<ConditionClient>("Absent");
    EXPECT_FALSE(absent.isConnected());
    EXPECT_EQ(absent.raise(), RunClient::FAILED);
    EXPECT_EQ(lastCallFailure().carriedOut, CallFailure::CarriedOut::no);
    EXPECT_THAT(lastCallFailure().text(), testing::HasSubstr("Absent"));

    auto const present = proxyOf<ConditionClient>("Service");
    EXPECT_EQ(present.raise(), RunClient::FAILED);
    EXPECT_EQ(lastCallFailure().kind, CallFailure::Kind::noSuchOperation);
    EXPECT_EQ(present.getPriority(), 3) << "the next call works";
    EXPECT_EQ(ConditionClient().getPriority(), 0) << "an unbound proxy fails its calls";
}

TEST_P(Roads, RefuseARequestThatHasOtherArguments)
{
    Servant service{"Service"};
    bool isRun = false;
    service.on<&QelLongClient::set>([&](long const&) { return isRun = true; });
    auto const proxy = proxyOf<QelLongClient>("Service");
    constexpr unsigned long classId = Operations<QelLongClient>::classId;
    for (int const length : {0, 3, 5}) {
        TipprmiStream request(100);
        TipprmiStream reply(100);
        unsigned char const bytes[5] = {};
        proxy.prepareRequestStream_(true, classId, 1, request).marshall(bytes, length);
        EXPECT_FALSE(proxy.dispatch(true, classId, 1, request, reply)) << length;
        EXPECT_EQ(lastCallFailure().kind, CallFailure::Kind::refused);
    }
    EXPECT_FALSE(isRun);
    EXPECT_TRUE(proxy.set(1));
}

INSTANTIATE_TEST_SUITE_P(All, Roads, testing::Values(Way::inProcess, Way::unixSocket, Way::tcp),
                         [](auto const& road) { return nameOf(road.param); });

using Loopback = support::BrokerTest;

TEST_F(Loopback, ThreadsShareOneServerAndItsRunPermission)
{
    Servant counter{"Counter"};
    long value = 0; // guarded by the run permission alone
    counter.on<&QelLongClient::set>([&](long const& step) {
        value += step;
        return true;
    });
    auto const proxy = support::boundTo<QelLongClient>(loopBack("unix:" + path), "Counter");
    std::vector<std::thread> threads;
    std::atomic<int> failures = 0;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] {
            for (int call = 0; call < 200; ++call) {
                failures += proxy.set(1) ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(value, 1600);
}

TEST_F(Loopback, AHandlerThatCallsBackGivesThePermissionAway)
{
    TreflectORB const* const orb = loopBack("unix:" + path);
    Servant ping{"Ping"};
    Servant pong{"Pong"};
    // Down to 0 and back, through both objects by turns, each waiting in its handler.
    auto const descend = [orb](char const* other) {
        return [orb, other](long const& depth) {
            return depth == 0 || support::boundTo<QelLongClient>(orb, other).set(depth - 1);
        };
    };
    ping.on<&QelLongClient::set>(descend("Pong"));
    pong.on<&QelLongClient::set>(descend("Ping"));
    TreflectHandlerState const running;
    EXPECT_TRUE(support::boundTo<QelLongClient>(orb, "Ping").set(20)) << lastCallFailure().text();
}

TEST_F(Loopback, AnObjectMayComeAndGo)
{
    TreflectORB const* const orb = loopBack("unix:" + path);
    auto const proxy = support::boundTo<QelLongClient>(orb, "Late");
    QelLongClient const local{TipprmiOID("Late")};
    EXPECT_FALSE(proxy.isConnected());
    {
        Servant late{"Late"};
        late.on<&QelLongClient::get>([] { return 5L; });
        EXPECT_EQ(proxy.get(), 5);
        EXPECT_EQ(local.get(), 5);
        Servant twin{"Late"};
        EXPECT_EQ(proxy.get(), 5) << "the first one keeps the identifier";
    }
    EXPECT_FALSE(proxy.isConnected());
    EXPECT_EQ(local.get(), 0);
}

TEST_F(Loopback, WhatIsNotConnectedTellsWhy)
{
    Servant service{"Service"};
    TreflectORB const* const orb = loopBack("unix:" + path);
    std::string const mutePath = directory.file("mute");
    support::FakePeer const mute(mutePath, [](support::Descriptor const& connection) { connection.read(1000); });
    struct Observer : TreflectObserver {
        Observer() : TreflectObserver(TipprmiOID(""), nullptr, "observer") {}
        ~Observer() override { withdraw(); }
        bool detected() override { return true; }
    } observer;
    std::string const nobody = "unix:" + directory.file("nobody");
    struct {
        QelLongClient proxy;
        CallFailure::Kind kind;
        std::string text;
    } const cases[] = {
        {QelLongClient(), CallFailure::Kind::notConnected, "bound to no object"},
        {support::boundTo<QelLongClient>(orb, "Absent"), CallFailure::Kind::noSuchObject, "'Absent' at unix:" + path},
        {support::boundTo<QelLongClient>(peerAt(nobody), "Service"), CallFailure::Kind::notConnected, nobody},
        {support::boundTo<QelLongClient>(peerAt("unix:" + mutePath), "Service"), CallFailure::Kind::deadline,
         "no reply within 100 ms"},
    };
    for (auto const& [proxy, kind, text] : cases) {
        bool const isMute = kind == CallFailure::Kind::deadline;
        trs::CallDeadline const time(std::chrono::milliseconds(isMute ? 100 : 5000));
        EXPECT_FALSE(proxy.isConnected());
        EXPECT_EQ(lastCallFailure().kind, kind) << text;
        EXPECT_THAT(lastCallFailure().text(), testing::HasSubstr(text));
        EXPECT_EQ(lastCallFailure().carriedOut, CallFailure::CarriedOut::no);
        EXPECT_FALSE(proxy.operation("set").postObserve(&observer)) << "as for an observer";
        EXPECT_EQ(lastCallFailure().kind, kind) << text;
        EXPECT_THAT(lastCallFailure().text(), testing::HasSubstr(text));
        EXPECT_TRUE(isMute ? QelLongClient(&service).isConnected()
                           : support::boundTo<QelLongClient>(orb, "Service").isConnected());
        EXPECT_EQ(lastCallFailure().kind, CallFailure::Kind::none);
    }
}

TEST_F(Loopback, AReplyLongerThanAMessageFailsTheCallAndNoOther)
{
    Servant service{"Service"};
    service.on<&ApplicationObjectClient::getLocationId>([] { return LocationIdClient(); });
    service.on<&LocationIdClient::toString>([] { return std::string(TIPPRMI_MAX_MESSAGE, 'x'); });
    auto const proxy = support::boundTo<LocationIdClient>(loopBack("unix:" + path), "Service");
    EXPECT_EQ(proxy.toString(), "");
    EXPECT_EQ(lastCallFailure().carriedOut, CallFailure::CarriedOut::yes);
    EXPECT_FALSE(proxy.containsType(1));
    EXPECT_EQ(lastCallFailure().kind, CallFailure::Kind::noSuchOperation);
}

TEST_F(Loopback, EndpointsThatCannotBeServedAreNamed)
{
    trs::Broker& broker = trs::Broker::instance();
    for (std::string const wrong :
         {"", "unix:", "udp:1", "tcp:", "tcp:127.0.0.1:65536", "tcp:127.0.0.1:x", "unix:/nowhere/at/all/socket"}) {
        EXPECT_THAT(broker.serve(wrong), testing::HasSubstr(wrong.empty() ? "''" : wrong)) << wrong;
    }
    EXPECT_EQ(broker.serve("unix:" + path), "");
    EXPECT_NE(broker.serve("unix:" + path), "") << "one server each";
    struct stat file {};
    EXPECT_EQ(::stat(path.c_str(), &file), 0);
    EXPECT_EQ(file.st_mode & 0777U, 0600U) << "it is the owner's alone";
    broker.stop();
    EXPECT_NE(::access(path.c_str(), F_OK), 0) << "the socket file stayed behind";
    { // A socket file that nobody listens on any more is replaced.
        support::Descriptor const dead(::socket(AF_UNIX, SOCK_STREAM, 0));
        sockaddr_un const address = support::addressOf(path);
        ASSERT_EQ(::bind(dead.get(), reinterpret_cast<sockaddr const*>(&address), sizeof address), 0);
    }
    EXPECT_EQ(broker.serve("unix:" + path), "");
}

} // namespace
