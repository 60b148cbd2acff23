// What base64, the gzip stream and the text operations of the adapter cost, beside the libraries that do the like, and
// whether twice the text takes twice the time.
#include "adapter/ZYN_StringUtils.h"
#include "adapter/ZYN_ZipStream.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <malloc.h>
#include <openssl/evp.h>
#include <unistd.h>
#include <zlib.h>

namespace {

using Utils = ZYN_StringUtils;

void require(bool condition, char const* claim)
{
    if (!condition) {
        std::fprintf(stderr, "adapter: %s\n", claim);
        std::exit(1);
    }
}

unsigned char const* bytesOf(std::string const& text) { return reinterpret_cast<unsigned char const*>(text.data()); }
unsigned char* bytesOf(std::string& text) { return reinterpret_cast<unsigned char*>(text.data()); }
std::size_t sizeOf(benchmark::State const& state) { return static_cast<std::size_t>(state.range(0)); }

std::string noise(std::size_t size)
{
    std::mt19937 random(1);
    std::string text(size, '\0');
    std::generate(text.begin(), text.end(), [&random] { return static_cast<char>(random()); });
    return text;
}

// Lines such as a log has, with runs of blanks, and numbers that compress like those of one.
std::string logText(std::size_t size)
{
    std::mt19937 random(1);
    std::string text;
    while (text.size() < size) {
        text += "<alarm  id=\"" + std::to_string(random() % 10'000) + "\"\tstate=\"raised\">link " +
                std::to_string(random() % 64) + " down,  code " + std::to_string(random()) + "</alarm>\r\n";
    }
    text.resize(size);
    return text;
}

// Base64. OpenSSL writes into memory that is there already; ours makes the text that it returns.

std::string encoded(std::string const& bytes)
{
    return Utils::base64Encode(bytesOf(bytes), static_cast<unsigned int>(bytes.size()));
}

void encodeOpenssl(benchmark::State& state)
{
    std::string const bytes = noise(sizeOf(state));
    std::string text(bytes.size() / 3 * 4 + 1, '\0');
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(EVP_EncodeBlock(bytesOf(text), bytesOf(bytes), static_cast<int>(bytes.size())));
        benchmark::ClobberMemory();
    }
    text.pop_back();
    require(encoded(bytes) == text, "the base64 texts differ");
}

void encodeOurs(benchmark::State& state)
{
    std::string const bytes = noise(sizeOf(state));
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(encoded(bytes));
    }
}

void decodeOpenssl(benchmark::State& state)
{
    std::string const text = encoded(noise(sizeOf(state)));
    std::string bytes(text.size(), '\0');
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(EVP_DecodeBlock(bytesOf(bytes), bytesOf(text), static_cast<int>(text.size())));
        benchmark::ClobberMemory();
    }
    bytes.resize(sizeOf(state));
    require(Utils::base64Decode(text) == bytes, "the decoded bytes differ");
}

void decodeOurs(benchmark::State& state)
{
    std::string const text = encoded(noise(sizeOf(state)));
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(Utils::base64Decode(text));
    }
}

// The gzip stream and zlib, in steps of 4 KiB or, with gets, of one byte.

constexpr std::size_t fileSize = 1 << 20;
constexpr unsigned int step = 4096;

struct TemporaryFile {
    ~TemporaryFile() { std::filesystem::remove(path); }
    std::string const path = std::filesystem::temp_directory_path() / ("trsman_bench." + std::to_string(getpid()));
};

// Lets the loop write a log to a file, which must hold that log then.
template <class Write>
void measureWriting(benchmark::State& state, Write const& write)
{
    TemporaryFile const file;
    std::string log = logText(fileSize);
    for ([[maybe_unused]] auto iteration : state) {
        write(file.path.c_str(), log);
    }
    gzFile written = gzopen(file.path.c_str(), "rb");
    std::string content(fileSize + 1, '\0');
    content.resize(static_cast<std::size_t>(gzread(written, content.data(), fileSize + 1)));
    gzclose(written);
    require(content == log, "the file does not hold the log");
}

