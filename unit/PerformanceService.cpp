#include "unit/PerformanceService.h"

#include "broker/PrintableText.h"
#include "clients/services/PerformanceServiceSkeleton.h"
#include "unit/Journal.h"

#include <algorithm>
#include <cstdint>

namespace trs::sim {

// Counters have 32 bits, as on the wire, and begin again at 0.
void PerformanceService::Subject::add(unsigned long amount) { current = static_cast<std::uint32_t>(current + amount); }

void PerformanceService::Subject::endInterval()
{
    if (count == PerformanceServiceClient::NumOfHistoricIntervals) {
        std::copy(history.data() + 1, history.data() + count, history.data());
        --count;
    }
    history[count++] = current;
    current = 0;
}

void PerformanceService::Subject::clear()
{
    current = 0;
    count = 0;
    history = Values{};
}

PerformanceService::Record PerformanceService::Subject::record() const
{
    return {id, isMonitored, current, count, history};
}

PerformanceService::PerformanceService(Inventory& inventory, std::string const& owner)
    : servant_(TipprmiOID(owner + "/PerformanceService")),
      time_(inventory.clock(), [this](unsigned long seconds) { advance(seconds); })
{
    for (Subject& subject : subjects_) {
        subject.perSecond += inventory.vary(owner + std::to_string(subject.id), subject.perSecond);
    }
    serveData();
    serveMonitoring();
}

void PerformanceService::serveData()
{
    servant_
        .on<&PerformanceServiceClient::getCurrentData>([this](unsigned long const& id, unsigned long& value) {
            Subject const* const subject = find(id);
            value = subject != nullptr ? subject->current : 0;
            return subject != nullptr;
        })
        .on<&PerformanceServiceClient::getHistoricData>(
            [this](unsigned long const& id, unsigned long& count, Values& history) {
                Subject const* const subject = find(id);
                count = subject != nullptr ? subject->count : 0;
                history = subject != nullptr ? subject->history : Values{};
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
            elapsed = elapsed_;
            return true;
        })
        .on<&PerformanceServiceClient::setCurrentData>([this](unsigned long const& id) {
            if (Subject* const subject = find(id)) {
                subject->current = static_cast<std::uint32_t>(subject->perSecond * elapsed_);
                say("current data of subject " + std::to_string(id) + " taken anew");
            }
        })
        .on<&PerformanceServiceClient::setHistoricData>([this](unsigned long const& id, Values const& history) {
            if (Subject* const subject = find(id)) {
                subject->history = history;
                subject->count = PerformanceServiceClient::NumOfHistoricIntervals;
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
    servant_
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
            for (Subject& subject : subjects_) {
                subject.clear();
            }
            elapsed_ = 0;
            done = true;
            say("monitored data reset");
            return true;
        });
}

PerformanceService::Subject* PerformanceService::find(unsigned long id)
{
    auto* const found =
        std::find_if(subjects_.begin(), subjects_.end(), [id](Subject const& subject) { return subject.id == id; });
    return found != subjects_.end() ? found : nullptr;
}

void PerformanceService::setMonitored(Subject& subject, bool monitored)
{
    subject.isMonitored = monitored;
    say("monitoring of subject " + std::to_string(subject.id) + (monitored ? " started" : " stopped"));
}

void PerformanceService::setRecord(Record const& record)
{
    if (Subject* const subject = find(record.value1)) {
        subject->isMonitored = record.flag;
        subject->current = record.value2;
        subject->count = std::min<unsigned long>(record.value3, PerformanceServiceClient::NumOfHistoricIntervals);
        subject->history = record.history;
        say("adapter data of subject " + std::to_string(subject->id) + " set");
    }
}

void PerformanceService::advance(unsigned long seconds)
{
    // Of a longer time the intervals in the middle would be forgotten again.
    constexpr unsigned long remembered = (PerformanceServiceClient::NumOfHistoricIntervals + 1UL) * intervalSeconds;
    unsigned long left = seconds <= remembered ? seconds : remembered + (seconds - remembered) % intervalSeconds;
    while (left != 0) {
        unsigned long const step = std::min(left, intervalSeconds - elapsed_);
        left -= step;
        elapsed_ = (elapsed_ + step) % intervalSeconds;
        for (Subject& subject : subjects_) {
            if (subject.isMonitored) {
                subject.add(subject.perSecond * step);
                if (elapsed_ == 0) {
                    subject.endInterval();
                }
            }
        }
    }
}

} // namespace trs::sim
