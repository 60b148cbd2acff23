// trsctl interfaces and counters: what is looked at most, in tables.
#include "catalogue/Collections.h"
#include "catalogue/Constants.h"
#include "catalogue/File.h"
#include "catalogue/ManyCalls.h"
#include "catalogue/ValueText.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Interrupt.h"
#include "tools/trsctl/Svg.h"
#include "tools/trsctl/Target.h"
#include "tools/trsctl/UnitDocument.h"
#include "tools/trsctl/Verbs.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <memory>
#include <optional>
#include <thread>
#include <unistd.h>

namespace trs::ctl {

namespace {

using catalogue::Value;
using Clock = std::chrono::steady_clock;

constexpr int namelessSubjects = 3; // that are tried where a class names none
constexpr unsigned mostSamples = 100'000;
constexpr std::string_view subjectPart = "_IDENT_";
constexpr std::string_view performanceService = "/PerformanceService";

Format tableFormat(Format format) { return format == Format::text ? Format::table : format; }

// A leaf of what an object tells; "-" when it does not.
Value leafOf(Value const& told, std::string const& operation, std::string const& name)
{
    bool const isTold = told.contains(operation) && told[operation].contains(name);
    return isTold ? told[operation][name] : Value("-");
}

std::string addressesOf(Value const& told)
{
    std::string text;
    Value const list = leafOf(told, "getIpAddrSequence", "addresses");
    for (Value const& each : list.is_array() ? list : Value::array()) {
        text += (text.empty() ? "" : " ") + each.value("ipAddress", "");
    }
    return text.empty() ? "-" : text;
}

ExitCode interfaces(Program::Options const& options)
{
    Value document;
    if (ExitCode const code = readUnit(options, "", document); code != ExitCode::good) {
        return code;
    }
    Value const& objects = document["objects"];
    std::vector<Row> rows;
    for (auto const& [text, told] : objects.items()) {
        std::size_t const colon = text.find(':');
        if (!catalogue::isOf(catalogue::findClass(text.substr(0, colon)), "IfNetClient")) {
            continue;
        }
        std::string const id = text.substr(colon + 1);
        auto const partOf = [&](std::string const& name) {
            return objects.contains(name) ? objects[name] : Value::object();
        };
        rows.push_back({id, text.substr(0, colon), addressesOf(told), leafOf(told, "getMtu", "mtu"),
                        leafOf(told, "getVlanId", "vlanId"), leafOf(told, "getFlags", "flags"),
                        leafOf(partOf("FaultService:" + id + "/FaultService"), "getOperState", "result"),
                        leafOf(partOf("AdminState:" + id + "/AdminState"), "get", "result")});
    }
    writeRows({"interface", "class", "addresses", "mtu", "vlan", "flags", "operational", "administrative"},
              std::move(rows), tableFormat(options.format));
    return ExitCode::good;
}

struct CounterWords {
    std::string object; // part of identifiers; empty: all
    double interval = 0;
    unsigned samples = 2;
    std::string svg;
};

struct Counter {
    std::string object;
    std::string service;
    std::string name;
    unsigned long subject = 0;
    std::vector<unsigned long> values = {};

