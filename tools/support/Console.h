// What a program does between its start and its end: one command a line from standard input, until something ends it.
#pragma once

#include "catalogue/Text.h"
#include "tools/support/SignalWatch.h"
#include "tools/support/StandardStreams.h" // as commands have something to say

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace trs::tools {

struct Command {
    std::string name;
    std::string arguments; // such as "NAME [N]": one word each; an optional one stands in brackets; "[WORD...]": any
                           // number of them
    std::string help;
    // Gets the words after the name, as many as `arguments` allows. Empty, or what is wrong with them.
    std::function<std::string(catalogue::Words const&)> run;
};

// From construction on, SIGTERM and SIGINT end run() and nothing else, as standard output does that takes no more. The
// commands `help` and one that ends the program, which `exit` and `quit` do too, are there from the start.
class Console {
public:
    // `endCommand`: the name of the command that ends the program. `hurry`, if any, is called on a thread of its own
    // when the program is to end: what run() or its caller may be waiting for then should come to its end.
    explicit Console(std::string const& endCommand, std::function<void()> hurry = nullptr);
    Console(Console const&) = delete;
    Console& operator=(Console const&) = delete;
    ~Console();

    void add(Command command);
    // Executes one command, on any thread once run() is under way. Empty, or what is wrong with it. A blank line does
    // nothing.
    std::string execute(std::string_view line);
    // The same for somebody elsewhere, whom it tells what the command lists.
    std::string execute(std::string_view line, std::string& listing);
    // Whether the calling thread executes a command for somebody elsewhere.
    static bool isForOthers();
    // Of a command: a line of what it lists, to standard output and to whoever elsewhere has it executed.
    static void list(std::string const& line);
    // Executes the commands that come, and complains about wrong ones on standard error, until one of them or a signal
    // ends the program, or the input's end when `endsWithInput`.
    void run(bool endsWithInput);
    bool isEnded() const { return isEnded_; }
    // Ends run(), from any thread.
    void end();
    // Has run() call `task` on its own thread at this interval, as far as a command leaves it the time.
    void every(std::chrono::milliseconds interval, std::function<void()> task);

private:
    void noteEnd();
    bool takeLine(std::string& line);
    void receive();
    int doTask();
    void sayHelp() const;

    std::vector<Command> commands_;
    std::string received_;
    bool isCut_ = false; // the line that is being received is too long, and its beginning was dropped
    bool isInputAtEnd_ = false;
    std::atomic<bool> isEnded_ = false; // also by a command that another thread executes
    std::mutex ending_;                 // held by end()
    int ended_;                         // becomes readable then
    std::function<void()> task_;
    std::chrono::milliseconds interval_{};
    std::chrono::steady_clock::time_point nextTask_;
    std::optional<SignalWatch> signals_;
};

} // namespace trs::tools
