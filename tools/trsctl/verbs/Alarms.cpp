// trsctl alarms: the conditions of a unit that are active.
#include "broker/PrintableText.h"
#include "catalogue/Collections.h"
#include "catalogue/Json.h"
#include "catalogue/Text.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/support/Colour.h"
#include "tools/support/StandardStreams.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Interrupt.h"
#include "tools/trsctl/Listener.h"
#include "tools/trsctl/UnitDocument.h"
#include "tools/trsctl/Verbs.h"

#include <fmt/format.h>
#include <list>
#include <map>
#include <memory>

namespace trs::ctl {

namespace {

using catalogue::Value;

constexpr std::string_view conditionClass = "ConditionClient";
constexpr std::string_view conditionPart = "/Condition/";

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

std::map<std::string, Alarm> alarmsIn(Value const& document)
{
    std::map<std::string, Alarm> alarms;
    for (auto const& [text, told] : document["objects"].items()) {
        std::size_t const colon = text.find(':');
        if (catalogue::isOf(catalogue::findClass(text.substr(0, colon)), conditionClass)) {
            std::string const id = text.substr(colon + 1);
            alarms[id] = alarmOf(id, told);
        }
    }
    return alarms;
}

// "since": a unit does not tell when a condition became active, so that only a bound is known of one that already is.
void showTable(std::map<std::string, Alarm> const& alarms, bool isAll, std::string const& now, Format format)
{
    std::vector<Row> rows;
    for (auto const& [id, alarm] : alarms) {
        if (alarm.isActive || isAll) {
            rows.push_back({alarm.object, alarm.condition, alarm.severity, alarm.isActive ? "before " + now : "-",
                            alarm.isSuppressed, alarm.isActive});
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

// What a condition tells now; as it was when it tells nothing.
Alarm readAlarm(Program::Options const& options, std::string const& id, Alarm const& former)
{
    Target const target = conditionAt(options, id);
    Value told = Value::object();
    TreflectHandlerState const running;
    for (char const* const name : {"getCurrentSeverity", "isActive", "isSuppressed"}) {
        catalogue::Outcome const outcome = catalogue::call(target.object, *target.type->find(name), {});
        if (outcome.kind != catalogue::Outcome::Kind::done) {
            return former;
        }
        told[name] = outcome.results;
    }
    return alarmOf(id, told);
}

ExitCode watchAlarms(Program::Options const& options, std::map<std::string, Alarm> const& present, double seconds)
{
    std::map<std::string, Alarm> alarms = present;
    Feed feed("conditions");
    GapListener const gapListener([&feed](NotificationGap const& gap) { feed.tell(gap); });
    std::list<Listener> listeners;
    {
        TreflectHandlerState const running;
        for (auto const& [id, alarm] : alarms) {
            Target const target = conditionAt(options, id);
            for (catalogue::Operation const* const operation : target.type->operations()) {
                bool const changes = kindOf(*operation) != catalogue::OperationKind::read;
                if (changes && !observe(target.object, operation->classId, operation->index,
                                        listeners.emplace_back(target, *operation, feed))) {
                    return complain(target.name.text() + ": " + lastCallFailure().text(), lastCallFailure());
                }
            }
        }
    }
    std::fprintf(stderr, "watching %zu conditions\n", alarms.size());
    for (auto& [id, alarm] : alarms) { // what happened before they were watched
        if (Alarm const now = readAlarm(options, id, alarm); now != alarm) {
            alarm = now;
            showChange(alarm, catalogue::timestamp(std::chrono::system_clock::now()), options.format);
        }
    }
    using Clock = std::chrono::steady_clock;
    std::optional<Clock::time_point> end;
    if (seconds > 0) {
        end = Clock::now() + std::chrono::milliseconds(static_cast<long>(seconds * 1000));
    }
    bool hasGaps = false;
    while (std::optional<Value> const event = feed.take(end)) {
        std::string const object = (*event)["object"];
        bool const isGap = Feed::isGap(*event);
        hasGaps = hasGaps || isGap;
        for (auto& [id, alarm] : alarms) { // after a gap all may have changed
            Alarm const now = isGap || object.ends_with(':' + id) ? readAlarm(options, id, alarm) : alarm;
            if (now != alarm) {
                alarm = now;
                showChange(alarm, (*event)["time"], options.format);
            }
        }
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
    std::map<std::string, Alarm> const found = alarmsIn(document);
    showTable(found, words.isAll, catalogue::timestamp(std::chrono::system_clock::now()), options.format);
    return words.watches ? watchAlarms(options, found, words.seconds) : ExitCode::good;
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
