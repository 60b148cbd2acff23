// What calls and values cost within one process.
#include "bench/support/BenchCondition.h"
#include "bench/support/BenchNodeClient.h"
#include "bench/support/Figures.h"
#include "bench/support/SwapBytes.h"
#include "rmi/Servant.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <new>
#include <string>
#include <vector>

namespace {

using Addresses = BenchNodeClient::Addresses;
using Table = TipprmiSequence<Addresses>;

std::size_t allocations = 0;

void* allocate(std::size_t size)
{
    ++allocations;
    void* const place = std::malloc(size);
    if (place == nullptr) {
        std::abort();
    }
    return place;
}

} // namespace

// All allocations of the process, the library's among them, are counted.
void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, std::nothrow_t const&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept { return allocate(size); }
void operator delete(void* place) noexcept { std::free(place); }
void operator delete[](void* place) noexcept { std::free(place); }
void operator delete(void* place, std::size_t) noexcept { std::free(place); }
void operator delete[](void* place, std::size_t) noexcept { std::free(place); }

namespace {

void require(bool condition, char const* claim)
{
    if (!condition) {
        std::fprintf(stderr, "in_memory: %s\n", claim);
        std::exit(1);
    }
}

// One measured loop. The first pass warms what is reused; allocations are counted from there on.
template <class Body>
void measure(benchmark::State& state, Body const& body)
{
    body();
    std::size_t const before = allocations;
    for ([[maybe_unused]] auto iteration : state) {
        body();
    }
    state.counters["allocations"] = static_cast<double>(allocations - before) / static_cast<double>(state.iterations());
}

void virtualCall(benchmark::State& state)
{
    ConditionSkeleton* object = &bench::condition();
    benchmark::DoNotOptimize(object);
    measure(state, [&] { benchmark::DoNotOptimize(object->getPriority()); });
}

void proxyCall(benchmark::State& state)
{
    ConditionClient const* proxy = &bench::conditionProxy();
    benchmark::DoNotOptimize(proxy);
    require(proxy->getServer() == &bench::condition(), "the proxy does not lead to the object of this process");
    require(proxy->getPriority() == 10, "the proxy's call does not reach the object");
    measure(state, [&] { benchmark::DoNotOptimize(proxy->getPriority()); });
}

void streamedCall(benchmark::State& state)
{
    Servant servant;
    servant.on<&BenchNodeClient::getNumber>([](long& number) {
        number = 1500;
        return GetClient::OK;
    });
    BenchNodeClient const proxy(&servant);
    long number = 0;
    require(proxy.getNumber(number) == GetClient::OK && number == 1500, "a call through streams does not arrive");
    measure(state, [&] { benchmark::DoNotOptimize(proxy.getNumber(number)); });
}

void swapTable(benchmark::State& state)
{
    std::vector<std::uint16_t> const from = bench::makeFlatTable();
    std::vector<std::uint16_t> to(from.size());
    measure(state, [&] {
        swapBytes(to.data(), from.data(), from.size());
        benchmark::ClobberMemory();
    });
    require(to[0x0102] == 0x0201 && to.back() == __builtin_bswap16(from.back()), "bytes are not swapped");
}

void writeTable(benchmark::State& state)
{
    Table const table = bench::makeTable();
    TipprmiStream stream(100);
    measure(state, [&] {
        stream.clear();
        stream << table;
        benchmark::ClobberMemory();
    });
    std::vector<std::uint16_t> const flat = bench::makeFlatTable();
    std::vector<std::uint16_t> expected(flat.size());
    swapBytes(expected.data(), flat.data(), flat.size());
    unsigned char const count[] = {0, 0, bench::tableLength >> 8, bench::tableLength & 0xff};
    require(stream.size() == 4 + bench::tableBytes && std::memcmp(stream.data(), count, 4) == 0 &&
                std::memcmp(stream.data() + 4, expected.data(), bench::tableBytes) == 0,
            "the written table is not the table");
}

void readTable(benchmark::State& state)
{
    Table const table = bench::makeTable();
    TipprmiStream stream(100);
    stream << table;
    Table received;
    measure(state, [&] {
        stream.rewind();
        stream >> received;
        benchmark::ClobberMemory();
    });
    require(!stream.hasUnmarshallingFailed() && stream.available() == 0 && received == table,
            "the read table is not the table");
}

void copyProxy(benchmark::State& state)
{
    ConditionClient const* proxy = &bench::conditionProxy();
    benchmark::DoNotOptimize(proxy);
    measure(state, [&] {
        ConditionClient const copy(*proxy);
        benchmark::DoNotOptimize(copy.getStub_());
    });
}

void readReference(benchmark::State& state)
{
    TipprmiStream stream(100);
    stream << bench::conditionProxy();
    ConditionClient proxy;
    measure(state, [&] {
        stream.rewind();
        Wire<ConditionClient>::read(stream, proxy);
        benchmark::DoNotOptimize(proxy.getStub_());
    });
    require(proxy.isSameObject(bench::conditionProxy()), "the read reference is another object's");
}

void anyOfLong(benchmark::State& state)
{
    long value = 1500;
    benchmark::DoNotOptimize(value);
    measure(state, [&] {
        TipprmiAny const any(value);
        long extracted = 0;
        benchmark::DoNotOptimize(any.extract(extracted));
        benchmark::DoNotOptimize(extracted);
    });
}

void findOperation(benchmark::State& state)
{
    std::string const className = "ConditionClient";
    std::string const name = "unsuppress";
    TreflectMetaOperation found{};
    measure(state, [&] {
        TreflectMetaObject* const meta = TreflectMetaObject::find(className);
        benchmark::DoNotOptimize(meta != nullptr && meta->findOperation(name, found));
    });
    require(found.index == 20, "the meta object does not know its operation");
}

// Keeps the best round of every benchmark.
class BestRounds : public benchmark::BenchmarkReporter {
public:
    struct Best {
        double seconds = 1;
        double allocations = 0; // of the worst round
    };

