#include "tools/trsctl/ManyUnits.h"

#include "broker/PrintableText.h"
#include "catalogue/Json.h"
#include "tools/support/Colour.h"
#include "tools/support/StandardStreams.h"
#include "tools/trsctl/Complaint.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <fmt/format.h>
#include <list>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace trs::ctl {

namespace {

constexpr std::size_t mostAtOnce = 32;

// A process for one unit, and what it says.
class UnitProcess {
public:
    explicit UnitProcess(NamedUnit const& unit) : unit_(unit) {}
    UnitProcess(UnitProcess const&) = delete;
    UnitProcess& operator=(UnitProcess const&) = delete;
    ~UnitProcess()
    {
        std::ranges::for_each(streams_,
                              [](Stream const& each) { each.descriptor >= 0 ? ::close(each.descriptor) : 0; });
    }

    // Empty, or why it cannot be started.
    std::string start(std::vector<std::string> words)
    {
        words.insert(words.begin(), {"trsctl", "--unit", unit_.endpoint});
        std::vector<char*> arguments;
        std::ranges::transform(words, std::back_inserter(arguments), [](std::string& each) { return each.data(); });
        arguments.push_back(nullptr);
        posix_spawn_file_actions_t files;
        posix_spawnattr_t attributes;
        ::posix_spawn_file_actions_init(&files);
        ::posix_spawnattr_init(&attributes);
        ::posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        std::array<int, 2> childs{-1, -1};
        int error = 0;
        for (std::size_t i = 0; i < streams_.size() && error == 0; ++i) {
            std::array<int, 2> ends{-1, -1};
            error = ::pipe2(ends.data(), O_CLOEXEC) == 0 ? 0 : errno;
            streams_[i].descriptor = ends[0];
            childs[i] = ends[1];
            ::posix_spawn_file_actions_adddup2(&files, childs[i], static_cast<int>(i) + STDOUT_FILENO);
        }
        sigset_t none;
        ::sigemptyset(&none);
        ::posix_spawnattr_setsigmask(&attributes, &none);
        ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
        error =
            error != 0 ? error : ::posix_spawn(&id_, "/proc/self/exe", &files, &attributes, arguments.data(), environ);
        ::posix_spawn_file_actions_destroy(&files);
        ::posix_spawnattr_destroy(&attributes);
        std::ranges::for_each(childs, [](int each) { each >= 0 ? ::close(each) : 0; });
        return error == 0 ? std::string() : std::generic_category().message(error);
    }

    void addTo(std::vector<pollfd>& waiting) const
    {
        for (Stream const& each : streams_) {
            waiting.push_back({each.descriptor, POLLIN, 0});
        }
    }
    // Takes what there is. `isText`: whole lines of its output are said at once.
    void receive(bool isText)
    {
        for (Stream& each : streams_) {
            pollfd ready{each.descriptor, POLLIN, 0};
            std::array<char, 65536> room;
            if (each.descriptor < 0 || ::poll(&ready, 1, 0) <= 0) {
                continue;
            }
            ssize_t const count = ::read(each.descriptor, room.data(), room.size());
            if (count > 0) {
                each.text.append(room.data(), static_cast<std::size_t>(count));
            } else {
                ::close(std::exchange(each.descriptor, -1));
            }
        }
        if (isText) {
            sayLines();
        }
    }
    bool isOver() const
    {
        return std::ranges::all_of(streams_, [](Stream const& each) { return each.descriptor < 0; });
    }
    // Its exit code, when it is over.
    int end(Format format)
    {
        int status = 0;
        ::waitpid(id_, &status, 0);
        int const code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        if (format == Format::json) {
            catalogue::Value output;
            if (!catalogue::parseJson(streams_[0].text, output).empty()) {
                output = streams_[0].text;
            }
            tools::say(catalogue::toJson({{"unit", unit_.name}, {"exitCode", code}, {"output", output}}, -1));
        } else if (!streams_[0].text.empty()) {
            streams_[0].text += '\n';
            sayLines();
        }
        return code;
    }
    NamedUnit const& unit() const { return unit_; }
    std::string const& complaint() const { return streams_[1].text; }

private:
    struct Stream {
        int descriptor = -1;
        std::string text = {};
    };

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
};

} // namespace

ExitCode runOnUnits(std::vector<NamedUnit> const& units, std::vector<std::string> const& words, Format format)
{
    std::list<UnitProcess> running;
    std::vector<std::string> failures;
    ExitCode first = ExitCode::good;
    auto const fail = [&](std::string const& why, ExitCode code) {
        failures.push_back(why);
        first = first == ExitCode::good ? code : first;
    };
    for (std::size_t next = 0; next < units.size() || !running.empty();) {
        while (next < units.size() && running.size() < mostAtOnce) {
            if (std::string const why = running.emplace_back(units[next]).start(words); !why.empty()) {
                fail(units[next].name + ": " + why, ExitCode::unreachable);
                running.pop_back();
            }
            ++next;
        }
        std::vector<pollfd> waiting;
        std::ranges::for_each(running, [&waiting](UnitProcess const& each) { each.addTo(waiting); });
        ::poll(waiting.data(), waiting.size(), -1);
        for (auto process = running.begin(); process != running.end();) {
            process->receive(format != Format::json);
            if (!process->isOver()) {
                ++process;
                continue;
            }
            if (int const code = process->end(format); code != 0) {
                std::string why = process->complaint();
                why.resize(why.ends_with('\n') ? why.size() - 1 : why.size());
                fail(fmt::format("{}: exit code {}{}{}", process->unit().name, code, why.empty() ? "" : ": ", why),
                     static_cast<ExitCode>(code));
            }
            process = running.erase(process);
        }
    }
    for (std::string const& each : failures) {
        complain(each, first, "unknown");
    }
    return first;
}

} // namespace trs::ctl