void writeZlib(benchmark::State& state)
{
    measureWriting(state, [](char const* path, std::string const& log) {
        gzFile file = gzopen(path, "wb9");
        for (std::size_t at = 0; at < fileSize; at += step) {
            gzwrite(file, log.data() + at, step);
        }
        gzclose(file);
    });
}

void writeOurs(benchmark::State& state)
{
    measureWriting(state, [](char const* path, std::string& log) {
        ZYN_ZipStream file(path, ZYN_ZipStream::out);
        for (std::size_t at = 0; at < fileSize; at += step) {
            file.write(log.data() + at, step);
        }
        file.close();
    });
}

// Lets the loop read a log from a file; it returns the number of bytes.
template <class Read>
void measureReading(benchmark::State& state, Read const& read)
{
    TemporaryFile const file;
    std::string log = logText(fileSize);
    ZYN_ZipStream(file.path.c_str(), ZYN_ZipStream::out).write(log.data(), fileSize);
    for ([[maybe_unused]] auto iteration : state) {
        require(read(file.path.c_str()) == fileSize, "the log is not read to its end");
    }
}

void readZlib(benchmark::State& state)
{
    measureReading(state, [](char const* path) {
        gzFile file = gzopen(path, "rb");
        char buffer[step];
        std::size_t total = 0;
        for (int count = 0; (count = gzread(file, buffer, step)) > 0; total += static_cast<std::size_t>(count)) {
        }
        gzclose(file);
        return total;
    });
}

void readOurs(benchmark::State& state)
{
    measureReading(state, [](char const* path) {
        ZYN_ZipStream file(path, ZYN_ZipStream::in);
        char buffer[step];
        std::size_t total = 0;
        while (file.read(buffer, step).gcount() > 0) {
            total += static_cast<std::size_t>(file.gcount());
        }
        return total;
    });
}

void getZlib(benchmark::State& state)
{
    measureReading(state, [](char const* path) {
        gzFile file = gzopen(path, "rb");
        std::size_t total = 0;
        for (char c = 0; c = static_cast<char>(gzgetc(file)), gzeof(file) == 0; ++total) {
            benchmark::DoNotOptimize(c);
        }
        gzclose(file);
        return total;
    });
}

void getOurs(benchmark::State& state)
{
    measureReading(state, [](char const* path) {
        ZYN_ZipStream file(path, ZYN_ZipStream::in);
        std::size_t total = 0;
        for (char c = 0; file.get(c).good(); ++total) {
            benchmark::DoNotOptimize(c);
        }
        return total;
    });
}

// The text operations, each with a copy of the text to work on.

template <class Operation>
void measureText(benchmark::State& state, Operation const& operation)
{
    std::string const text = logText(sizeOf(state));
    for ([[maybe_unused]] auto iteration : state) {
        std::string copy = text;
        operation(copy);
        benchmark::DoNotOptimize(copy.data());
    }
}

void removeAll(benchmark::State& state)
{
    measureText(state, [](std::string& text) { Utils::removeAll(text, "alarm"); });
}
void replaceAll(benchmark::State& state)
{
    measureText(state, [](std::string& text) { Utils::replaceAll(text, "\"", "&quot;"); });
}
void split(benchmark::State& state)
{
    measureText(state, [](std::string& text) {
        std::vector<std::string> parts;
        benchmark::DoNotOptimize(Utils::split(text, parts, "\r\n"));
    });
}
void zip(benchmark::State& state)
{
    measureText(state, [](std::string& text) { Utils::zip(text); });
}

