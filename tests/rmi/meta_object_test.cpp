// Meta objects, operations by name, and proxies that are bound to nothing.
#include "clients/services/AdminStateSkeleton.h"
#include "clients/services/ConditionSkeleton.h"
#include "rmi/ApplicationObjectSkeleton.h"
#include "rmi/Call.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>

// A class without operations of its own under one with two; their meta objects are made by the test.
class ParentClient : public TreflectObject {
public:
    using TreflectObject::TreflectObject;
    virtual long first() const { return 0; }
    virtual long second() const { return 0; }
    static inline std::unique_ptr<TreflectMetaObject> fresh;
    static inline std::atomic<int> asked = 0;
    static TreflectMetaObject* staticMeta()
    {
        ++asked;
        fresh->completeMetaInformation();
        return fresh.get();
    }
};
class ChildClient : public ParentClient {
public:
    using Parent = ParentClient;
    using ParentClient::ParentClient;
};
// What an application makes of a proxy.
class RackClient : public ConditionClient {
public:
    using ConditionClient::ConditionClient;
};
template <>
struct Operations<ParentClient>
    : OperationList<ParentClient, reflect::crc32("Parent"), Operation<3, &ParentClient::first>,
                    Operation<4, &ParentClient::second>> {};
template <>
struct Operations<ChildClient> : OperationList<ChildClient, reflect::crc32("Child")> {};

namespace {

TEST(ClassIdentifier, isTheCrc32OfTheInterfaceName)
{
    static_assert(reflect::crc32("") == 0);
    static_assert(reflect::crc32("123456789") == 0xcbf43926);
    static_assert(reflect::crc32("ApplicationObject") == 0xe80e97c6);
    static_assert(reflect::crc32("HwmModule") == 0x75fd82a0);
    static_assert(reflect::crc32("Condition") == 0x3f270ae0);
}

TEST(MetaObject, isCompletedOnceAndAfterItsParent)
{
    ParentClient::fresh = std::make_unique<ProxyMetaObject<ParentClient>>();
    ParentClient::asked = 0;
    ProxyMetaObject<ChildClient> child;
    EXPECT_FALSE(child.isComplete() || ParentClient::fresh->isComplete());
    EXPECT_EQ(child.completed(), &child);
    EXPECT_EQ(child.completed(), &child);
    EXPECT_EQ(ParentClient::asked, 1);
    EXPECT_TRUE(child.isComplete() && ParentClient::fresh->isComplete());
    EXPECT_EQ(child.name(), "ChildClient");
    EXPECT_EQ(child.parent(), ParentClient::fresh.get());
    EXPECT_EQ(child.operations().size(), 0U);
    EXPECT_EQ(child.attributes().size(), 0U);

    TreflectMetaOperation found{};
    ASSERT_TRUE(child.findOperation("second", found));
    EXPECT_EQ(found.name, std::string("second"));
    EXPECT_EQ(found.index, 4U);
    EXPECT_EQ(found.classId, reflect::crc32("Parent"));
    EXPECT_FALSE(child.findOperation("third", found));
}

TEST(MetaObject, isWholeForEveryThreadThatCompletesIt)
{
    for (int round = 0; round < 200; ++round) {
        ParentClient::fresh = std::make_unique<ProxyMetaObject<ParentClient>>();
        ParentClient::asked = 0;
        ProxyMetaObject<ChildClient> child;
        std::atomic<int> ready = 0;
        auto const complete = [&] {
            for (++ready; ready < 2;) {
            }
            TreflectMetaObject const* const parent = child.completed()->parent();
            ASSERT_EQ(parent, ParentClient::fresh.get());
            EXPECT_EQ(parent->operations().size(), 2U);
        };
        std::thread one(complete);
        std::thread two(complete);
        one.join();
        two.join();
        EXPECT_EQ(ParentClient::asked, 1);
    }
}

template <class Proxy>
void expectTable()
{
    TreflectMetaObject const* const meta = Proxy::staticMeta();
    ASSERT_EQ(meta, Proxy::staticMeta());
    EXPECT_EQ(meta, &Proxy::oMeta);
    EXPECT_EQ(meta, TreflectMetaObject::find(meta->name()));
    EXPECT_EQ(meta->id(), Operations<Proxy>::classId);
    std::size_t i = 0;
    Operations<Proxy>::forEach([&]<class Row>(Row) {
        ASSERT_LT(i, meta->operations().size());
        EXPECT_EQ(meta->operations()[i].name, Row::name);
        EXPECT_EQ(meta->operations()[i++].index, Row::index);
    });
    EXPECT_EQ(i, meta->operations().size());
}

TEST(MetaObject, holdsTheOperationList)
{
    expectTable<ApplicationObjectClient>();
    expectTable<AdminStateClient>();
    expectTable<ConditionClient>();
    EXPECT_EQ(TreflectMetaObject::find("NoSuchClient"), nullptr);
}

TEST(Proxy, knowsItsOperationsByNameWithInheritedOnes)
{
    struct {
        TreflectOperation operation;
        unsigned long classId;
        unsigned long index;
    } const known[] = {{AdminStateClient().operation("getPermissionState"), 0x50330cd4, 3},
                       {AdminStateClient().operation("get"), 0xa6d4e092, 0},
                       {AdminStateClient().operation("isReadonly"), 0x5df7b79b, 0},
                       {RackClient().operation("raise"), 0x3f270ae0, 12}};
    for (auto const& [operation, classId, index] : known) {
        EXPECT_TRUE(operation.exists());
        EXPECT_EQ(operation.meta().classId, classId);
        EXPECT_EQ(operation.meta().index, index);
    }
    EXPECT_FALSE(ConditionClient().operation("getStatus").exists());
    EXPECT_FALSE(ConditionClient().operation("").exists());
    EXPECT_FALSE(TreflectObject().operation("raise").exists());
}

TEST(Proxy, isBoundToNothingUntilItIsToldToWhat)
{
    ConditionClient const condition;
    EXPECT_FALSE(condition.isConnected());
    EXPECT_TRUE(condition.getOID().isNull());
    EXPECT_NE(condition.getStub_(), nullptr);
    EXPECT_EQ(condition.getServer(), nullptr);
    EXPECT_EQ(condition.raise(), RunClient::FAILED);
    EXPECT_EQ(condition.getPriority(), 0);
    EXPECT_FALSE(condition.isActive());
    condition.resetCurrentSeverity();
    EXPECT_FALSE(ConditionClient(static_cast<TipprmiObjectSkeleton const*>(nullptr)).isConnected());
    EXPECT_FALSE(LocationIdClient(TipprmiOID("nobody has this one")).isConnected());
    EXPECT_FALSE(ApplicationObjectClient().getFaultSvc().getAdminState().isConnected());
    EXPECT_EQ(ApplicationObjectClient().getServiceConsumers().getLength(), 0U);
}

} // namespace
