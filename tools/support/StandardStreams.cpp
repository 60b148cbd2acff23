#include "tools/support/StandardStreams.h"

#include "broker/PrintableText.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <mutex>
#include <poll.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace trs::tools {

namespace {

struct Output {
    std::mutex mutex;
    std::atomic<bool> isGone = false;
    std::atomic<bool> isLost = false;
    std::function<void()> listener;

    void lose(int error)
    {
        isGone = true;
        isLost = error != EPIPE;
        if (isLost) {
            std::fprintf(stderr, "standard output: %s\n", std::generic_category().message(error).c_str());
        }
        if (auto const told = std::exchange(listener, nullptr)) {
            told();
        }
    }
};

// Never destroyed: threads may write until the end.
Output& output()
{
    static Output& only = *new Output;
    return only;
}

// 0, or the error.
int writeAll(std::string_view text)
{
    while (!text.empty()) {
        ssize_t const count = ::write(STDOUT_FILENO, text.data(), text.size());
        if (count >= 0) {
            text.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno == EAGAIN) { // whoever else has this terminal or pipe has it so
            pollfd waiting{STDOUT_FILENO, POLLOUT, 0};
            ::poll(&waiting, 1, -1);
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

// Opens the missing ones of the three, input and output the wrong way round.
bool openMissingStreams()
{
    static constexpr int modes[] = {O_WRONLY, O_RDONLY, O_WRONLY};
    constexpr int streams[] = {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};
    return std::ranges::all_of(streams, [](int stream) {
        return ::fcntl(stream, F_GETFD) >= 0 || ::open("/dev/null", modes[stream]) == stream;
    });
}

} // namespace

int runProgram(std::function<int()> const& body)
{
    if (!openMissingStreams()) {
        return std::perror("/dev/null"), outputLost;
    }
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
    int const code = body();
    return code == 0 && isOutputLost() ? outputLost : code;
}

void say(std::string const& line) { print(line + '\n'); }

void print(std::string_view text)
{
    std::lock_guard const lock(output().mutex);
    if (output().isGone) {
        return;
    }
    if (int const error = writeAll(text); error != 0) {
        output().lose(error);
    }
}

bool isOutputGone() { return output().isGone; }

bool isOutputLost() { return output().isLost; }

void onOutputGone(std::function<void()> listener)
{
    std::lock_guard const lock(output().mutex);
    if (output().isGone && listener) {
        listener();
    } else {
        output().listener = std::move(listener);
    }
}

std::string complaintText(std::string_view text)
{
    constexpr std::string_view backslash = "\\x5c";
    std::string lines;
    for (;;) {
        std::size_t const length = std::min(text.find('\n'), text.size());
        std::string const line = escaped(text.substr(0, length));
        std::size_t begin = 0;
        for (std::size_t at = line.find(backslash); at != std::string::npos; at = line.find(backslash, begin)) {
            lines.append(line, begin, at - begin).push_back('\\');
            begin = at + backslash.size();
        }
        lines.append(line, begin).push_back('\n');
        if (length == text.size()) {
            return lines;
        }
        text.remove_prefix(length + 1);
    }
}

} // namespace trs::tools
