#include "tools/traffic/Statistics.h"

#include <algorithm>
#include <fmt/format.h>

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
        std::vector<std::int64_t> durations = entry.durations;
        std::ranges::sort(durations);
        auto const quantile = [&durations](double share) {
            auto const place = static_cast<std::size_t>(share * static_cast<double>(durations.size() - 1));
            return fmt::format("{:.1f}", static_cast<double>(durations[place]) / 1000);
        };
        rows.push_back({operation, std::to_string(durations.size()), std::to_string(entry.errors), quantile(0.5),
                        quantile(0.99), std::to_string(entry.bytesToUnit), std::to_string(entry.bytesFromUnit)});
    }
    return rows;
}

} // namespace trs::traffic
