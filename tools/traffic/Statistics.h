// Calls, counted by operation.
#pragma once

#include "catalogue/Value.h"
#include "tools/support/Histogram.h"
#include "tools/traffic/Conversation.h"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace trs::traffic {

class Statistics {
public:
    // Counts a call with its reply; other messages are no calls.
    void add(Packet const& packet, Conversation::Told const& told);

    // A row for each operation, by name, as the head has it: how many calls and errors, the median and the 99th
    // percentile of the microseconds from request to reply, bytes in both directions.
    static std::vector<std::string> head();
    std::vector<std::vector<catalogue::Value>> rows() const;

private:
    struct Entry {
        unsigned long errors = 0;
        std::size_t bytesToUnit = 0;
        std::size_t bytesFromUnit = 0;
        tools::Histogram durations;
    };

    std::map<std::string, Entry> entries_;
};

} // namespace trs::traffic
