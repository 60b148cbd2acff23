// How durations are spread.
#include "tools/support/Histogram.h"

#include <gtest/gtest.h>

namespace {

using trs::tools::Histogram;

TEST(Histogram, TellsTheNearestRankInMicroseconds)
{
    Histogram hundred;
    for (int i = 1; i <= 100; ++i) {
        hundred.add(1000 * i);
    }
    EXPECT_EQ(hundred.quantile(0), 1.0);
    EXPECT_NEAR(hundred.quantile(0.07), 7.0, 7.0 / 64);
    EXPECT_NEAR(hundred.quantile(0.5), 50.0, 50.0 / 64);
    EXPECT_NEAR(hundred.quantile(0.99), 99.0, 99.0 / 64);
    EXPECT_EQ(hundred.quantile(1), 100.0);

    Histogram one;
    one.add(1234);
    EXPECT_EQ(one.quantile(0.5), 1.2);
    EXPECT_EQ(Histogram().quantile(0.5), 0);
}

// No duration is counted as one that is more than a 64th away, however long.
TEST(Histogram, IsExactToASixtyFourth)
{
    for (std::int64_t middle = 1000; middle < std::int64_t{1} << 60; middle += middle / 3) {
        Histogram three;
        for (std::int64_t const each : {middle / 2, middle, middle * 2}) {
            three.add(each);
        }
        double const expected = static_cast<double>(middle) / 1000;
        EXPECT_NEAR(three.quantile(0.5), expected, expected / 64 + 0.05) << middle;
    }
}

TEST(Histogram, OfPartsIsThatOfTheWhole)
{
    Histogram whole;
    Histogram parts[3];
    for (int i = 0; i < 1000; ++i) {
        whole.add(i * i);
        parts[i % 2].add(i * i);
    }
    Histogram sum;
    for (Histogram const& part : parts) {
        sum.add(part);
    }
    EXPECT_EQ(sum.count(), whole.count());
    for (double const share : {0.0, 0.1, 0.5, 0.9, 1.0}) {
        EXPECT_EQ(sum.quantile(share), whole.quantile(share));
    }
}

} // namespace
