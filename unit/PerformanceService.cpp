#include "unit/PerformanceService.h"

#include "broker/PrintableText.h"
#include "catalogue/Constants.h"
#include "catalogue/Json.h"
#include "clients/services/PerformanceServiceSkeleton.h"
#include "platform/TipprmiStream.h"
#include "unit/Journal.h"

#include <algorithm>
#include <cstdint>

namespace trs::sim {

namespace {

constexpr std::size_t intervals = PerformanceServiceClient::NumOfHistoricIntervals;
constexpr unsigned long secondsOfMinute = 60;
constexpr unsigned long octetsPerPacket = 125; // of a steady network
constexpr unsigned long errorsPerSecond = 3;   // of an errored second

} // namespace

// Counters have 32 bits, as on the wire, and begin again at 0.
void PerformanceService::Subject::add(unsigned long amount) { current = static_cast<std::uint32_t>(current + amount); }

void PerformanceService::Subject::endInterval()
{
    if (history.size() == intervals) {
        history.erase(history.begin());
    }
    history.push_back(static_cast<std::uint32_t>(current));
    current = 0;
}

void PerformanceService::Subject::clear()
{
    current = 0;
    history.clear();
}

void PerformanceService::Subject::setHistory(Values const& values, unsigned long count)
{
    history.clear();
    for (std::size_t i = 0; i < std::min<std::size_t>(count, intervals); ++i) {
        history.push_back(static_cast<std::uint32_t>(values[i]));
    }
}

PerformanceService::Values PerformanceService::Subject::values() const
{
    Values values{};
    std::ranges::copy(history, values.data());
    return values;
}

PerformanceService::Record PerformanceService::Subject::record() const
{
    return {id, isMonitored, current, history.size(), values()};
}

namespace {

bool contains(std::string_view name, std::string_view word) { return name.find(word) != std::string_view::npos; }

} // namespace

// What a subject counts is in its constant's name.
PerformanceService::Kind PerformanceService::kindOf(std::string_view name)
{
    if (contains(name, "UAS")) {
        return Kind::unavailableSeconds;
    }
    if (contains(name, "SES")) {
        return Kind::erroredSeconds;
    }
    if (contains(name, "OCT")) {
        return Kind::octets;
    }
    bool const isRare =
        contains(name, "ERR") || contains(name, "DROP") || contains(name, "DISC") || contains(name, "UNKNOWN");
    return isRare ? Kind::errors : Kind::packets;
}

std::vector<PerformanceService::Subject> PerformanceService::subjectsOf(catalogue::Class const& type)
{
    std::vector<Subject> subjects;
    for (catalogue::Constant const* const constant : catalogue::constantsOf(type)) {
        constexpr std::string_view prefix = "PM_IDENT_";
        if (!constant->name.starts_with(prefix)) {
            continue;
        }
        Kind const kind = kindOf(constant->name);
        bool const isOut = contains(constant->name, "OUT") || contains(constant->name, "TX");
        unsigned long const packets = isOut ? 800 : 1000; // a second
        subjects.push_back({constant->value.get<unsigned long>(), kind,
                            kind == Kind::octets    ? packets * octetsPerPacket
                            : kind == Kind::packets ? packets
                                                    : 0,
                            isOut});
    }
    if (subjects.empty()) {
        subjects = {{1, Kind::octets, 125'000}, {2, Kind::packets, 1000}, {3, Kind::erroredSeconds, 1}};
    }
    return subjects;
}

PerformanceService::PerformanceService(Inventory& inventory, std::string const& owner,
                                       catalogue::Class const& ownersClass)
    : owner_(owner), subjects_(subjectsOf(ownersClass)), begin_(inventory.clock().now()), countedTo_(begin_),
      object_(inventory, owner + "/PerformanceService", reflect::className<PerformanceServiceClient>)
{
    serveData();
    serveMonitoring();
    hold();
}

void PerformanceService::hold()
{
    object_.facts().add({"counted", [this] { return counted(); },
                         [this](catalogue::Value const& told) { return told.is_null() ? "" : take(told); }});
    // As scenarios of the first format have it.
    object_.facts().add({"getAdapterData", [] { return catalogue::Value(); },
                         [this](catalogue::Value const& list) { return takeAdapterData(list); }});
}

std::string PerformanceService::takeAdapterData(catalogue::Value const& list)
{
    catalogue::Type const& type = *operationOf<&PerformanceServiceClient::getAdapterData>().parameters[1].type;
    for (catalogue::Value const& each : list) {
        TipprmiStream stream(100);
        std::string wrong = each.is_object() && each.contains("data")
                                ? catalogue::writeValue(stream, type, each["data"])
                                : "data is missing";
        if (!wrong.empty()) {
            return wrong;
        }
        TipprmiSequence<Record> records;
        Wire<TipprmiSequence<Record>>::read(stream, records);
        std::ranges::for_each(records, [this](Record const& record) { hold(record); });
    }
    return {};
}

catalogue::Value PerformanceService::counted()
{
    catchUp();
    catalogue::Value subjects = catalogue::Value::array();
    for (Subject const& subject : subjects_) {
        subjects.push_back({{"id", subject.id},
                            {"isMonitored", subject.isMonitored},
                            {"current", subject.current},
                            {"intervals", subject.history}});
    }
    return {{"from", begin_}, {"to", countedTo_}, {"isPassing", isPassing_}, {"subjects", std::move(subjects)}};
}

std::string PerformanceService::take(catalogue::Value const& told)
{
    auto const isNumber = [&told](char const* name, unsigned long most) {
        auto const found = told.find(name);
        return found != told.end() && found->is_number_unsigned() && *found <= most;
    };
    unsigned long const now = object_.inventory().clock().now();
    if (!told.is_object() || !isNumber("to", now) || !isNumber("from", told["to"].get<unsigned long>())) {
        return R"("from" and "to" are no seconds from 0 to )" + std::to_string(now);
    }
    if (!told.contains("isPassing") || !told["isPassing"].is_boolean() || !told.contains("subjects") ||
        !told["subjects"].is_array()) {
        return R"("isPassing" or "subjects" is missing)";
    }
    std::vector<Subject> subjects = subjects_;
    for (catalogue::Value const& each : told["subjects"]) {
        if (std::string wrong = takeSubject(each, subjects); !wrong.empty()) {
            return wrong;
        }
    }
    subjects_ = std::move(subjects);
    begin_ = told["from"].get<unsigned long>();
    countedTo_ = told["to"].get<unsigned long>();
    isPassing_ = told["isPassing"].get<bool>();
    return {};
}

std::string PerformanceService::takeSubject(catalogue::Value const& told, std::vector<Subject>& subjects)
{
    constexpr std::uint32_t most = UINT32_MAX;
    auto const isCount = [](catalogue::Value const& value) { return value.is_number_unsigned() && value <= most; };
    bool const isWhole = told.is_object() && told.contains("id") && told.contains("isMonitored") &&
                         told["isMonitored"].is_boolean() && told.contains("current") && isCount(told["current"]) &&
                         told.contains("intervals") && told["intervals"].is_array() &&
                         told["intervals"].size() <= intervals && std::ranges::all_of(told["intervals"], isCount);
    if (!isWhole) {
        return printable(catalogue::toJson(told, -1)) + " is no subject: id, isMonitored, current, intervals";
    }
    auto const subject = std::ranges::find_if(subjects, [&told](Subject const& each) { return each.id == told["id"]; });
    if (subject == subjects.end()) {
        return "there is no subject " + catalogue::toJson(told["id"], -1);
    }
    subject->isMonitored = told["isMonitored"].get<bool>();
    subject->current = told["current"].get<unsigned long>();
    subject->history = told["intervals"].get<std::vector<std::uint32_t>>();
    return {};
}

void PerformanceService::setPassing(bool isPassing)
{
    if (isPassing_ != isPassing) {
        catchUp();
        isPassing_ = isPassing;
        object_.changed();
    }
}

void PerformanceService::serveData()
{
    object_.servant()
        .on<&PerformanceServiceClient::getCurrentData>([this](unsigned long const& id, unsigned long& value) {
            Subject const* const subject = find(id);
            value = subject != nullptr ? subject->current : 0;
            return subject != nullptr;
        })
        .on<&PerformanceServiceClient::getHistoricData>(
            [this](unsigned long const& id, unsigned long& count, Values& history) {
                Subject const* const subject = find(id);
                count = subject != nullptr ? subject->history.size() : 0;
                history = subject != nullptr ? subject->values() : Values{};
                return subject != nullptr;
            })
        .on<&PerformanceServiceClient::getAdapterData>(
            [this](TipprmiSequence<unsigned long> const& ids, TipprmiSequence<Record>& data) {
                bool areKnown = true;
                for (unsigned long const id : ids) {
                    Subject const* const subject = find(id);
                    data.push_back(subject != nullptr ? subject->record() : Record{id, false, 0, 0, {}});
                    areKnown = areKnown && subject != nullptr;
                }
                return areKnown;
            })
        .on<&PerformanceServiceClient::getElapsedTime>([this](unsigned long& elapsed) {
            catchUp();
            elapsed = this->elapsed();
            return true;
        })
        .on<&PerformanceServiceClient::setCurrentData>([this](unsigned long const& id) {
            if (Subject* const subject = find(id)) {
                subject->current = static_cast<std::uint32_t>(amount(*subject, countedTo_ - elapsed(), countedTo_));
                say("current data of subject " + std::to_string(id) + " taken anew");
            }
        })
        .on<&PerformanceServiceClient::setHistoricData>([this](unsigned long const& id, Values const& history) {
            if (Subject* const subject = find(id)) {
                subject->setHistory(history, intervals);
                say("historic data of subject " + std::to_string(id) + " set");
            }
        })
        .on<&PerformanceServiceClient::setAdapterData>([this](TipprmiSequence<Record> const& data) {
            for (Record const& record : data) {
                setRecord(record);
            }
        })
        .on<&PerformanceServiceClient::trigger>(
            [this](std::string const& name, TipprmiSequence<unsigned long> const& ids, unsigned long const& value) {
                say("trigger '" + printable(name) + "' with value " + std::to_string(value));
                for (unsigned long const id : ids) {
                    if (Subject* const subject = find(id); subject != nullptr && name == "add") {
                        subject->add(value);
                    }
                }
            });
}

void PerformanceService::serveMonitoring()
{
    auto const change = [this](unsigned long id, bool monitored, bool& done) {
        Subject* const subject = find(id);
        done = subject != nullptr;
        if (done) {
            setMonitored(*subject, monitored);
        }
        return done;
    };
    object_.servant()
        .on<&PerformanceServiceClient::existMonitoring>([this](unsigned long const& id, bool& exists) {
            Subject const* const subject = find(id);
            exists = subject != nullptr && subject->isMonitored;
            return subject != nullptr;
        })
        .on<&PerformanceServiceClient::startMonitoring>(
            [change](unsigned long const& id, bool& done) { return change(id, true, done); })
        .on<&PerformanceServiceClient::stopMonitoring>(
            [change](unsigned long const& id, bool& done) { return change(id, false, done); })
        .on<&PerformanceServiceClient::setExistMonitoring>([change](unsigned long const& id) {
            bool done = false;
            change(id, true, done);
        })
        .on<&PerformanceServiceClient::resetMonitoring>([this](bool& done) {
            catchUp();
            for (Subject& subject : subjects_) {
                subject.clear();
            }
            begin_ = countedTo_;
            done = true;
            say("monitored data reset");
            return true;
        });
}

// As it is at present.
PerformanceService::Subject* PerformanceService::find(unsigned long id)
{
    catchUp();
    auto const found = std::ranges::find(subjects_, id, &Subject::id);
    return found != subjects_.end() ? &*found : nullptr;
}

void PerformanceService::setMonitored(Subject& subject, bool monitored)
{
    subject.isMonitored = monitored;
    say("monitoring of subject " + std::to_string(subject.id) + (monitored ? " started" : " stopped"));
}

void PerformanceService::setRecord(Record const& record)
{
    if (hold(record)) {
        say("adapter data of subject " + std::to_string(record.value1) + " set");
    }
}

bool PerformanceService::hold(Record const& record)
{
    Subject* const subject = find(record.value1);
    if (subject != nullptr) {
        subject->isMonitored = record.flag;
        subject->current = record.value2;
        subject->setHistory(record.history, record.value3);
    }
    return subject != nullptr;
}

void PerformanceService::catchUp()
{
    // Of a longer time the intervals in the middle would be forgotten again.
    constexpr unsigned long remembered = (intervals + 1) * intervalSeconds;
    unsigned long const now = object_.inventory().clock().now();
    if (now > countedTo_ && now - countedTo_ > remembered) {
        countedTo_ += (now - countedTo_ - remembered) / intervalSeconds * intervalSeconds;
    }
    while (countedTo_ < now) {
        unsigned long const to = std::min(now, countedTo_ - elapsed() + intervalSeconds);
        bool const isEnd = (to - begin_) % intervalSeconds == 0;
        for (Subject& subject : subjects_) {
            if (subject.isMonitored) {
                subject.add(amount(subject, countedTo_, to));
                if (isEnd) {
                    subject.endInterval();
                }
            }
        }
        countedTo_ = to;
    }
}

// What a subject counts between two times.
unsigned long PerformanceService::amount(Subject const& subject, unsigned long from, unsigned long to) const
{
    Load const& load = object_.inventory().load();
    if (subject.kind == Kind::unavailableSeconds || !isPassing_) {
        return subject.kind == Kind::unavailableSeconds && !isPassing_ ? to - from : 0;
    }
    unsigned long const perSecond =
        subject.perSecond * (1000 + object_.inventory().vary(owner_ + (subject.isOut ? "/out" : "/in"), 1000)) / 1000;
    if (load.isSteady()) {
        return perSecond * (to - from);
    }
    unsigned long sum = 0;
    while (from < to) {
        unsigned long const minute = from / secondsOfMinute;
        unsigned long const end = std::min(to, (minute + 1) * secondsOfMinute);
        Load::Pace const pace = load.paceOf(owner_, minute);
        unsigned long const erroredUntil = minute * secondsOfMinute + pace.erroredSeconds;
        unsigned long const errored = erroredUntil > from ? std::min(end, erroredUntil) - from : 0;
        switch (subject.kind) {
        case Kind::octets:
            sum += perSecond / octetsPerPacket * pace.packetsPerMille / 1000 * pace.octetsPerPacket * (end - from);
            break;
        case Kind::packets:
            sum += perSecond * pace.packetsPerMille / 1000 * (end - from);
            break;
        case Kind::errors:
            sum += errorsPerSecond * errored;
            break;
        default:
            sum += errored;
        }
        from = end;
    }
    return sum;
}

} // namespace trs::sim
