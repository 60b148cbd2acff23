// Programs that a test starts, talks to and ends.
#pragma once

#include "tests/support/Sockets.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <optional>
#include <sys/prctl.h>
#include <sys/wait.h>

namespace support {

// A child process with its standard streams in the test's hands. It is killed with this object, or with the thread
// that started it.
class ChildProcess {
public:
    enum class Stream { output, error };

    explicit ChildProcess(std::string const& program, std::vector<std::string> const& arguments = {})
    {
        std::vector<char*> pointers{const_cast<char*>(program.c_str())};
        for (std::string const& argument : arguments) {
            pointers.push_back(const_cast<char*>(argument.c_str()));
        }
        pointers.push_back(nullptr);

        Descriptor const childsInput = connect(input_);
        Descriptor const childsOutput = connect(streams_[0].descriptor);
        Descriptor const childsError = connect(streams_[1].descriptor);
        pid_t const parent = ::getpid();
        id_ = ::fork();
        if (id_ == 0) { // nothing but system calls: other threads may have held locks
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            ::dup2(childsInput.get(), STDIN_FILENO);
            ::dup2(childsOutput.get(), STDOUT_FILENO);
            ::dup2(childsError.get(), STDERR_FILENO);
            if (::getppid() == parent) {
                ::execv(pointers.front(), pointers.data());
            }
            ::_exit(127);
        }
        EXPECT_GT(id_, 0) << program;
    }
    ChildProcess(ChildProcess const&) = delete;
    ChildProcess& operator=(ChildProcess const&) = delete;
    ~ChildProcess()
    {
        signal(SIGKILL);
        if (id_ > 0) {
            ::waitpid(id_, nullptr, 0);
        }
    }

    // The next line that it writes; none when the stream has ended. A failure when neither comes in time.
    std::optional<std::string> readLine(Stream stream = Stream::output, std::chrono::milliseconds limit = patience)
    {
        auto const end = std::chrono::steady_clock::now() + limit;
        Source& source = sourceOf(stream);
        for (;;) {
            std::size_t const length = source.text.find('\n');
            if (length != std::string::npos || (source.isAtEnd && !source.text.empty())) {
                std::string line = source.text.substr(0, length);
                source.text.erase(0, length == std::string::npos ? length : length + 1);
                return line;
            }
            if (source.isAtEnd) {
                return std::nullopt;
            }
            if (!receive(end)) {
                ADD_FAILURE() << "no line came in time";
                return std::nullopt;
            }
        }
    }
    // Reads lines up to the first that contains the text. The line; a failure when there is none, which tells the
    // lines that came.
    std::string readUntil(std::string const& text, Stream stream = Stream::output)
    {
        std::string seen;
        while (std::optional<std::string> line = readLine(stream)) {
            if (line->find(text) != std::string::npos) {
                return *line;
            }
            seen += "\n    " + *line;
        }
        ADD_FAILURE() << "no line contains '" << text << "'; there came:" << seen;
        return {};
    }
    // All that it still writes until the stream ends.
    std::vector<std::string> readRest(Stream stream = Stream::output)
    {
        std::vector<std::string> lines;
        while (std::optional<std::string> line = readLine(stream)) {
            lines.push_back(*line);
        }
        return lines;
    }

    // False when it has closed its input.
    bool write(std::string const& text)
    {
        std::size_t sent = 0;
        while (sent < text.size()) {
            ssize_t const count = ::send(input_.get(), text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
            if (count <= 0) {
                return false;
            }
            sent += static_cast<std::size_t>(count);
        }
        return true;
    }
    bool writeLine(std::string const& line) { return write(line + '\n'); }
    void closeInput() { input_.reset(); }

    pid_t id() const { return id_; }
    void signal(int number) const
    {
        if (id_ > 0) {
            ::kill(id_, number);
        }
    }
    // Its exit code, or 128 and the signal that ended it; -1 and a failure when it does not end in time. What it wrote
    // can still be read afterwards.
    int waitForExit(std::chrono::milliseconds limit = patience)
    {
        // Its streams end when it does, unless it has children of its own that keep them open.
        auto const end = std::chrono::steady_clock::now() + limit;
        while (receive(end)) {
        }
        for (;;) {
            int status = 0;
            pid_t const ended = ::waitpid(id_, &status, WNOHANG);
            if (ended == id_) {
                id_ = -1;
                return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            }
            if (ended < 0 || std::chrono::steady_clock::now() >= end) {
                ADD_FAILURE() << "the process did not end";
                return -1;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

private:
    struct Source {
        Descriptor descriptor;
        std::string text; // what was not read as lines yet
        bool isAtEnd = false;
    };

    // Sockets and not pipes, because writing to one whose reader is gone need not raise a signal. The child's end.
    static Descriptor connect(Descriptor& own)
    {
        int ends[2];
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        own = Descriptor(ends[0]);
        return Descriptor(ends[1]);
    }
    Source& sourceOf(Stream stream) { return streams_[stream == Stream::output ? 0 : 1]; }

    // Takes what comes next on either stream, so that the child never waits for a reader. False when nothing came
    // until `end`, or can come any more.
    bool receive(std::chrono::steady_clock::time_point end)
    {
        std::array<pollfd, 2> waiting{};
        for (std::size_t i = 0; i < streams_.size(); ++i) {
            waiting[i] = {streams_[i].isAtEnd ? -1 : streams_[i].descriptor.get(), POLLIN, 0};
        }
        if (streams_[0].isAtEnd && streams_[1].isAtEnd) {
            return false;
        }
        auto const left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        if (::poll(waiting.data(), waiting.size(), std::max(0, static_cast<int>(left.count()))) <= 0) {
            return false;
        }
        for (std::size_t i = 0; i < streams_.size(); ++i) {
            if (waiting[i].revents != 0) {
                std::array<char, 4096> room;
                ssize_t const count = ::read(waiting[i].fd, room.data(), room.size());
                streams_[i].isAtEnd = count <= 0;
                streams_[i].text.append(room.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
            }
        }
        return true;
    }

    Descriptor input_;
    std::array<Source, 2> streams_;
    pid_t id_ = -1;
};

} // namespace support
