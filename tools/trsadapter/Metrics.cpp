#include "tools/trsadapter/Metrics.h"

#include <prometheus/counter.h>
#include <prometheus/gauge.h>
#include <prometheus/histogram.h>
#include <prometheus/registry.h>
#include <prometheus/text_serializer.h>

namespace trs::adapter {

using prometheus::BuildCounter;
using prometheus::BuildGauge;
using prometheus::BuildHistogram;

struct Metrics::Families {
    prometheus::Registry registry;
    prometheus::Family<prometheus::Counter>& messages = BuildCounter()
                                                            .Name("trsadapter_messages_total")
                                                            .Help("Messages answered, by kind and result.")
                                                            .Register(registry);
    prometheus::Histogram& times =
        BuildHistogram()
            .Name("trsadapter_message_seconds")
            .Help("Time from having a message to having its answer.")
            .Register(registry)
            .Add({}, prometheus::Histogram::BucketBoundaries{0.0001, 0.0003, 0.001, 0.003, 0.01, 0.03, 0.1, 0.3, 1, 3});
    prometheus::Family<prometheus::Counter>& alarms = BuildCounter()
                                                          .Name("trsadapter_alarms_total")
                                                          .Help("Alarms of the certificate manager, by outcome.")
                                                          .Register(registry);
    prometheus::Family<prometheus::Counter>& alarmFailures = BuildCounter()
                                                                 .Name("trsadapter_alarm_failures_total")
                                                                 .Help("Alarms that were not accepted, by reason.")
                                                                 .Register(registry);
    prometheus::Family<prometheus::Counter>& responses = BuildCounter()
                                                             .Name("trsadapter_http_responses_total")
                                                             .Help("HTTP responses, by status code.")
                                                             .Register(registry);
    prometheus::Gauge& session = BuildGauge()
                                     .Name("trsadapter_session_active")
                                     .Help("Whether a site management client is logged in.")
                                     .Register(registry)
                                     .Add({});
    prometheus::Gauge& unit = BuildGauge()
                                  .Name("trsadapter_unit_reached")
                                  .Help("Whether the unit's network management agent answers.")
                                  .Register(registry)
                                  .Add({});
    prometheus::Gauge& log = BuildGauge()
                                 .Name("trsadapter_log_open")
                                 .Help("Whether messages and alarms are logged.")
                                 .Register(registry)
                                 .Add({});
};

Metrics::Metrics() : families_(std::make_unique<Families>()) {}

Metrics::~Metrics() = default;

void Metrics::countMessage(std::string const& kind, std::string const& result, std::chrono::duration<double> time)
{
    families_->messages.Add({{"kind", kind}, {"result", result}}).Increment();
    families_->times.Observe(time.count());
}

void Metrics::countAlarm(std::string const& failure)
{
    families_->alarms.Add({{"outcome", failure.empty() ? "accepted" : "failed"}}).Increment();
    if (!failure.empty()) {
        families_->alarmFailures.Add({{"reason", failure}}).Increment();
    }
}

void Metrics::countResponse(int status) { families_->responses.Add({{"code", std::to_string(status)}}).Increment(); }

std::string Metrics::text(State const& state)
{
    families_->session.Set(state.hasSession ? 1 : 0);
    families_->unit.Set(state.isUnitReached ? 1 : 0);
    families_->log.Set(state.isLogOpen ? 1 : 0);
    // The labels are what the unit says: there is one set of them, however often they change.
    std::vector<prometheus::MetricFamily> collected = families_->registry.Collect();
    prometheus::MetricFamily info;
    info.name = "trsadapter_unit_info";
    info.help = "1, with the unit's identity in its labels.";
    info.type = prometheus::MetricType::Gauge;
    prometheus::ClientMetric& metric = info.metric.emplace_back();
    metric.label = {{"bts_id", std::to_string(state.unit.btsId)},
                    {"public_address", state.unit.publicAddress},
                    {"transport_address", state.unit.transportAddress}};
    metric.gauge.value = 1;
    collected.push_back(std::move(info));
    return prometheus::TextSerializer().Serialize(collected);
}

} // namespace trs::adapter
