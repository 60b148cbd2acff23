// Threads that take tasks: how many there are, who takes whose place, and when there is none.
#include "broker/objects/Workers.h"

#include "broker/objects/RunPermission.h"
#include "tests/support/Sockets.h"

#include <condition_variable>
#include <functional>
#include <gmock/gmock.h>

namespace {

using trs::WorkerCount;
using trs::Workers;

TEST(WorkerCount, LetsATaskWaitOnlyForThoseThatComeToAnEnd)
{
    WorkerCount count({.executing = 2, .threads = 3, .staying = 1});
    EXPECT_FALSE(count.hasProspect()) << "nobody is there yet";
    count.queue();
    EXPECT_TRUE(count.wantsAnother());
    count.start();
    EXPECT_FALSE(count.wantsAnother()) << "it is on its way";
    count.take();
    for (int more = 0; more < 2; ++more) {
        count.queue();
    }
    EXPECT_TRUE(count.wantsAnother());
    count.start();
    EXPECT_TRUE(count.isShort()) << "there is one for two";
    EXPECT_FALSE(count.wantsAnother()) << "with those, as many execute as may";
    count.take();
    EXPECT_FALSE(count.mayTake());

    count.beginWait();
    EXPECT_TRUE(count.wantsAnother()) << "in the place of the one that waits";
    count.start();
    count.take();
    count.beginWait();
    count.queue();
    EXPECT_FALSE(count.wantsAnother()) << "there are as many as may be";
    EXPECT_TRUE(count.hasProspect());
    count.beginWait();
    EXPECT_FALSE(count.hasProspect());
    for (int back = 0; back < 3; ++back) {
        count.endWait();
    }
    EXPECT_EQ(count.executing(), 3U) << "who comes back goes on";
    count.finish();
    EXPECT_FALSE(count.mayTake());
    count.finish();
    EXPECT_TRUE(count.mayTake());
}

TEST(WorkerCount, CountsThoseThatStayAsFree)
{
    WorkerCount count({.executing = 1, .threads = 3, .staying = 1});
    count.queue();
    count.start();
    count.take();
    ASSERT_TRUE(count.mayStay());
    count.beginStay();
    EXPECT_FALSE(count.mayStay());
    count.queue();
    EXPECT_TRUE(count.wantsAnother());
    count.start();
    count.take();
    count.endStay();
    count.queue();
    EXPECT_FALSE(count.mayStay()) << "others wait";
}

// What tasks did, and a gate that some of them wait at.
class WorkersTest : public testing::Test {
protected:
    class Task final : public Workers::Task {
    public:
        Task(WorkersTest& test, std::string name, std::function<void()> act)
            : test_(test), name_(std::move(name)), act_(std::move(act))
        {
        }
        void run() override
        {
            if (act_) {
                act_();
            }
            test_.note(name_);
        }
        void refuse() override { test_.note("no " + name_); }

    private:
        WorkersTest& test_;
        std::string const name_;
        std::function<void()> const act_;
    };

    bool submit(Workers& workers, std::string const& name, std::function<void()> act = {})
    {
        return workers.submit(std::make_shared<Task>(*this, name, std::move(act)));
    }
    // As an object's code does that calls another process.
    void waitForOthers()
    {
        trs::RunPermissionScope const running;
        trs::RunPermissionPause const waiting;
        await("open");
    }
    void note(std::string const& what)
    {
        std::lock_guard const lock(mutex);
        done.push_back(what);
        changed.notify_all();
    }
    void await(std::string const& what)
    {
        std::unique_lock lock(mutex);
        EXPECT_TRUE(changed.wait_for(lock, support::patience, [&] {
            return std::find(done.begin(), done.end(), what) != done.end();
        })) << what;
    }
    static void awaitWaiting(Workers const& workers, std::size_t count)
    {
        auto const end = std::chrono::steady_clock::now() + support::patience;
        while (workers.numbers().waiting != count && std::chrono::steady_clock::now() < end) {
            std::this_thread::yield();
        }
        EXPECT_EQ(workers.numbers().waiting, count);
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::string> done;
};

TEST_F(WorkersTest, TakeTasksInTheirOrder)
{
    Workers workers({.executing = 1, .threads = 4});
    ASSERT_TRUE(submit(workers, "first", [this] { await("go"); }));
    for (char const* const name : {"second", "third", "fourth"}) {
        ASSERT_TRUE(submit(workers, name));
    }
    note("go");
    await("fourth");
    EXPECT_THAT(done, testing::ElementsAre("go", "first", "second", "third", "fourth"));
    EXPECT_EQ(workers.numbers().threads, 1U);
}

TEST_F(WorkersTest, ThatWaitForOthersAreReplaced)
{
    Workers workers({.executing = 1, .threads = 3});
    for (char const* const name : {"a", "b"}) {
        ASSERT_TRUE(submit(workers, name, [this] { waitForOthers(); }));
    }
    ASSERT_TRUE(submit(workers, "c", [this] { note("open"); }));
    await("a");
    await("b");
}

TEST_F(WorkersTest, ThatAllWaitLeaveNobodyInTheQueue)
{
    Workers workers({.executing = 1, .threads = 2});
    ASSERT_TRUE(submit(workers, "a", [this] { waitForOthers(); }));
    awaitWaiting(workers, 1);
    ASSERT_TRUE(submit(workers, "b", [this] {
        await("go");
        waitForOthers();
    }));
    ASSERT_TRUE(submit(workers, "c")) << "b may come to its end";
    note("go");
    await("no c");
    awaitWaiting(workers, 2);
    EXPECT_FALSE(submit(workers, "d"));
    note("open");
    await("a");
    await("b");
    EXPECT_TRUE(submit(workers, "e"));
    await("e");
}

TEST_F(WorkersTest, ThatFindNothingToDoEnd)
{
    Workers workers({}, std::chrono::milliseconds(1));
    for (int round = 0; round < 20; ++round) {
        std::string const name = std::to_string(round);
        ASSERT_TRUE(submit(workers, name));
        await(name);
    }
    auto const end = std::chrono::steady_clock::now() + support::patience;
    while (workers.numbers().threads != 0 && std::chrono::steady_clock::now() < end) {
        std::this_thread::yield();
    }
    EXPECT_EQ(workers.numbers().threads, 0U);
}

TEST_F(WorkersTest, EndWhatTheyHaveAndRefuseTheRest)
{
    Workers workers({.executing = 1, .threads = 1});
    ASSERT_TRUE(submit(workers, "a", [this] {
        note("begun");
        await("no b");
    }));
    ASSERT_TRUE(submit(workers, "b"));
    await("begun");
    workers.stop();
    EXPECT_THAT(done, testing::ElementsAre("begun", "no b", "a"));
    EXPECT_FALSE(submit(workers, "c"));
}

TEST_F(WorkersTest, AreToldThatAnObjectForgotToTakeThePermissionBack)
{
    Workers workers({.executing = 1, .threads = 1});
    ASSERT_TRUE(submit(workers, "a", [] {
        trs::RunPermissionScope const running;
        TreflectORB::releaseRunPermission();
    }));
    await("a");
    ASSERT_TRUE(submit(workers, "b", [] { EXPECT_FALSE(TreflectORB::hasRunPermission()); }));
    await("b");
    EXPECT_EQ(workers.numbers().waiting, 0U);
}

} // namespace
