// The performance service of the simulated object: what PerformanceServiceClient reaches.
#pragma once

#include "clients/services/PerformanceServiceClient.h"
#include "rmi/Servant.h"
#include "unit/Inventory.h"

#include <array>
#include <string>

namespace trs::sim {

// Counts for three subjects: 1 octets, 2 packets, 3 errored seconds. An interval of the
// unit's clock lasts 15 minutes; at its end the current value of every monitored subject becomes the last of up to 96
// interval values, and counting begins anew. In adapter data, value1 is the subject, flag whether it is monitored,
// value2 its current value and value3 how many interval values count.
class PerformanceService {
public:
    static constexpr unsigned long intervalSeconds = 900;

    PerformanceService(Inventory& inventory, std::string const& owner);
    PerformanceService(PerformanceService const&) = delete;
    PerformanceService& operator=(PerformanceService const&) = delete;

    auto proxy() const { return PerformanceServiceClient(&servant_); }

private:
    using Values = TipprmiArray<unsigned long, PerformanceServiceClient::NumOfHistoricIntervals>;
    using Record = PerformanceServiceClient::IdentData_t;

    struct Subject {
        unsigned long id;
        unsigned long perSecond;
        bool isMonitored = true;
        unsigned long current = 0;
        unsigned long count = 0; // of the interval values that count
        Values history{};        // the oldest first

        void add(unsigned long amount);
        void endInterval();
        void clear();
        Record record() const;
    };

    Subject* find(unsigned long id);
    void advance(unsigned long seconds);
    void serveData();
    void serveMonitoring();
    void setMonitored(Subject& subject, bool monitored);
    void setRecord(Record const& record);

    std::array<Subject, 3> subjects_{{{1, 125000}, {2, 1000}, {3, 1}}};
    unsigned long elapsed_ = 0; // seconds of the present interval
    Servant servant_;
    Clock::Subscription const time_;
};

} // namespace trs::sim
