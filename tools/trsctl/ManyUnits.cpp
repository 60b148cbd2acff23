#include "tools/trsctl/ManyUnits.h"

#include "broker/PrintableText.h"
#include "catalogue/Json.h"
#include "tools/support/Colour.h"
#include "tools/support/StandardStreams.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Interrupt.h"
#include "tools/trsctl/Spawn.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <fmt/format.h>
#include <list>
#include <poll.h>
#include <sstream>
#include <string_view>
#include <sys/mman.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace trs::ctl {

namespace {

constexpr std::size_t mostAtOnce = 32;
constexpr int passOnInterval = 100; // milliseconds between looks whether somebody interrupts

// A descriptor that is closed with it.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;
    ~Descriptor() { set(-1); }

    int get() const { return number_; }
    bool isOpen() const { return number_ >= 0; }
    void set(int number)
    {
        if (isOpen()) {
            ::close(number_);
        }
        number_ = number;
    }

private:
    int number_;
};

// A process for one unit, and what it says.
class UnitProcess {
public:
    explicit UnitProcess(NamedUnit const& unit) : unit_(unit) {}
    UnitProcess(UnitProcess const&) = delete;
    UnitProcess& operator=(UnitProcess const&) = delete;

    // `input`: the file that it reads as standard input. One that cannot be started is over, and has failed.
    void start(std::vector<std::string> words, std::string const& input)
    {
        words.insert(words.begin(), {"--unit", unit_.endpoint});
        Spawn spawn;
        spawn.open(STDIN_FILENO, input, O_RDONLY);
        std::array<Descriptor, 2> ends; // that it writes to
        for (std::size_t i = 0; i < streams_.size(); ++i) {
            std::array<int, 2> pipe{-1, -1};
            if (::pipe2(pipe.data(), O_CLOEXEC) != 0) {
                streams_[1].text = std::generic_category().message(errno);
                return;
            }
            streams_[i].end.set(pipe[0]);
            ends[i].set(pipe[1]);
            spawn.copy(static_cast<int>(i) + STDOUT_FILENO, pipe[1]);
        }
        streams_[1].text = spawn.start(std::move(words), id_);
    }
    void interrupt() const { ::kill(id_, SIGINT); }

    void addTo(std::vector<pollfd>& waiting) const
    {
        for (Stream const& each : streams_) {
            waiting.push_back({each.end.get(), POLLIN, 0});
        }
    }
    // Takes what there is. `isText`: whole lines of its output are said at once.
    void receive(bool isText)
    {
        for (Stream& each : streams_) {
            pollfd ready{each.end.get(), POLLIN, 0};
            std::array<char, 65536> room;
            if (!each.end.isOpen() || ::poll(&ready, 1, 0) <= 0) {
                continue;
            }
            ssize_t const count = ::read(each.end.get(), room.data(), room.size());
            if (count > 0) {
                each.text.append(room.data(), static_cast<std::size_t>(count));
            } else {
                each.end.set(-1);
            }
        }
        if (isText) {
            sayLines();
        }
    }
    bool isOver() const
    {
        return std::ranges::none_of(streams_, [](Stream const& each) { return each.end.isOpen(); });
    }
    // To be called when it is over. False when it failed.
    bool end(Format format)
    {
        constexpr int signalBase = 128; // as shells tell the signal that ended a process
        int status = 0;
        if (id_ >= 0 && ::waitpid(id_, &status, 0) == id_) {
            code_ = WIFEXITED(status) ? WEXITSTATUS(status) : signalBase + WTERMSIG(status);
        }
        if (format == Format::json) {
            tools::say(catalogue::toJson(
                {{"unit", unit_.name}, {"exitCode", code_}, {"output", valueOf(streams_[0].text)}}, -1));
        } else if (!streams_[0].text.empty()) {
            streams_[0].text += '\n';
            sayLines();
        }
        return code_ == 0;
    }
    ExitCode code() const { return static_cast<ExitCode>(code_); }
    // What it said of its failure. In JSON that is {"error", "kind", "carriedOut", "exitCode"}, and "unit".
    void complain(Format format) const
    {
        std::string what = streams_[1].text;
        what.resize(what.ends_with('\n') ? what.size() - 1 : what.size());
        catalogue::Value error = valueOf(what.substr(what.rfind('\n') + 1));
        if (format == Format::json && error.is_object()) {
            error["unit"] = unit_.name;
            passOn(error);
            return;
        }
        ctl::complain(fmt::format("{}: exit code {}{}{}", unit_.name, code_, what.empty() ? "" : ": ", what), code(),
                      "unknown");
    }

private:
    struct Stream {
        Descriptor end;
        std::string text = {};
    };