    // By the second, between values that follow each other; a counter that is smaller than before has begun anew.
    std::vector<double> rates(double interval) const
    {
        std::vector<double> rates;
        for (std::size_t i = 1; i < values.size(); ++i) {
            unsigned long const before = values[i] < values[i - 1] ? 0 : values[i - 1];
            rates.push_back(static_cast<double>(values[i] - before) / interval);
        }
        return rates;
    }
};

std::string lowerCase(std::string_view text)
{
    std::string small(text);
    std::ranges::transform(small, small.begin(), [](unsigned char each) { return std::tolower(each); });
    return small;
}

// What a performance service may count, by the constants of its owner's class and their names.
std::vector<Counter> subjectsOf(std::string const& owner, std::string const& service, catalogue::Class const* type)
{
    std::vector<Counter> counters;
    for (; type != nullptr && counters.empty(); type = type->base()) {
        for (catalogue::Constant const* const each : catalogue::constantsOf(*type)) {
            std::size_t const at = each->name.find(subjectPart);
            if (at != std::string_view::npos && each->value.is_number()) {
                counters.push_back({owner, service, lowerCase(each->name.substr(at + subjectPart.size())),
                                    each->value.get<unsigned long>()});
            }
        }
    }
    for (unsigned long id = 1; counters.size() < namelessSubjects && id <= namelessSubjects &&
                               (counters.empty() || counters.back().name == std::to_string(id - 1));
         ++id) {
        counters.push_back({owner, service, std::to_string(id), id});
    }
    return counters;
}

std::vector<Counter> countersIn(Value const& document, std::string const& wanted)
{
    std::vector<Counter> counters;
    for (auto const& [text, told] : document["objects"].items()) {
        std::size_t const colon = text.find(':');
        std::string const id = text.substr(colon + 1);
        if (text.substr(0, colon) != "PerformanceService" || !id.ends_with(performanceService)) {
            continue;
        }
        std::string const owner = id.substr(0, id.size() - performanceService.size());
        for (auto const& [other, unused] : document["objects"].items()) {
            std::size_t const end = other.find(':');
            bool const isOwner = other.substr(end + 1) == owner &&
                                 (wanted.empty() || owner.find(wanted) != std::string::npos || other == wanted);
            if (isOwner) {
                std::ranges::move(subjectsOf(owner, id, catalogue::findClass(other.substr(0, end))),
                                  std::back_inserter(counters));
            }
        }
    }
    return counters;
}

// Adds a value to each; those that the unit does not count are left out. None, or why the unit tells no more.
std::optional<CallFailure> sample(std::vector<Counter>& counters)
{
    catalogue::Operation const& reader = *catalogue::findClass("PerformanceService")->find("getCurrentData");
    std::optional<CallFailure> failure;
    std::vector<Counter> counted;
    auto begun = counters.begin();
    auto taken = counters.begin();
    auto const next = [&]() -> std::optional<catalogue::PlannedCall> {
        if (begun == counters.end()) {
            return std::nullopt;
        }
        Counter const& each = *begun++;
        return catalogue::PlannedCall{each.service, &reader, {Value(each.subject)}};
    };
    auto const take = [&](catalogue::Outcome const& outcome) {
        Counter& each = *taken++;
        if (outcome.kind == catalogue::Outcome::Kind::done && outcome.results["result"] == true) {
            each.values.push_back(outcome.results["value"].get<unsigned long>());
            counted.push_back(std::move(each));
        } else if (outcome.kind == catalogue::Outcome::Kind::failed &&
                   outcome.failure.kind != CallFailure::Kind::noSuchObject) {
            failure = outcome.failure;
        }
        return !failure;
    };
    TreflectHandlerState const running;
    catalogue::makeCalls(next, take);
    counters = std::move(counted);
    return failure;
}

// A bar a value, each an eighth of a line higher.
std::string sparkline(std::vector<double> const& values)
{
    constexpr char const* bars[] = {"\xe2\x96\x81", "\xe2\x96\x82", "\xe2\x96\x83", "\xe2\x96\x84",
                                    "\xe2\x96\x85", "\xe2\x96\x86", "\xe2\x96\x87", "\xe2\x96\x88"};
    constexpr std::size_t mostBars = 40;
    double const most = values.empty() ? 0 : *std::ranges::max_element(values);
    std::string text;
    for (std::size_t i = values.size() > mostBars ? values.size() - mostBars : 0; i < values.size(); ++i) {
        text += bars[most > 0 ? static_cast<std::size_t>(std::lround(values[i] / most * 7)) : 0];
    }
    return text;
}

void showCounters(std::vector<Counter> const& counters, CounterWords const& words, Format format)
{
    bool const hasRates = words.interval > 0;
    bool const hasBars = hasRates && words.samples > 2 && format != Format::json && ::isatty(STDOUT_FILENO) == 1;
    std::vector<std::string> head{"object", "counter", "value"};
    if (hasRates) {
        head.emplace_back("perSecond");
    }
    if (hasBars) {
        head.emplace_back("rates");
    }
    std::vector<Row> rows;
    for (Counter const& each : counters) {
        std::vector<double> const rates = hasRates ? each.rates(words.interval) : std::vector<double>();
        Row& row = rows.emplace_back(Row{each.object, each.name, each.values.empty() ? 0 : each.values.back()});
        if (hasRates) {
            double const rate = rates.empty() ? 0 : rates.back();
            row.emplace_back(rate == std::floor(rate) ? Value(std::llround(rate)) : Value(std::round(rate * 10) / 10));
        }
        if (hasBars) {
            row.emplace_back(sparkline(rates));
        }
    }
    writeRows(std::move(head), std::move(rows), tableFormat(format));
}

ExitCode drawCounters(std::vector<Counter> const& counters, CounterWords const& words, std::string const& unit)
{
    std::vector<Series> series;
    series.reserve(counters.size());
    for (Counter const& each : counters) {
        series.push_back({each.object + ' ' + each.name + " per second", each.rates(words.interval)});
    }
    std::error_code const error =
        catalogue::writeWholeFile(words.svg, plotSvg("Counters of " + unit, series, words.interval));
    return error ? complain(catalogue::whyNotWritten(words.svg, error),
                            catalogue::isFull(error) ? ExitCode::outputLost : ExitCode::usage)
                 : ExitCode::good;
}

// As often as is said, or until somebody interrupts it.
std::optional<CallFailure> look(std::vector<Counter>& counters, CounterWords const& words)
{
    unsigned const looks = words.interval > 0 ? words.samples : 1;
    auto next = Clock::now();
    std::optional<CallFailure> failure;
    for (unsigned i = 0; i < looks && !failure && !Interrupt::came(); ++i) {
        while (Clock::now() < next && !Interrupt::came()) {
            std::this_thread::sleep_for(std::min<Clock::duration>(next - Clock::now(), std::chrono::milliseconds(100)));
        }
        next += std::chrono::microseconds(static_cast<long>(words.interval * 1e6));
        failure = Interrupt::came() ? failure : sample(counters);
    }
    return failure;
}

ExitCode counters(Program::Options const& options, CounterWords words)
{
    Value document;
    if (ExitCode const code = readUnit(options, "", document); code != ExitCode::good) {
        return code;
    }
    words.interval = words.interval == 0 && !words.svg.empty() ? 1 : words.interval;
    std::vector<Counter> found = countersIn(document, words.object);
    if (found.empty()) {
        return complain("no object with counters has '" + words.object + "' in its identifier", ExitCode::noSuchObject);
    }
    Interrupt const interrupt;
    if (std::optional<CallFailure> const failure = look(found, words)) {
        return complain("the unit is lost: " + failure->text(), *failure);
    }
    showCounters(found, words, options.format);
    return words.svg.empty() ? ExitCode::good : drawCounters(found, words, options.unit);
}

} // namespace

void addTablesVerbs(Program& program)
{
    program.add({.name = "interfaces", .help = "Show the IP interfaces of a unit", .example = "interfaces --narrow"},
                [](Program::Options const& options) { return interfaces(options); });

    auto const words = std::make_shared<CounterWords>();
    program.add({.name = "counters",
                 .help = "Show what a unit's objects count, by the second with --interval",
                 .example = "counters IfNet/Transport --interval 1",
                 .options =
                     {
                         {.name = "IDENTIFIER",
                          .target = &words->object,
                          .help = "Objects with this in their identifier; else all"},
                         {.name = "--interval",
                          .target = &words->interval,
                          .help = "Seconds between two looks, for rates",
                          .type = "S",
                          .range = {{0.001, 3600}}},
                         {.name = "--samples",
                          .target = &words->samples,
                          .help = "How many looks",
                          .type = "N",
                          .range = {{2, mostSamples}},
                          .showsDefault = true},
                         {.name = "--svg",
                          .target = &words->svg,
                          .help = "Draw the rates to a file that browsers show",
                          .type = "FILE"},
                     }},
                [words](Program::Options const& options) { return counters(options, *words); });
}

} // namespace trs::ctl
