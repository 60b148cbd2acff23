// trsctl alarms: the conditions of a unit that are active.
#include "broker/PrintableText.h"
#include "catalogue/Collections.h"
#include "catalogue/Json.h"
#include "catalogue/ManyCalls.h"
#include "catalogue/Text.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/support/Colour.h"
#include "tools/support/StandardStreams.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Herd.h"
#include "tools/trsctl/Interrupt.h"
#include "tools/trsctl/UnitDocument.h"
#include "tools/trsctl/Verbs.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace trs::ctl {

namespace {

using catalogue::Value;

constexpr std::string_view conditionClass = "ConditionClient";
constexpr std::string_view conditionPart = "/Condition/";
constexpr std::string_view serviceClass = "FaultServiceClient";
constexpr std::string_view faultService = "/FaultService";

constexpr long notTold = -1; // a severity

struct AlarmWords {
    bool watches = false;
    bool isAll = false;
    double seconds = 0; // 0: without end
};

struct Alarm {
    std::string object;    // that the condition is about
    std::string condition; // its name there
    long severity = 0;
    bool isActive = false;
    bool isSuppressed = false;

    bool operator==(Alarm const&) const = default;
};

using Alarms = std::map<std::string, Alarm>; // by identifier of the condition

Value resultOf(Value const& told, char const* operation)
{
    return told.contains(operation) && told[operation].contains("result") ? told[operation]["result"] : Value();
}

// A condition by what it tells. Its name ends its identifier.
Alarm alarmOf(std::string const& id, Value const& told)
{
    std::size_t const part = std::min(id.find(conditionPart), id.size());
    Value const severity = resultOf(told, "getCurrentSeverity");
    return {id.substr(0, part), part < id.size() ? id.substr(part + conditionPart.size()) : id,
            severity.is_number() ? severity.get<long>() : 0, resultOf(told, "isActive") == true,
            resultOf(told, "isSuppressed") == true};
}

Alarms alarmsIn(Value const& document)
{
    Alarms alarms;
    for (auto const& [text, told] : document["objects"].items()) {
        std::size_t const colon = text.find(':');
        if (catalogue::isOf(catalogue::findClass(text.substr(0, colon)), conditionClass)) {
            std::string const id = text.substr(colon + 1);
            alarms[id] = alarmOf(id, told);
        }
    }
    return alarms;
}

// What fault services say is active though none of the conditions that the unit leads to is: it has others there.
Alarms othersIn(Value const& document, Alarms const& known)
{
    Alarms others;
    for (auto const& [text, told] : document["objects"].items()) {
        std::size_t const colon = text.find(':');
        if (resultOf(told, "isAnyActive") != true ||
            !catalogue::isOf(catalogue::findClass(text.substr(0, colon)), serviceClass)) {
            continue;
        }
        std::string const id = text.substr(colon + 1);
        std::string const object = id.substr(0, id.rfind(faultService));
        if (std::ranges::none_of(known, [&object](auto const& each) {
                return each.second.isActive && each.second.object.starts_with(object);
            })) {
            others[id] = {object, "(not told)", notTold, true, resultOf(told, "isAnySuppressed") == true};
        }
    }
    return others;
}

// A unit does not tell since when a condition is active; null in JSON.
void showTable(Alarms alarms, Alarms others, bool isAll, Format format)
{
    alarms.merge(others);
    Value const unknown = format == Format::json ? Value() : Value("unknown");
    std::vector<Row> rows;
    for (auto const& [id, alarm] : alarms) {
        if (alarm.isActive || isAll) {
            rows.push_back({alarm.object, alarm.condition, alarm.severity != notTold ? Value(alarm.severity) : unknown,
                            alarm.isActive ? unknown : Value("-"), alarm.isSuppressed, alarm.isActive});
        }
    }
    std::vector<std::string> head{"object", "condition", "severity", "since", "suppressed", "active"};
    if (!isAll) {
        head.pop_back();
        std::ranges::for_each(rows, [](Row& row) { row.pop_back(); });
    }
    writeRows(std::move(head), std::move(rows), format == Format::text ? Format::table : format);
}

void showChange(Alarm const& alarm, std::string const& time, Format format)
{
    char const* const what = !alarm.isActive ? "ended" : alarm.isSuppressed ? "suppressed" : "active";
    if (format == Format::json) {
        tools::say(catalogue::toJson({{"time", time},
                                      {"object", alarm.object},
                                      {"condition", alarm.condition},
                                      {"severity", alarm.severity},
                                      {"active", alarm.isActive},
                                      {"suppressed", alarm.isSuppressed}},
                                     -1));
        return;
    }
    tools::say(time + ' ' + tools::coloured(what, alarm.isActive ? tools::Colour::bad : tools::Colour::good) + ' ' +
               tools::coloured(escaped(alarm.object), tools::Colour::name) + ' ' + escaped(alarm.condition) +
               fmt::format(" severity={}", alarm.severity));
}

Target conditionAt(Program::Options const& options, std::string const& id)
{
    return {options.unit,
            {std::string(conditionClass), id},
            catalogue::findClass(conditionClass),
            TipprmiObjectClient(TipprmiOID(id))};
}

// Reads such conditions again, and shows those that tell otherwise. One that tells nothing is as it was.
void update(Alarms& alarms, std::vector<std::string> const& ids, std::string const& time, Format format)
{
    constexpr std::array<std::string_view, 3> reads{"getCurrentSeverity", "isActive", "isSuppressed"};
    catalogue::Class const& type = *catalogue::findClass(conditionClass);
    std::size_t begun = 0;
    std::size_t taken = 0;
    Value told = Value::object(); // of one condition
    auto const next = [&]() -> std::optional<catalogue::PlannedCall> {
        if (begun == ids.size() * reads.size()) {
            return std::nullopt;
        }
        std::size_t const call = begun++;
        return catalogue::PlannedCall{ids[call / reads.size()], type.find(reads[call % reads.size()])};
    };
    auto const take = [&](catalogue::Outcome& outcome) {
        std::size_t const call = taken++;
        if (outcome.kind == catalogue::Outcome::Kind::done) {
            told[std::string(reads[call % reads.size()])] = std::move(outcome.results);
        }
        if (taken % reads.size() == 0) {
            Alarm& alarm = alarms[ids[call / reads.size()]];
            Alarm const now = told.size() == reads.size() ? alarmOf(ids[call / reads.size()], told) : alarm;
            if (now != alarm) {
                alarm = now;
                showChange(alarm, time, format);
            }
            told = Value::object();
        }
        return true;
    };
    TreflectHandlerState const running;
    catalogue::makeCalls(next, take);
}

std::vector<std::string> idsOf(Alarms const& alarms)
{
    std::vector<std::string> ids;
    std::ranges::transform(alarms, std::back_inserter(ids), [](auto const& each) { return each.first; });
    return ids;
}

std::string now() { return catalogue::timestamp(std::chrono::system_clock::now()); }

ExitCode watchAlarms(Program::Options const& options, Alarms alarms, double seconds)
{
    Feed feed("conditions");
    GapListener const gapListener([&feed](NotificationGap const& gap) { feed.tell(gap); });
    std::list<Listener> listeners;
    for (std::string const& id : idsOf(alarms)) {
        Target const target = conditionAt(options, id);
        if (ExitCode const code = listen(target, changesOf(*target.type), feed, listeners); code != ExitCode::good) {
            return code;
        }
    }
    std::fprintf(stderr, "watching %zu conditions\n", alarms.size());
    update(alarms, idsOf(alarms), now(), options.format); // what happened before they were watched
    using Clock = std::chrono::steady_clock;
    std::optional<Clock::time_point> end;
    if (seconds > 0) {
        end = Clock::now() + std::chrono::milliseconds(static_cast<long>(seconds * 1000));
    }
    bool hasGaps = false;
    while (std::optional<Value> const event = feed.take(end)) {
        bool const isGap = Feed::isGap(*event); // all may have changed
        hasGaps = hasGaps || isGap;
        std::string const object = (*event)["object"];
        update(alarms, isGap ? idsOf(alarms) : std::vector{object.substr(object.find(':') + 1)}, (*event)["time"],
               options.format);
    }
    return hasGaps ? complain("changes may be missing in what was shown", ExitCode::incomplete) : ExitCode::good;
}

ExitCode alarms(Program::Options const& options, AlarmWords const& words)
{
    Interrupt const interrupt;
    Value document;
    if (ExitCode const code = readUnit(options, "", document); code != ExitCode::good) {
        return code;
    }
    Alarms found = alarmsIn(document);
    showTable(found, othersIn(document, found), words.isAll, options.format);
    return words.watches ? watchAlarms(options, std::move(found), words.seconds) : ExitCode::good;
}

} // namespace

void addAlarmsVerbs(Program& program)
{
    auto const words = std::make_shared<AlarmWords>();
    program.add({.name = "alarms",
                 .help = "Show the conditions of a unit that are active",
                 .example = "alarms --watch",
                 .options =
                     {
                         {.name = "--watch", .target = &words->watches, .help = "Go on with what changes"},
                         {.name = "--all", .target = &words->isAll, .help = "Show those that are not active too"},
                         {.name = "--for",
                          .target = &words->seconds,
                          .help = "How long to watch, in seconds; without end unless said",
                          .type = "S",
                          .range = {{0, 1e6}}},
                     }},
                [words](Program::Options const& options) { return alarms(options, *words); });
}

} // namespace trs::ctl
