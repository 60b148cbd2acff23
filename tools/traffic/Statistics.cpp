#include "tools/traffic/Statistics.h"

#include "tools/support/Quantiles.h"

namespace trs::traffic {

void Statistics::add(Packet const& packet, Conversation::Told const& told)
{
    if (told.value["kind"] != "reply" || !told.value.contains("operation")) {
        return;
    }
    Entry& entry = entries_[told.value["operation"].get<std::string>()];
    entry.errors += told.value["status"] != "done" || told.value.contains("wrong") ? 1U : 0U;
    entry.bytesToUnit += told.requestSize;
    entry.bytesFromUnit += packet.message.size();
    entry.durations.push_back(told.duration->count());
}

std::vector<std::string> Statistics::head()
{
    return {"operation", "calls", "errors", "p50us", "p99us", "bytesToUnit", "bytesFromUnit"};
}

std::vector<std::vector<std::string>> Statistics::rows() const
{
    std::vector<std::vector<std::string>> rows;
    for (auto const& [operation, entry] : entries_) {
        std::vector<std::string> const spread = tools::quantiles(entry.durations, {0.5, 0.99});
        rows.push_back({operation, std::to_string(entry.durations.size()), std::to_string(entry.errors), spread[0],
                        spread[1], std::to_string(entry.bytesToUnit), std::to_string(entry.bytesFromUnit)});
    }
    return rows;
}

} // namespace trs::traffic
