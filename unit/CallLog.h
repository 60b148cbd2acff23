// The calls that reached the simulated unit, as JSON lines for assertions.
#pragma once

#include "broker/framing/Message.h"
#include "catalogue/File.h"

#include <atomic>
#include <chrono>
#include <mutex>
#include <string>

namespace trs::sim {

// A line for each call, whole when its reply is sent: what was called, with which arguments, and what came of it. The
// members are described in docs/trssim.md. May be used by any thread.
class CallLog {
public:
    // With times of day and durations only if `isTimed`: without them the same calls give the same lines.
    explicit CallLog(bool isTimed) : isTimed_(isTimed) {}
    CallLog(CallLog const&) = delete;
    CallLog& operator=(CallLog const&) = delete;

    // Replaces what the file holds. Empty, or why it cannot be written.
    std::string open(std::string const& file);
    bool isOpen() const { return file_.isOpen(); }
    // False once a line could not be written, which was logged then.
    bool isWhole() const { return isWhole_; }

    using Time = std::chrono::system_clock::time_point;
    struct Entry {
        ObjectAddress const& address;
        std::string_view arguments; // the bytes of the request's in-arguments
        std::string_view reply;     // the whole message
        std::string_view fault;     // that befell the call; empty: none
        Time begin;
        unsigned long unitTime; // seconds
    };
    void write(Entry const& entry);

private:
    bool const isTimed_;
    std::mutex mutex_;
    std::string name_;
    catalogue::GrowingFile file_;
    std::atomic<bool> isWhole_ = true;
    unsigned long count_ = 0;
};

} // namespace trs::sim
