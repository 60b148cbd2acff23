// What parsing a management message costs, against expat alone with handlers that do nothing.
#include "adapter/ZYN_XmlParser.h"

#include <benchmark/benchmark.h>
#include <expat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

void require(bool condition, char const* claim)
{
    if (!condition) {
        std::fprintf(stderr, "xml: %s\n", claim);
        std::exit(1);
    }
}

constexpr char lastPath[] = "/BTSMessage/AlarmStatusReply/_count";

// A message of about `size` bytes, as a site manager sees it: a header and alarms, indented, one field to a line.
std::string message(std::size_t size)
{
    std::string text = "<?xml version=\"1.0\"?>\n<BTSMessage>\n  <BTSMessageHdr>\n    <_seqNumber>12</_seqNumber>\n"
                       "    <_btsId>4711</_btsId>\n    <_to>DOV</_to>\n    <_from>KEP</_from>\n  </BTSMessageHdr>\n"
                       "  <AlarmStatusReply>\n";
    int count = 0;
    while (text.size() + 150 < size) {
        text +=
            "    <Alarm id=\"" + std::to_string(++count) + "\">\n      <_severity>major</_severity>\n" +
            "      <_unit>FTM-1</_unit>\n      <_text>Loss of signal on interface 3 &amp; 4</_text>\n    </Alarm>\n";
    }
    return text + "    <_count>" + std::to_string(count) + "</_count>\n  </AlarmStatusReply>\n</BTSMessage>\n";
}

// The limit is expat fed as the message parser reads, with the position that it keeps for error messages. Given all of
// a document at once as its last chunk expat keeps none, but that takes room for the document.
void bare(benchmark::State& state, std::string const& document, std::size_t chunk)
{
    for ([[maybe_unused]] auto iteration : state) {
        XML_Parser parser = XML_ParserCreate(nullptr);
        XML_SetElementHandler(
            parser, [](void*, char const*, char const**) {}, [](void*, char const*) {});
        XML_SetCharacterDataHandler(parser, [](void*, char const*, int) {});
        for (std::size_t begin = 0; begin < document.size(); begin += chunk) {
            std::size_t const length = std::min(chunk, document.size() - begin);
            bool const isLast = begin + length == document.size();
            require(XML_Parse(parser, document.data() + begin, static_cast<int>(length), isLast ? 1 : 0) != 0,
                    "expat does not parse the message");
        }
        XML_ParserFree(parser);
    }
}

void ours(benchmark::State& state, std::string const& document)
{
    std::istringstream in(document);
    for ([[maybe_unused]] auto iteration : state) {
        ZYN_XmlParser const parser(in);
        require(!parser.getValue(lastPath).empty(), "the parser does not know the message's last field");
    }
}

// Keeps the best round of every benchmark.
class BestRounds : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(Context const&) override { return true; }
    void ReportRuns(std::vector<Run> const& runs) override
    {
        for (Run const& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                double const seconds = run.cpu_accumulated_time / static_cast<double>(run.iterations);
                double& best = seconds_.try_emplace(run.run_name.function_name, seconds).first->second;
                best = std::min(best, seconds);
            }
        }
    }
    void print(std::string const& work, std::size_t size, std::string const& limit, double aim) const
    {
        auto const own = seconds_.find("ours/" + work);
        auto const other = seconds_.find(limit + "/" + work);
        if (own == seconds_.end() || other == seconds_.end()) {
            return;
        }
        double const ratio = other->second / own->second;
        auto const rate = [size](double seconds) { return static_cast<double>(size) / seconds / 1e6; };
        std::printf("%-6s %7zu bytes : %-22s %8.1f MB/s %8.1f MB/s %7.2f", work.c_str(), size, limit.c_str(),
                    rate(other->second), rate(own->second), ratio);
        std::printf(aim == 0 ? "\n" : "   >= %.2f %s\n", aim, ratio >= aim ? "met" : "MISSED");
    }

private:
    std::map<std::string, double> seconds_;
};

} // namespace

int main(int argc, char** argv)
{
    // Many short rounds, those of different benchmarks mixed, unless the command line says otherwise.
    char rounds[] = "--benchmark_repetitions=60";
    char mixed[] = "--benchmark_enable_random_interleaving=true";
    char shortly[] = "--benchmark_min_time=0.01";
    std::vector<char*> arguments{argv[0], rounds, mixed, shortly};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return 1;
    }

    std::map<std::string, std::string> const documents{{"1 KiB", message(1024)}, {"1 MiB", message(1024UL * 1024)}};
    for (auto const& [name, document] : documents) {
        auto const add = [&name = name](std::string const& who, std::function<void(benchmark::State&)> const& what) {
            std::string title = who;
            (title += "/") += name;
            benchmark::RegisterBenchmark(title.c_str(), what);
        };
        std::string const& text = document;
        add("ours", [&text](benchmark::State& state) { ours(state, text); });
        add("expat, all at once", [&text](benchmark::State& state) { bare(state, text, text.size()); });
        add("expat, 256 at a time", [&text](benchmark::State& state) { bare(state, text, 256); });
    }
    BestRounds best;
    benchmark::RunSpecifiedBenchmarks(&best);

    std::printf("%-45s %13s %13s %7s   %s\n", "message : limit", "limit", "ours", "ratio", "aim");
    for (auto const& [name, document] : documents) {
        best.print(name, document.size(), "expat, 256 at a time", 0.8);
        best.print(name, document.size(), "expat, all at once", 0);
    }
}
