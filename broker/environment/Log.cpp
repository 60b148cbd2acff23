#include "broker/Log.h"

#include "platform/NmaLogHelper.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <mutex>

#include <spdlog/logger.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/stdout_sinks.h>

namespace trs {

namespace {

spdlog::level::level_enum levelOf(int severity)
{
    switch (severity) {
    case 4:
    case 5:
        return spdlog::level::warn;
    case 6:
        return spdlog::level::info;
    default:
        return severity < 4 ? spdlog::level::err : spdlog::level::debug;
    }
}

// " (file:line function)", or nothing for a line without a place.
class PlaceFlag final : public spdlog::custom_flag_formatter {
public:
    void format(spdlog::details::log_msg const& message, std::tm const&, spdlog::memory_buf_t& to) override
    {
        if (message.source.empty()) {
            return;
        }
        std::string_view file = message.source.filename;
        file.remove_prefix(file.rfind('/') + 1);
        fmt::format_to(std::back_inserter(to), " ({}:{} {})", file, message.source.line,
                       message.source.funcname != nullptr ? message.source.funcname : "");
    }
    std::unique_ptr<custom_flag_formatter> clone() const override { return std::make_unique<PlaceFlag>(); }
};

TRSMAN_PRINTF(1, 0)
std::string formatted(char const* format, std::va_list arguments)
{
    std::va_list again;
    va_copy(again, arguments);
    std::array<char, 512> buffer;
    int const length = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    std::string text;
    if (length > 0 && static_cast<std::size_t>(length) < buffer.size()) {
        text.assign(buffer.data(), static_cast<std::size_t>(length));
    } else if (length > 0) {
        text.resize(static_cast<std::size_t>(length) + 1);
        std::vsnprintf(text.data(), text.size(), format, again);
        text.pop_back();
    }
    va_end(again);
    return text;
}

} // namespace

// Where all lines go.
class LogWriter {
public:
    // Never destroyed: the process logs until its last static object is gone.
    static LogWriter& instance()
    {
        static LogWriter& writer = *new LogWriter;
        return writer;
    }

    void setLevel(int severity) { level_.store(severity, std::memory_order_relaxed); }
    void write(int severity, spdlog::source_loc const& place, std::string const& text)
    {
        if (captureCount_.load(std::memory_order_relaxed) != 0) {
            keep(severity, place, text);
        }
        if (severity <= level_.load(std::memory_order_relaxed)) {
            logger_.log(place, levelOf(severity), spdlog::string_view_t(text.data(), text.size()));
        }
    }

    void add(LogCapture& capture)
    {
        std::lock_guard const lock(mutex_);
        captures_.push_back(&capture);
        captureCount_.store(captures_.size(), std::memory_order_relaxed);
    }
    void remove(LogCapture& capture)
    {
        std::lock_guard const lock(mutex_);
        std::erase(captures_, &capture);
        captureCount_.store(captures_.size(), std::memory_order_relaxed);
    }
    std::vector<LogEntry> entries(LogCapture const& capture)
    {
        std::lock_guard const lock(mutex_);
        return capture.entries_;
    }
    void clear(LogCapture& capture)
    {
        std::lock_guard const lock(mutex_);
        capture.entries_.clear();
    }

private:
    LogWriter() : logger_("unit", std::make_shared<spdlog::sinks::stderr_sink_mt>())
    {
        auto formatter = std::make_unique<spdlog::pattern_formatter>();
        formatter->add_flag<PlaceFlag>('*').set_pattern("%Y-%m-%d %H:%M:%S.%e %l: %v%*");
        logger_.set_formatter(std::move(formatter));
        logger_.set_level(spdlog::level::trace);
    }

    void keep(int severity, spdlog::source_loc const& place, std::string const& text)
    {
        std::lock_guard const lock(mutex_);
        for (LogCapture* const capture : captures_) {
            capture->entries_.push_back({severity, text, place.filename != nullptr ? place.filename : "",
                                         place.funcname != nullptr ? place.funcname : "", place.line});
        }
    }

    spdlog::logger logger_;
    std::atomic<int> level_ = 6;
    std::atomic<std::size_t> captureCount_ = 0;
    std::mutex mutex_;
    std::vector<LogCapture*> captures_;
};

void setLogLevel(int severity) { LogWriter::instance().setLevel(severity); }

LogCapture::LogCapture() { LogWriter::instance().add(*this); }
LogCapture::~LogCapture() { LogWriter::instance().remove(*this); }
std::vector<LogEntry> LogCapture::entries() const { return LogWriter::instance().entries(*this); }
void LogCapture::clear() { LogWriter::instance().clear(*this); }

bool LogCapture::contains(std::string const& text) const
{
    std::vector<LogEntry> const all = entries();
    return std::any_of(all.begin(), all.end(),
                       [&text](LogEntry const& entry) { return entry.text.find(text) != std::string::npos; });
}

} // namespace trs

void BaseNmaLogHelper::message(char const* format, ...) const
{
    std::va_list arguments;
    va_start(arguments, format);
    std::string const text = trs::formatted(format, arguments);
    va_end(arguments);
    trs::LogWriter::instance().write(severity_, spdlog::source_loc(file_, line_, function_), text);
}

std::string LogMakeString(char const* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    std::string text = trs::formatted(format, arguments);
    va_end(arguments);
    return text;
}

void LogDispatch(int severity, std::string const& text)
{
    trs::LogWriter::instance().write(severity, spdlog::source_loc(), text);
}
