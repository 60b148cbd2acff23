#include "tools/support/Console.h"

#include "broker/PrintableText.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace trs::tools {

namespace {

constexpr std::size_t longestLine = 4096;

// What the command that this thread executes for somebody elsewhere lists; null: for those who read standard output.
constinit thread_local std::string* listed = nullptr;

std::string usageOf(Command const& command)
{
    return command.arguments.empty() ? command.name : command.name + ' ' + command.arguments;
}

} // namespace

Console::Console(std::string const& endCommand, std::function<void()> hurry)
    : ended_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    signals_.emplace(std::initializer_list<int>{SIGTERM, SIGINT}, [this, hurry = std::move(hurry)] {
        noteEnd();
        if (hurry) {
            hurry();
        }
    });
    add({"help", "", "lists the commands", [this](catalogue::Words const&) {
             sayHelp();
             return std::string();
         }});
    for (std::string const& name : {endCommand, std::string("exit"), std::string("quit")}) {
        add({name, "", name == endCommand ? "ends the program" : "the same", [this](catalogue::Words const&) {
                 end();
                 return std::string();
             }});
    }
    onOutputGone([this] { end(); });
}

Console::~Console()
{
    onOutputGone(nullptr);
    {
        std::lock_guard const lock(ending_); // another thread's command may be about to return from end()
    }
    signals_.reset();
    ::close(ended_);
}

void Console::noteEnd()
{
    isEnded_ = true;
    ::eventfd_write(ended_, 1);
}

void Console::end()
{
    std::lock_guard const lock(ending_);
    noteEnd();
    signals_->raise();
}

void Console::add(Command command) { commands_.push_back(std::move(command)); }

std::string Console::execute(std::string_view line)
{
    catalogue::Words words;
    if (std::string wrong = catalogue::splitWords(line, words); !wrong.empty() || words.empty()) {
        return wrong;
    }
    auto const command = std::find_if(commands_.begin(), commands_.end(),
                                      [&](Command const& candidate) { return candidate.name == words.front(); });
    if (command == commands_.end()) {
        return "'" + printable(words.front()) + "' is no command; help lists them";
    }
    words.erase(words.begin());

    catalogue::Words expected;
    catalogue::splitWords(command->arguments, expected);
    auto const required =
        std::count_if(expected.begin(), expected.end(), [](std::string const& word) { return word.front() != '['; });
    bool const takesAny = !expected.empty() && expected.back().ends_with("...]");
    if (words.size() > expected.size() && !takesAny) {
        return command->name + ": '" + printable(words[expected.size()]) +
               "' is one word too many: " + usageOf(*command);
    }
    if (words.size() < static_cast<std::size_t>(required)) {
        return command->name + ": " + expected[words.size()] + " is missing: " + usageOf(*command);
    }
    std::string const wrong = command->run(words);
    return wrong.empty() ? wrong : command->name + ": " + wrong;
}

std::string Console::execute(std::string_view line, std::string& listing)
{
    listed = &listing;
    std::string wrong = execute(line);
    listed = nullptr;
    return wrong;
}

bool Console::isForOthers() { return listed != nullptr; }

void Console::list(std::string const& line)
{
    say(line);
    if (listed != nullptr) {
        (*listed += line) += '\n';
    }
}

void Console::sayHelp() const
{
    std::size_t width = 0;
    for (Command const& command : commands_) {
        width = std::max(width, usageOf(command).size());
    }
    for (Command const& command : commands_) {
        std::string usage = usageOf(command);
        usage.resize(width + 2, ' ');
        list("  " + usage + command.help);
    }
}

void Console::run(bool endsWithInput)
{
    while (!isEnded_) {
        std::string line;
        if (!takeLine(line)) {
            isEnded_ = isInputAtEnd_ && endsWithInput;
            if (!isEnded_) {
                receive();
            }
        } else if (std::string const wrong = execute(line); !wrong.empty()) {
            std::fputs(complaintText(wrong).c_str(), stderr);
        }
    }
}

// The next line among what was received. One that is too long is not executed, not even in part.
bool Console::takeLine(std::string& line)
{
    for (;;) {
        std::size_t const length = received_.find('\n');
        if (length == std::string::npos) {
            if (received_.size() > longestLine) {
                isCut_ = true;
                received_.clear();
            }
            return false;
        }
        line = received_.substr(0, length);
        received_.erase(0, length + 1);
        if (!isCut_ && length <= longestLine) {
            return true;
        }
        isCut_ = false;
        std::fprintf(stderr, "a line of more than %zu bytes is not executed\n", longestLine);
    }
}

void Console::every(std::chrono::milliseconds interval, std::function<void()> task)
{
    interval_ = interval;
    task_ = std::move(task);
    nextTask_ = std::chrono::steady_clock::now() + interval;
}

// Does the task when it is time. How long to wait for the next time, in milliseconds; -1 when there is no task.
int Console::doTask()
{
    if (!task_) {
        return -1;
    }
    auto const now = std::chrono::steady_clock::now();
    if (now >= nextTask_) {
        task_();
        nextTask_ = std::chrono::steady_clock::now() + interval_;
    }
    auto const left = nextTask_ - std::chrono::steady_clock::now();
    return static_cast<int>(std::max(std::chrono::ceil<std::chrono::milliseconds>(left).count(), std::int64_t{0}));
}

// Waits for the end or for input.
void Console::receive()
{
    std::array<pollfd, 2> waiting{{{ended_, POLLIN, 0}, {isInputAtEnd_ ? -1 : STDIN_FILENO, POLLIN, 0}}};
    if (::poll(waiting.data(), waiting.size(), doTask()) <= 0) {
        return;
    }
    if (waiting[0].revents != 0) {
        return;
    }
    std::array<char, 4096> room;
    ssize_t const count = ::read(STDIN_FILENO, room.data(), room.size());
    if (count > 0) {
        received_.append(room.data(), static_cast<std::size_t>(count));
        return;
    }
    isInputAtEnd_ = true;
    received_ += received_.empty() && !isCut_ ? "" : "\n"; // the last line may come without its end
}

} // namespace trs::tools