// Keeps the best round of every benchmark, in seconds of processor time.
class BestRounds : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(Context const&) override { return true; }
    void ReportRuns(std::vector<Run> const& runs) override
    {
        for (Run const& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                double const seconds = run.cpu_accumulated_time / static_cast<double>(run.iterations);
                double& best = rounds_.try_emplace(nameOf(run), seconds).first->second;
                best = std::min(best, seconds);
            }
        }
    }

    void printHeading() const
    {
        std::printf("%-36s %12s %12s %10s  %-7s\n", "work", "limit", "ours", "limit/ours", "aim");
    }
    void print(std::string const& work, std::string const& limit, std::string const& ours, double aim = 0) const
    {
        if (rounds_.contains(limit) && rounds_.contains(ours)) {
            double const ratio = rounds_.at(limit) / rounds_.at(ours);
            std::printf("%-36s %9.2f us %9.2f us %10.3f", work.c_str(), rounds_.at(limit) * 1e6, rounds_.at(ours) * 1e6,
                        ratio);
            aim == 0 ? std::printf("  -\n") : std::printf("  >= %.2f %s\n", aim, ratio >= aim ? "met" : "MISSED");
        }
    }
    // Sixteen times the text: how many times the time.
    void printGrowth(std::string const& work) const
    {
        std::string const small = work + "/65536";
        std::string const large = work + "/1048576";
        if (rounds_.contains(small) && rounds_.contains(large)) {
            std::printf("%-36s %9.2f us %9.2f us %10.1f\n", work.c_str(), rounds_.at(small) * 1e6,
                        rounds_.at(large) * 1e6, rounds_.at(large) / rounds_.at(small));
        }
    }

private:
    static std::string nameOf(Run const& run)
    {
        return run.run_name.function_name + (run.run_name.args.empty() ? "" : '/' + run.run_name.args);
    }

    std::map<std::string, double> rounds_;
};

} // namespace

BENCHMARK(encodeOpenssl)->Arg(3 << 10)->Arg(3 << 18);
BENCHMARK(encodeOurs)->Arg(3 << 10)->Arg(3 << 18);
BENCHMARK(decodeOpenssl)->Arg(3 << 10)->Arg(3 << 18);
BENCHMARK(decodeOurs)->Arg(3 << 10)->Arg(3 << 18);
BENCHMARK(writeZlib);
BENCHMARK(writeOurs);
BENCHMARK(readZlib);
BENCHMARK(readOurs);
BENCHMARK(getZlib);
BENCHMARK(getOurs);
BENCHMARK(removeAll)->Arg(1 << 16)->Arg(1 << 20);
BENCHMARK(replaceAll)->Arg(1 << 16)->Arg(1 << 20);
BENCHMARK(split)->Arg(1 << 16)->Arg(1 << 20);
BENCHMARK(zip)->Arg(1 << 16)->Arg(1 << 20);

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
    // Freed memory stays with the process: fresh pages of the kernel are not what is measured.
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    BestRounds best;
    benchmark::RunSpecifiedBenchmarks(&best);

    best.printHeading();
    best.print("base64Encode, 3 KiB (OpenSSL)", "encodeOpenssl/3072", "encodeOurs/3072", 1);
    best.print("base64Encode, 768 KiB", "encodeOpenssl/786432", "encodeOurs/786432", 1);
    best.print("base64Decode, to 3 KiB", "decodeOpenssl/3072", "decodeOurs/3072", 1);
    best.print("base64Decode, to 768 KiB", "decodeOpenssl/786432", "decodeOurs/786432", 1);
    best.print("ZYN_ZipStream::write, 1 MiB (zlib)", "writeZlib", "writeOurs", 0.98);
    best.print("ZYN_ZipStream::read, 1 MiB", "readZlib", "readOurs", 0.98);
    best.print("ZYN_ZipStream::get, 1 MiB", "getZlib", "getOurs", 0.98);
    std::printf("\n%-36s %12s %12s %10s\n", "work, linear: 16 times the time", "64 KiB", "1 MiB", "times");
    for (char const* const work : {"removeAll", "replaceAll", "split", "zip"}) {
        best.printGrowth(work);
    }
}
