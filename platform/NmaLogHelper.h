// The unit's logging.
#pragma once

#include <string>

#if defined(__GNUC__)
#define TRSMAN_PRINTF(text, first) __attribute__((format(printf, text, first)))
#else
#define TRSMAN_PRINTF(text, first)
#endif

// One log line: severity 3 error, 4 warning, 6 information, and the place that writes it.
class BaseNmaLogHelper {
public:
    BaseNmaLogHelper(int severity, char const* file, char const* function, int line)
        : severity_(severity), file_(file), function_(function), line_(line)
    {
    }
    // Writes the line; `format` is printf's.
    void message(char const* format, ...) const TRSMAN_PRINTF(2, 3);

private:
    int severity_;
    char const* file_;
    char const* function_;
    int line_;
};

class NmaLogHelper : public BaseNmaLogHelper {
public:
    using BaseNmaLogHelper::BaseNmaLogHelper;
};

// The text that printf would print.
std::string LogMakeString(char const* format, ...) TRSMAN_PRINTF(1, 2);
// Writes a text as a log line without a place.
void LogDispatch(int severity, std::string const& text);
