#include "tools/trsadapter/Metrics.h"

#include "broker/Broker.h"
#include "catalogue/MessageText.h"

#include <prometheus/counter.h>
#include <prometheus/gauge.h>
#include <prometheus/histogram.h>
#include <prometheus/registry.h>
#include <prometheus/text_serializer.h>

#include <limits>

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

namespace {

using prometheus::MetricType;

prometheus::MetricFamily& add(std::vector<prometheus::MetricFamily>& families, char const* name, char const* help,
                              MetricType type)
{
    prometheus::MetricFamily& family = families.emplace_back();
    family.name = name;
    family.help = help;
    family.type = type;
    return family;
}

void addServer(std::vector<prometheus::MetricFamily>& families, ServerCounters const& server)
{
    auto const addGauge = [&families](char const* name, char const* help, std::size_t value) {
        add(families, name, help, MetricType::Gauge).metric.emplace_back().gauge.value = static_cast<double>(value);
    };
    addGauge("trsadapter_server_connections", "Connections to the objects here.", server.connections);
    addGauge("trsadapter_server_threads", "Threads that serve them.", server.threads);
    addGauge("trsadapter_server_queued", "Connections whose requests wait for a thread.", server.queued);
    addGauge("trsadapter_server_executing", "Threads that execute requests.", server.executing);
    addGauge("trsadapter_server_waiting", "Threads that wait for other processes in the middle of requests.",
             server.waiting);
    auto& calls = add(families, "trsadapter_server_calls_total", "Requests answered, by outcome.", MetricType::Counter);
    for (std::size_t outcome = 0; outcome < ServerCounters::outcomes; ++outcome) {
        prometheus::ClientMetric& metric = calls.metric.emplace_back();
        metric.label = {{"outcome", catalogue::nameOf(static_cast<ReplyStatus>(outcome))}};
        metric.counter.value = static_cast<double>(server.calls[outcome]);
    }
    auto& bytes = add(families, "trsadapter_server_bytes_total", "Bytes of messages.", MetricType::Counter);
    for (auto const& [direction, count] : {std::pair("in", server.bytesIn), std::pair("out", server.bytesOut)}) {
        prometheus::ClientMetric& metric = bytes.metric.emplace_back();
        metric.label = {{"direction", direction}};
        metric.counter.value = static_cast<double>(count);
    }
    prometheus::ClientMetric::Histogram& times =
        add(families, "trsadapter_server_call_seconds", "Time from having a request to its answer, of one in eight.",
            MetricType::Histogram)
            .metric.emplace_back()
            .histogram;
    times.sample_sum = std::chrono::duration<double>(server.timed).count();
    for (std::size_t bucket = 0; bucket < server.times.size(); ++bucket) {
        times.sample_count += server.times[bucket];
        bool const isBounded = bucket < ServerCounters::bounds.size();
        double const bound = isBounded ? std::chrono::duration<double>(ServerCounters::bounds[bucket]).count()
                                       : std::numeric_limits<double>::infinity();
        times.bucket.push_back({times.sample_count, bound});
    }
}

} // namespace

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
    addServer(collected, Broker::instance().serverCounters());
    return prometheus::TextSerializer().Serialize(collected);
}

} // namespace trs::adapter
