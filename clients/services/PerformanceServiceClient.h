// PerformanceServiceClient: the performance service of an application object, handed out by
// ApplicationObjectClient::getPerformanceSvc() once createPerformanceSvc() made it.
#pragma once

#include "platform/TipprmiForward.h"
#include "platform/TreflectObject.h"
#include "rmi/MetaObject.h"
#include "rmi/Record.h"
#include "rmi/TipprmiArray.h"

#include <string>

// Keeps monitored data: current data, historic data of 96 interval values, adapter data and an elapsed time. Each
// operation names its subject with a number that the server decides. The bool results are the server's answers, false
// when the call fails.
class PerformanceServiceClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    PerformanceServiceClient() = default;
    explicit PerformanceServiceClient(TreflectObject const& other) : TreflectObject(other) {}

    using ClientSpecificMetaObject = ProxyMetaObject<PerformanceServiceClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The interval values of historic data.
    static constexpr short NumOfHistoricIntervals = 96;
    // Kinds of access, for callers; there is no kind 3.
    static constexpr int GET_CURRENT_DATA = 1;
    static constexpr int GET_HISTORIC_DATA = 2;
    static constexpr int EXIST_MONITORING = 4;
    static constexpr int START_MONITORING = 5;
    static constexpr int STOP_MONITORING = 6;
    static constexpr int RESET_MONITORING = 7;
    static constexpr int GET_ADAPTER_DATA = 8;

    // The adapter data of one subject. The server decides what the four scalars mean; the names follow position.
    struct IdentData_t {
        unsigned long value1;
        bool flag;
        unsigned long value2;
        unsigned long value3;
        TipprmiArray<unsigned long, 96> history; // as many as NumOfHistoricIntervals
    };

    // Reads the current value of a subject.
    virtual bool getCurrentData(unsigned long const& id, unsigned long& value) const;
    // Reads the interval values of a subject and how many of them count.
    virtual bool getHistoricData(unsigned long const& id, unsigned long& count,
                                 TipprmiArray<unsigned long, 96>& history) const;
    // Reads the adapter data of several subjects, one record each.
    virtual bool getAdapterData(TipprmiSequence<unsigned long> const& ids, TipprmiSequence<IdentData_t>& data) const;
    // Reads the time that the present interval has lasted.
    virtual bool getElapsedTime(unsigned long& elapsed) const;
    // Reads whether a subject is monitored.
    virtual bool existMonitoring(unsigned long const& id, bool& exists) const;
    // Starts monitoring a subject; `done` tells whether it runs.
    virtual bool startMonitoring(unsigned long const& id, bool& done) const;
    // Stops monitoring a subject; `done` tells whether it stopped.
    virtual bool stopMonitoring(unsigned long const& id, bool& done) const;
    // Resets all monitored data.
    virtual bool resetMonitoring(bool& done) const;
    // Makes the service act on subjects; the server decides what name and value mean.
    virtual void trigger(std::string const& name, TipprmiSequence<unsigned long> const& ids,
                         unsigned long const& value) const;
    // Sets the current data, which the server takes from the subject.
    virtual void setCurrentData(unsigned long const& id) const;
    // Sets the interval values of a subject.
    virtual void setHistoricData(unsigned long const& id, TipprmiArray<unsigned long, 96> const& history) const;
    // Sets adapter data.
    virtual void setAdapterData(TipprmiSequence<IdentData_t> const& data) const;
    // Sets that a subject is monitored.
    virtual void setExistMonitoring(unsigned long const& id) const;
};

template <>
struct RecordFields<PerformanceServiceClient::IdentData_t>
    : Fields<&PerformanceServiceClient::IdentData_t::value1, &PerformanceServiceClient::IdentData_t::flag,
             &PerformanceServiceClient::IdentData_t::value2, &PerformanceServiceClient::IdentData_t::value3,
             &PerformanceServiceClient::IdentData_t::history> {};
