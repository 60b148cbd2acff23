// How durations are spread.
#include "tools/support/Quantiles.h"

#include <gmock/gmock.h>

#include <numeric>

namespace {

using testing::ElementsAre;
using trs::tools::quantiles;

TEST(Quantiles, AreWhatSoManyDoNotExceed)
{
    std::vector<std::int64_t> hundred(100);
    std::iota(hundred.rbegin(), hundred.rend(), 1);
    for (std::int64_t& each : hundred) {
        each *= 1000;
    }
    EXPECT_THAT(quantiles(hundred, {0, 0.07, 0.5, 0.9, 0.99, 1}),
                ElementsAre("1.0", "7.0", "50.0", "90.0", "99.0", "100.0"));
    EXPECT_THAT(quantiles({3000, 1000, 2000, 91500}, {0, 0.5, 0.75, 0.99, 1}),
                ElementsAre("1.0", "2.0", "3.0", "91.5", "91.5"))
        << "one that is late is among the last hundredth";
    EXPECT_THAT(quantiles({1234}, {0, 0.5, 1}), ElementsAre("1.2", "1.2", "1.2"));
    EXPECT_THAT(quantiles({}, {0, 1}), ElementsAre("", ""));
}

} // namespace
