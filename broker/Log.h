// What programs and tests may do with the unit's log besides writing to it (platform/NmaLogHelper.h).
#pragma once

#include <string>
#include <vector>

namespace trs {

struct LogEntry {
    int severity;
    std::string text;
    std::string file; // empty, like function, and line 0 for a line without a place
    std::string function;
    int line;
};

// Lines of a greater severity number are not written to standard error; 0 for none at all. Begins at 6.
void setLogLevel(int severity);

// Keeps a copy of every line that the process logs between construction and destruction, whatever the level.
class LogCapture {
public:
    LogCapture();
    LogCapture(LogCapture const&) = delete;
    LogCapture& operator=(LogCapture const&) = delete;
    ~LogCapture();

    std::vector<LogEntry> entries() const;
    // Whether a line contains the text.
    bool contains(std::string const& text) const;
    void clear();

private:
    friend class LogWriter;

    std::vector<LogEntry> entries_;
};

} // namespace trs