    // JSON, or lines of it as a list; else the text.
    static catalogue::Value valueOf(std::string const& text)
    {
        catalogue::Value value;
        if (text.empty() || catalogue::parseJson(text, value).empty()) {
            return text.empty() ? catalogue::Value(text) : value;
        }
        catalogue::Value list = catalogue::Value::array();
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            if (!catalogue::parseJson(line, list.emplace_back()).empty()) {
                return text;
            }
        }
        return list;
    }

    void sayLines()
    {
        std::string& text = streams_[0].text;
        for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n')) {
            tools::say(tools::coloured(escaped(unit_.name), tools::Colour::head) + ": " + text.substr(0, end));
            text.erase(0, end + 1);
        }
    }

    NamedUnit const unit_;
    std::array<Stream, 2> streams_; // its standard output and error
    pid_t id_ = -1;
    int code_ = static_cast<int>(ExitCode::unreachable); // of one that does not start
};

// All units of a command, as many at once as may be.
class UnitProcesses {
public:
    UnitProcesses(std::vector<NamedUnit> const& units, UnitsCommand const& command, std::string input)
        : units_(units), command_(command), input_(std::move(input))
    {
    }

    ExitCode run()
    {
        Interrupt const interrupt;
        for (startNext(); !running_.empty(); startNext()) {
            std::vector<pollfd> waiting;
            std::ranges::for_each(running_, [&waiting](UnitProcess const& each) { each.addTo(waiting); });
            ::poll(waiting.data(), waiting.size(), passOnInterval);
            if (Interrupt::came() && !std::exchange(isInterrupted_, true)) {
                std::ranges::for_each(running_, &UnitProcess::interrupt);
            }
            for (auto next = running_.begin(); next != running_.end();) {
                receive(next++);
            }
        }
        std::ranges::for_each(failed_, [this](UnitProcess const& each) { each.complain(command_.format); });
        return failed_.empty() ? ExitCode::good : failed_.front().code();
    }

private:
    void startNext()
    {
        while (next_ < units_.size() && running_.size() < mostAtOnce && !isInterrupted_) {
            running_.emplace_back(units_[next_++]).start(command_.words, input_);
        }
    }

    void receive(std::list<UnitProcess>::iterator process)
    {
        process->receive(command_.format != Format::json);
        if (!process->isOver()) {
            return;
        }
        bool const isGood = process->end(command_.format);
        failed_.splice(failed_.end(), running_, process);
        if (isGood) {
            failed_.pop_back();
        }
    }

    std::vector<NamedUnit> const& units_;
    UnitsCommand const& command_;
    std::string const input_;
    std::list<UnitProcess> running_;
    std::list<UnitProcess> failed_;
    std::size_t next_ = 0; // to be started
    bool isInterrupted_ = false;
};

// A file without a name that has the text.
void keepIn(Descriptor& file, std::string_view text)
{
    file.set(::memfd_create("input", MFD_CLOEXEC));
    while (!text.empty()) {
        ssize_t const count = ::write(file.get(), text.data(), text.size());
        if (count <= 0) {
            file.set(-1);
            return;
        }
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

} // namespace

ExitCode runOnUnits(std::vector<NamedUnit> const& units, UnitsCommand const& command)
{
    Descriptor input;
    if (command.input) {
        keepIn(input, *command.input);
        if (!input.isOpen()) {
            return complain("there is no room for standard input", ExitCode::outputLost);
        }
    }
    // Each process opens it anew, and reads it from its beginning.
    return UnitProcesses(units, command,
                         input.isOpen() ? fmt::format("/proc/self/fd/{}", input.get()) : std::string("/dev/null"))
        .run();
}

} // namespace trs::ctl
