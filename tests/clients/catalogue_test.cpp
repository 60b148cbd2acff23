// Every proxy class of clients/ and rmi/ against the catalogue.
#include "clients/services/AdminStatePolicySkeleton.h"
#include "clients/services/AdminStateSkeleton.h"
#include "clients/services/ConditionSkeleton.h"
#include "clients/services/FaultServiceSkeleton.h"
#include "clients/services/LocationIdSkeleton.h"
#include "clients/services/PerformanceServiceSkeleton.h"
#include "rmi/ApplicationObjectSenaPolicySkeleton.h"
#include "rmi/ApplicationObjectSkeleton.h"
#include "tests/support/Catalogue.h"

#include <algorithm>
#include <set>

namespace {

// The only place here that grows with the code.
using Classes =
    std::tuple<AdminStateClient, AdminStatePolicyClient, ApplicationObjectClient, ApplicationObjectSenaPolicyClient,
               ConditionClient, FaultServiceClient, LocationIdClient, PerformanceServiceClient>;

template <class>
struct TestTypes;
template <class... Proxy>
struct TestTypes<std::tuple<Proxy...>> {
    using Types = testing::Types<Proxy...>;
    static inline std::set<std::string, std::less<>> const names{std::string(reflect::className<Proxy>)...};

    template <class OneOfThem>
    static std::string GetName(int)
    {
        return std::string(reflect::className<OneOfThem>);
    }
};

template <class Proxy>
class Catalogue : public testing::Test {};
TYPED_TEST_SUITE(Catalogue, TestTypes<Classes>::Types, TestTypes<Classes>);

TYPED_TEST(Catalogue, describesTheClass) { catalogue::expectListed<TypeParam>(); }
TYPED_TEST(Catalogue, everyBodyCallsItsOwnOperation) { catalogue::expectEveryBodyCallsItsOperation<TypeParam>(); }

TEST(CatalogueAsAWhole, isInTheCode)
{
    std::size_t rows = 0;
    std::string missing;
    for (auto const& [name, lines] : catalogue::lines()) {
        rows += lines.size();
        // The adapter's proxy is checked with the adapter.
        if (name != "NmiRmiAdapterClient" && !TestTypes<Classes>::names.contains(name)) {
            missing += ' ' + name;
        }
    }
    EXPECT_EQ(catalogue::lines().size(), 56U);
    EXPECT_EQ(rows, 577U); // 573 operations and four classes without
    if (!missing.empty()) {
        GTEST_SKIP() << std::count(missing.begin(), missing.end(), ' ') << " classes are not in the code:" << missing;
    }
}

} // namespace
