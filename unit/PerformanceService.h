// The performance service of the simulated object: what PerformanceServiceClient reaches.
#pragma once

#include "clients/services/PerformanceServiceClient.h"
#include "unit/Object.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace trs::sim {

// Counts for the subjects that the owner's class names (PM_IDENT_ constants), else for three: 1 octets, 2 packets, 3
// errored seconds. An interval of the unit's clock lasts 15 minutes; at its end the current value of every monitored
// subject becomes the last of up to 96 interval values, and counting begins anew. In adapter data, value1 is the
// subject, flag whether it is monitored, value2 its current value and value3 how many interval values count.
class PerformanceService {
public:
    static constexpr unsigned long intervalSeconds = 900;

    PerformanceService(Inventory& inventory, std::string const& owner, catalogue::Class const& ownersClass);
    PerformanceService(PerformanceService const&) = delete;
    PerformanceService& operator=(PerformanceService const&) = delete;

    auto proxy() const { return object_.proxy<PerformanceServiceClient>(); }
    // While nothing passes, counters stand still, but for those of unavailable seconds.
    void setPassing(bool isPassing);

private:
    using Values = TipprmiArray<unsigned long, PerformanceServiceClient::NumOfHistoricIntervals>;
    using Record = PerformanceServiceClient::IdentData_t;

    enum class Kind { octets, packets, errors, erroredSeconds, unavailableSeconds };
    struct Subject {
        unsigned long id;
        Kind kind;
        unsigned long perSecond; // in a steady network
        bool isOut = false;
        bool isMonitored = true;
        unsigned long current = 0;
        std::vector<std::uint32_t> history = {}; // the oldest first, 96 at most

        void add(unsigned long amount);
        void endInterval();
        void clear();
        void setHistory(Values const& values, unsigned long count);
        Values values() const;
        Record record() const;
    };

    static Kind kindOf(std::string_view name);
    static std::vector<Subject> subjectsOf(catalogue::Class const& type);
    Subject* find(unsigned long id);
    // Counts what has passed since the last time.
    void catchUp();
    unsigned long amount(Subject const& subject, unsigned long from, unsigned long to) const;
    unsigned long elapsed() const { return (countedTo_ - begin_) % intervalSeconds; }
    void serveData();
    void serveMonitoring();
    void hold();
    catalogue::Value counted();
    std::string take(catalogue::Value const& told);
    std::string takeAdapterData(catalogue::Value const& list);
    static std::string takeSubject(catalogue::Value const& told, std::vector<Subject>& subjects);
    void setMonitored(Subject& subject, bool monitored);
    void setRecord(Record const& record);
    bool hold(Record const& record); // false: there is no such subject

    std::string const owner_;
    std::vector<Subject> subjects_;
    unsigned long begin_;     // of the first interval, in the unit's time; seconds
    unsigned long countedTo_; // likewise
    bool isPassing_ = true;
    Object object_;
};

} // namespace trs::sim
