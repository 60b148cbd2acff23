// What a unit holds is what it says, saves and keeps, whatever was called.
#include "tests/unit/Campaign.h"

#include "platform/TipprmiStream.h"
#include "rmi/TreflectHandlerState.h"
#include "tests/support/Sockets.h"
#include "unit/Scenario.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <map>
#include <memory>
#include <set>

namespace {

using trs::catalogue::Value;
using trs::sim::Object;

// What a keeper's file would have: the facts of each object as they were when it was last said to have changed.
class Shadow final : public trs::sim::Inventory::Keeper {
public:
    explicit Shadow(trs::sim::Inventory& inventory) : inventory_(inventory)
    {
        for (Object* const object : inventory.all()) {
            changed(*object);
        }
        inventory.setKeeper(this);
    }
    Shadow(Shadow const&) = delete;
    Shadow& operator=(Shadow const&) = delete;
    ~Shadow() override { inventory_.setKeeper(nullptr); }

    void changed(Object const& object) override { changed_.insert(object.id()); }
    void gone(std::string const& id) override
    {
        changed_.erase(id);
        rows_.erase(id);
    }
    void write()
    {
        for (std::string const& id : changed_) {
            rows_[id] = said(*inventory_.find(id));
        }
        changed_.clear();
    }
    // The objects whose facts are others than was written.
    std::vector<std::string> stale() const
    {
        std::vector<std::string> stale;
        for (Object* const object : inventory_.all()) {
            auto const row = rows_.find(object->id());
            std::string const now = said(*object);
            if (row == rows_.end() || row->second != now) {
                stale.push_back(object->id() + ": " + now + " was " + (row == rows_.end() ? "nothing" : row->second));
            }
        }
        return stale;
    }

private:
    // Counters follow from the time and what was counted last, which is written now and then.
    static std::string said(Object& object)
    {
        Value facts = object.facts().say();
        facts.erase("counted");
        return object.isDerived() ? "" : trs::catalogue::toJson(facts, -1);
    }

    trs::sim::Inventory& inventory_;
    std::map<std::string, std::string> rows_;
    std::set<std::string> changed_;
};

class RandomCalls : public support::BrokerTest, public testing::WithParamInterface<unsigned long> {};

TEST_P(RandomCalls, WhatChangesIsSaidToHaveChanged)
{
    TreflectHandlerState const running;
    trs::sim::Unit unit({"10.0.0.7", 3, false});
    Campaign campaign(unit, GetParam());
    Shadow shadow(unit.inventory());
    constexpr int calls = 1500;
    for (int i = 0; i < calls; ++i) {
        std::string const called = campaign.call();
        shadow.write();
        if (i % 10 == 0) {
            ASSERT_THAT(shadow.stale(), testing::IsEmpty()) << "by the call before, or one of the ten: " << called;
        }
    }
}

// By what it holds, by what it tells, and by what becomes of further calls.
TEST_P(RandomCalls, AScenarioMakesTheSameUnit)
{
    TreflectHandlerState const running;
    Value saved;
    Value told;
    Value later;
    auto const goOn = [](trs::sim::Unit& unit) {
        Campaign further(unit, GetParam() + 1000);
        for (int i = 0; i < 500; ++i) {
            further.call();
        }
        return trs::sim::scenario::save(unit);
    };
    {
        trs::sim::Unit unit({"10.0.0.7", 3, false, trs::sim::Load::Profile::noise});
        Campaign campaign(unit, GetParam());
        for (int i = 0; i < 3000; ++i) {
            campaign.call();
        }
        saved = trs::sim::scenario::save(unit);
        told = Campaign::told(unit);
        EXPECT_EQ(trs::sim::scenario::apply(unit, saved), "");
        EXPECT_EQ(Value::diff(saved, trs::sim::scenario::save(unit)), Value::array()) << "to itself";
        later = goOn(unit);
    }
    trs::sim::Unit unit({"", 9, false});
    EXPECT_EQ(trs::sim::scenario::apply(unit, saved), "");
    EXPECT_EQ(Value::diff(saved, trs::sim::scenario::save(unit)), Value::array());
    EXPECT_EQ(Value::diff(told, Campaign::told(unit)), Value::array());
    EXPECT_EQ(Value::diff(later, goOn(unit)), Value::array());
}

TEST_P(RandomCalls, AFileHoldsTheUnit)
{
    std::string const file = path + ".state";
    Value saved;
    bool isNew = false;
    {
        trs::sim::Unit unit({"10.0.0.7", 3, false});
        {
            TreflectHandlerState const running;
            ASSERT_EQ(unit.holdIn(file, isNew), "");
            EXPECT_TRUE(isNew);
        }
        Campaign campaign(unit, GetParam());
        for (int i = 0; i < 1500; ++i) {
            {
                TreflectHandlerState const running;
                campaign.call();
            }
            if (i % 16 == 0) {
                ASSERT_TRUE(unit.keep());
            }
        }
        ASSERT_TRUE(unit.keep());
        TreflectHandlerState const running;
        saved = trs::sim::scenario::save(unit);
    }
    {
        TreflectHandlerState const running;
        trs::sim::Unit unit({"", 9, false});
        ASSERT_EQ(unit.holdIn(file, isNew), "");
        EXPECT_FALSE(isNew);
        EXPECT_EQ(Value::diff(saved, trs::sim::scenario::save(unit)), Value::array());
    }
    for (char const* const part : {"", "-wal", "-shm"}) {
        std::filesystem::remove(file + part);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomCalls, testing::Range(1UL, 7UL));

} // namespace
