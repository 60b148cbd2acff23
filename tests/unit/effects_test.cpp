// What reaches observers when a cable is lost, and what a day's counters look like under load.
#include "broker/objects/RunPermission.h"
#include "clients/ip/EthLinkClient.h"
#include "clients/services/FaultServiceClient.h"
#include "clients/services/HwmLedClient.h"
#include "clients/services/PerformanceServiceClient.h"
#include "platform/TreflectObserver.h"
#include "rmi/TreflectHandlerState.h"
#include "tests/support/Sockets.h"
#include "unit/Unit.h"

#include <algorithm>
#include <condition_variable>
#include <gmock/gmock.h>
#include <list>
#include <mutex>

namespace {

// Keeps the first number that each execution tells.
template <class T>
class Ear final : public TreflectObserver {
public:
    explicit Ear(FaultServiceClient const& source) : TreflectObserver(source.getOID(), &source, "ear") {}
    ~Ear() override { withdraw(); }
    bool detected() override { return false; }
    bool notify(TipprmiSequence<TipprmiAny> const& parameters) override
    {
        T value{};
        std::lock_guard const lock(mutex_);
        heard_.push_back(parameters.getLength() == 1 && parameters[0].extract(value) ? value : T{});
        changed_.notify_all();
        return true;
    }
    std::vector<T> hear(std::size_t count)
    {
        trs::RunPermissionPause const waiting;
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, support::patience, [&] { return heard_.size() >= count; });
        return heard_;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<T> heard_;
};

class Effects : public support::BrokerTest {
protected:
    TreflectHandlerState const running;
};

TEST_F(Effects, ObserversAreToldOfWhatALostCableTakesDown)
{
    trs::sim::Unit const unit;
    EthLinkClient const link(TipprmiOID("HwmUnit-1/EthLink"));
    std::list<Ear<long>> ears;
    for (char const* const id : {"HwmUnit-1/EthLink", "IfNet/Transport", "IfNet/Transport/Vlan/100"}) {
        FaultServiceClient const service(TipprmiOID(id + std::string("/FaultService")));
        for (char const* const operation : {"setOperState", "getOperState"}) {
            ears.emplace_back(service);
            ASSERT_TRUE(service.operation(operation).postObserve(&ears.back()));
        }
    }
    EXPECT_EQ(link.getLOC().raise(), RunClient::OK);
    EXPECT_EQ(link.getLOC().cancel(), RunClient::OK);
    std::size_t place = 0;
    for (Ear<long>& ear : ears) {
        EXPECT_THAT(ear.hear(2), testing::ElementsAre(FaultServiceClient::DISABLED, FaultServiceClient::ENABLED))
            << place;
        ++place;
    }
}

TEST_F(Effects, ACallThatSetsTheStateIsToldOnce)
{
    trs::sim::Unit const unit;
    FaultServiceClient const service(TipprmiOID("HwmUnit-1/EthLink/FaultService"));
    Ear<long> ear(service);
    ASSERT_TRUE(service.operation("setOperState").postObserve(&ear));
    service.setOperState(FaultServiceClient::DISABLED);
    service.setOperState(FaultServiceClient::ENABLED);
    EXPECT_THAT(ear.hear(2), testing::ElementsAre(FaultServiceClient::DISABLED, FaultServiceClient::ENABLED));
}

class Day : public Effects, public testing::WithParamInterface<trs::sim::Load::Profile> {
protected:
    using Profile = trs::sim::Load::Profile;
    struct Counts {
        std::vector<unsigned long> octets;
        std::vector<unsigned long> packets;
    };
    // The intervals of a day of one object.
    static Counts countsOf(unsigned long seed, Profile profile, char const* id)
    {
        trs::sim::Unit unit({"", seed, false, profile});
        unit.advance(24UL * 60 * 60);
        PerformanceServiceClient const service(TipprmiOID(id + std::string("/PerformanceService")));
        return {history(service, EthLinkClient::PM_IDENT_IN_OCT_15),
                history(service, EthLinkClient::PM_IDENT_IN_PKT_15)};
    }
    static std::vector<unsigned long> history(PerformanceServiceClient const& service, unsigned long id)
    {
        unsigned long count = 0;
        TipprmiArray<unsigned long, 96> values{};
        EXPECT_TRUE(service.getHistoricData(id, count, values));
        return {values.data(), values.data() + count};
    }
};

TEST_P(Day, HasOctetsAndPacketsThatAgree)
{
    for (unsigned long const seed : {0UL, 7UL}) {
        Counts const day = countsOf(seed, GetParam(), "HwmUnit-1/EthLink");
        ASSERT_EQ(day.octets.size(), 96U);
        ASSERT_EQ(day.packets.size(), 96U);
        for (std::size_t i = 0; i < day.octets.size(); ++i) {
            ASSERT_GT(day.packets[i], 0U) << i;
            // Of what an Ethernet frame may have.
            EXPECT_THAT(day.octets[i] / day.packets[i], testing::AllOf(testing::Ge(64U), testing::Le(1518U))) << i;
        }
        auto const [least, most] = std::ranges::minmax(day.packets);
        double const span = static_cast<double>(most) / static_cast<double>(least);
        double const smallest = GetParam() == Profile::busyHour ? 10 : GetParam() == Profile::steady ? 1 : 1.01;
        double const greatest = GetParam() == Profile::busyHour ? 30 : GetParam() == Profile::steady ? 1 : 3;
        EXPECT_THAT(span, testing::AllOf(testing::Ge(smallest), testing::Le(greatest)));
        EXPECT_EQ(countsOf(seed, GetParam(), "HwmUnit-1/EthLink").octets, day.octets) << "chance has a seed";
    }
    if (GetParam() != Profile::steady) {
        EXPECT_NE(countsOf(7, GetParam(), "HwmUnit-1/EthLink").octets,
                  countsOf(8, GetParam(), "HwmUnit-1/EthLink").octets);
        EXPECT_NE(countsOf(7, GetParam(), "HwmUnit-1/EthLink").octets,
                  countsOf(7, GetParam(), "HwmUnit-1/LmpLink").octets);
    }
}

INSTANTIATE_TEST_SUITE_P(Profiles, Day,
                         testing::Values(trs::sim::Load::Profile::steady, trs::sim::Load::Profile::quiet,
                                         trs::sim::Load::Profile::busyHour, trs::sim::Load::Profile::noise));

// However the time passes, the same comes of it.
TEST_F(Effects, CountersDoNotDependOnWhenTheyAreAsked)
{
    auto const countsOf = [](unsigned long step) {
        trs::sim::Unit unit({"", 5, false, trs::sim::Load::Profile::noise});
        PerformanceServiceClient const service(TipprmiOID("HwmUnit-1/EthLink/PerformanceService"));
        unsigned long value = 0;
        for (unsigned long passed = 0; passed < 8820; passed += step) {
            unit.advance(step);
            EXPECT_TRUE(service.getCurrentData(EthLinkClient::PM_IDENT_IN_OCT_15, value));
        }
        unsigned long count = 0;
        TipprmiArray<unsigned long, 96> values{};
        EXPECT_TRUE(service.getHistoricData(EthLinkClient::PM_IDENT_IN_OCT_15, count, values));
        return std::vector<unsigned long>{value, count, values[0], values[7]};
    };
    EXPECT_EQ(countsOf(7), countsOf(8820));
    EXPECT_EQ(countsOf(90), countsOf(8820));
}

} // namespace
