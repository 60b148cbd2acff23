#include "tools/traffic/Statistics.h"

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
    entry.durations.add(told.duration->count());
}

std::vector<std::string> Statistics::head()
{
    return {"operation", "calls", "errors", "p50us", "p99us", "bytesToUnit", "bytesFromUnit"};
}

std::vector<std::vector<catalogue::Value>> Statistics::rows() const
{
    std::vector<std::vector<catalogue::Value>> rows;
    for (auto const& [operation, entry] : entries_) {
        rows.push_back({operation, entry.durations.count(), entry.errors, entry.durations.quantile(0.5),
                        entry.durations.quantile(0.99), entry.bytesToUnit, entry.bytesFromUnit});
    }
    return rows;
}

} // namespace trs::traffic
