// The guard around calls from threads of the caller's own.
#include "broker/objects/RunPermission.h"
#include "platform/TreflectORB.h"
#include "rmi/TreflectHandlerState.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>

namespace {

TEST(HandlerState, givesAForeignThreadThePermissionUntilTheOutermostGuardEnds)
{
    EXPECT_FALSE(TreflectORB::isHandlerThread());
    {
        TreflectHandlerState const outer;
        EXPECT_TRUE(TreflectORB::hasRunPermission());
        {
            TreflectHandlerState const inner;
            EXPECT_TRUE(TreflectORB::hasRunPermission());
        }
        EXPECT_TRUE(TreflectORB::hasRunPermission());
        EXPECT_FALSE(TreflectORB::isHandlerThread());
    }
    EXPECT_FALSE(TreflectORB::hasRunPermission());
}

TEST(HandlerState, leavesAHandlerThreadAsItFoundIt)
{
    std::thread([] {
        trs::becomeHandlerThread();
        for (bool const hadPermission : {false, true}) {
            if (hadPermission) {
                TreflectORB::getRunPermission();
            }
            {
                TreflectHandlerState const outer;
                std::optional<TreflectHandlerState> inner;
                inner.emplace();
                EXPECT_TRUE(TreflectORB::hasRunPermission());
                inner.reset();
                EXPECT_TRUE(TreflectORB::hasRunPermission());
            }
            EXPECT_EQ(TreflectORB::hasRunPermission(), hadPermission);
        }
        TreflectORB::releaseRunPermission();
    }).join();
}

TEST(HandlerState, letsOneThreadInAtATime)
{
    int count = 0; // guarded by nothing else
    auto const work = [&count](bool isHandler) {
        if (isHandler) {
            trs::becomeHandlerThread();
        }
        for (int i = 0; i < 2000; ++i) {
            TreflectHandlerState const running;
            count += 1;
        }
    };
    std::thread handler(work, true);
    std::thread foreign(work, false);
    handler.join();
    foreign.join();
    EXPECT_EQ(count, 4000);
}

} // namespace
