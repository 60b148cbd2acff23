// The broker's decisions in worlds that each follow from one number, and deliberate faults in them. As a program:
//     simulation_test --seeds COUNT [--from SEED] [--fault N]   looks for a world in which something is wrong
//     simulation_test --seed SEED [--trace] [--fault N]         lives one again
#include "broker/machine/Mutation.h"
#include "tests/simulation/Run.h"

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <iostream>
#include <optional>
#include <string_view>

namespace trs {

Fault mutation = Fault::none;

} // namespace trs

namespace {

using simulation::Counts;
using simulation::Outcome;
using simulation::Run;
using trs::Fault;

std::string program;

std::string replay(std::uint64_t seed)
{
    std::string const fault =
        trs::mutation == Fault::none ? "" : " --fault " + std::to_string(static_cast<int>(trs::mutation));
    return program + " --seed " + std::to_string(seed) + " --trace" + fault;
}

struct Block {
    std::optional<std::uint64_t> failed;
    std::string report;
    Counts counts{};
};

// Every so many seeds one is lived twice, and must be the same.
Block live(std::uint64_t first, std::uint64_t count)
{
    Block block;
    for (std::uint64_t seed = first; seed < first + count && !block.failed; ++seed) {
        Outcome outcome = Run::of(seed);
        for (std::size_t i = 0; i < block.counts.size(); ++i) {
            block.counts[i] += outcome.counts[i];
        }
        if (outcome.failure.empty() && seed % 50 == 0 && Run::of(seed).hash != outcome.hash) {
            outcome.failure = "the same seed made another world";
        }
        if (!outcome.failure.empty()) {
            block.failed = seed;
            block.report = "seed " + std::to_string(seed) + ": " + outcome.failure + "\n" + Run::of(seed, 25).trace +
                           "to live it again: " + replay(seed);
        }
    }
    return block;
}

TEST(Simulation, HoldsInTheSameWorldsEachTimeWhichReachWhatIsRare)
{
    Block const block = live(1, 2000);
    EXPECT_FALSE(block.failed) << block.report;
    for (std::size_t i = 0; i < block.counts.size(); ++i) {
        EXPECT_GT(block.counts[i], 0U) << simulation::rareNames[i];
    }
}

TEST(Simulation, HoldsInOtherWorldsEachDay)
{
    using Days = std::chrono::duration<std::uint64_t, std::ratio<86400>>;
    auto const today = std::chrono::duration_cast<Days>(std::chrono::system_clock::now().time_since_epoch());
    Block const block = live(today.count() * 1'000'000, 1000);
    EXPECT_FALSE(block.failed) << block.report;
}

struct Mutant {
    Fault fault;
    char const* name;
    friend void PrintTo(Mutant const& mutant, std::ostream* out) { *out << mutant.name; }
};

class Mutants : public testing::TestWithParam<Mutant> {
protected:
    Mutants() { trs::mutation = GetParam().fault; }
    ~Mutants() override { trs::mutation = Fault::none; }
};

TEST_P(Mutants, AreFoundWithin10000Seeds)
{
    Block const block = live(1, 10'000);
    ASSERT_TRUE(block.failed);
    std::cout << "  found by " << block.report.substr(0, block.report.find('\n')) << '\n';
}

INSTANTIATE_TEST_SUITE_P(Faults, Mutants,
                         testing::Values(Mutant{Fault::numberReused, "NumberReused"},
                                         Mutant{Fault::writtenSaidUnsent, "WrittenSaidUnsent"},
                                         Mutant{Fault::windowKept, "WindowKept"},
                                         Mutant{Fault::renewalUnconfirmed, "RenewalUnconfirmed"},
                                         Mutant{Fault::eventInGap, "EventInGap"}),
                         [](auto const& mutant) { return mutant.param.name; });

int liveOne(std::uint64_t seed, bool isTraced)
{
    Outcome const outcome = Run::of(seed, isTraced ? simulation::World::kept : 0);
    std::cout << outcome.trace << "seed " << seed << ", hash " << outcome.hash << ": "
              << (outcome.failure.empty() ? "all was well" : outcome.failure) << '\n';
    return outcome.failure.empty() ? 0 : 1;
}

int liveMany(std::uint64_t first, std::uint64_t count)
{
    auto const begin = std::chrono::steady_clock::now();
    Block const block = live(first, count);
    std::chrono::duration<double> const time = std::chrono::steady_clock::now() - begin;
    if (block.failed) {
        std::cout << block.report << '\n';
        return 1;
    }
    for (std::size_t i = 0; i < block.counts.size(); ++i) {
        std::cout << block.counts[i] << ' ' << simulation::rareNames[i] << '\n';
    }
    std::cout << count << " seeds in " << time.count() << " s: all was well\n";
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    program = argv[0];
    testing::InitGoogleTest(&argc, argv);
    std::optional<std::uint64_t> seed;
    std::uint64_t count = 0;
    std::uint64_t first = 1;
    bool isTraced = false;
    for (int i = 1; i < argc; ++i) {
        std::string_view const option = argv[i];
        if (option == "--trace") {
            isTraced = true;
            continue;
        }
        char* end = nullptr;
        std::uint64_t const number = i + 1 < argc ? std::strtoull(argv[i + 1], &end, 10) : 0;
        bool const isNumber = end != nullptr && end != argv[i + 1] && *end == 0;
        if (isNumber && option == "--seed") {
            seed = number;
        } else if (isNumber && option == "--seeds") {
            count = number;
        } else if (isNumber && option == "--from") {
            first = number;
        } else if (isNumber && option == "--fault" && number <= static_cast<std::uint64_t>(Fault::eventInGap)) {
            trs::mutation = static_cast<Fault>(number);
        } else {
            std::cerr << "what is '" << option << "'? --seed N [--trace], --seeds N [--from N], and --fault 1 to 5\n";
            return 2;
        }
        ++i;
    }
    return seed ? liveOne(*seed, isTraced) : count != 0 ? liveMany(first, count) : RUN_ALL_TESTS();
}