    bool ReportContext(Context const&) override { return true; }
    void ReportRuns(std::vector<Run> const& runs) override
    {
        for (Run const& run : runs) {
            if (run.run_type != Run::RT_Iteration) {
                continue;
            }
            Best& best = rounds_[run.run_name.function_name];
            best.seconds = std::min(best.seconds, run.cpu_accumulated_time / static_cast<double>(run.iterations));
            best.allocations = std::max(best.allocations, double(run.counters.at("allocations")));
        }
    }

    // The line of one work, if it was run.
    void print(char const* work, char const* limit, char const* ours, bench::Aim aim = {}) const
    {
        auto const own = rounds_.find(ours);
        auto const other = rounds_.find(limit);
        if (own == rounds_.end() || (*limit != '\0' && other == rounds_.end())) {
            return;
        }
        bench::print({work, other == rounds_.end() ? 0 : other->second.seconds, own->second.seconds, aim});
    }
    void printAllocations() const
    {
        std::printf("\nallocations per pass:");
        char const* separator = " ";
        for (auto const& [name, best] : rounds_) {
            std::printf("%s%s %g", separator, name.c_str(), best.allocations);
            separator = ", ";
        }
        std::printf("\n");
        if (auto const call = rounds_.find("proxyCall"); call != rounds_.end()) {
            std::printf("a call in the process allocates nothing: %s\n",
                        call->second.allocations == 0 ? "met" : "MISSED");
        }
    }

private:
    std::map<std::string, Best> rounds_;
};

} // namespace

BENCHMARK(virtualCall);
BENCHMARK(proxyCall);
BENCHMARK(swapTable);
BENCHMARK(writeTable);
BENCHMARK(readTable);
BENCHMARK(streamedCall);
BENCHMARK(copyProxy);
BENCHMARK(readReference);
BENCHMARK(anyOfLong);
BENCHMARK(findOperation);

int main(int argc, char** argv)
{
    // Many short rounds, those of different benchmarks mixed, unless the command line says otherwise.
    char rounds[] = "--benchmark_repetitions=15";
    char mixed[] = "--benchmark_enable_random_interleaving=true";
    char shortly[] = "--benchmark_min_time=0.05";
    std::vector<char*> arguments{argv[0], rounds, mixed, shortly};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return 1;
    }

    BestRounds best;
    benchmark::RunSpecifiedBenchmarks(&best);

    using bench::Aim;
    bench::printHeading();
    best.print("call in the process : virtual call", "virtualCall", "proxyCall", {Aim::surplus, 3e-9});
    best.print("writing 1000 records : swapping 32 000 bytes", "swapTable", "writeTable", {Aim::ratio, 2});
    best.print("reading 1000 records : swapping 32 000 bytes", "swapTable", "readTable", {Aim::ratio, 2});
    best.print("call in the process through streams", "", "streamedCall");
    best.print("copying a proxy", "", "copyProxy");
    best.print("reading an object reference", "", "readReference");
    best.print("a long into a TipprmiAny and out of it", "", "anyOfLong");
    best.print("finding a class and an operation by name", "", "findOperation");
    best.printAllocations();
}
