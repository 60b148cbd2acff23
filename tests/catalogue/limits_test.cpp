// What operations' arguments may be, as the headers say it.
#include "catalogue/Limits.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using trs::catalogue::Value;

trs::catalogue::Operation const& operationOf(char const* type, char const* operation)
{
    return *trs::catalogue::findClass(type)->find(operation);
}

std::vector<std::string> lines(char const* type, char const* operation, std::vector<Value> const& in)
{
    std::vector<std::string> texts;
    for (trs::catalogue::Violation const& each : trs::catalogue::violations(operationOf(type, operation), in)) {
        texts.push_back(each.text());
    }
    return texts;
}

TEST(Limits, AreAttachedToParametersAndFields) { EXPECT_THAT(trs::catalogue::wrongLimits(), IsEmpty()); }

TEST(Limits, ArePointedOut)
{
    EXPECT_THAT(lines("IpNode", "setTransportMode", {3}), IsEmpty());
    EXPECT_THAT(lines("IpNode", "setTransportMode", {77}),
                ElementsAre("mode: 77 is not one of TRANSPORT_MODE_UNDEFINED (0), TRANSPORT_MODE_ATMOETH (1), "
                            "TRANSPORT_MODE_DUALIUB (2), TRANSPORT_MODE_IUBIP (3)"));
}

} // namespace
