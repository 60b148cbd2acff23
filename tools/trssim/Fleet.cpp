#include "tools/trssim/Fleet.h"

#include "broker/transport/Endpoint.h"
#include "tools/support/Console.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace trs::sim {

namespace {

constexpr std::chrono::milliseconds lookInterval{100};

// The process of one unit: it reads no commands, and ends with the first one.
void separate()
{
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    int const nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    ::dup2(nothing, STDIN_FILENO);
    ::close(nothing);
}

class Processes {
public:
    void add(pid_t process) { running_.push_back(process); }
    bool areEnded() const { return running_.empty(); }
    int exitCode() const { return exitCode_; }

    // Looks who has ended; waits for all with `options` 0.
    void look(int options)
    {
        std::erase_if(running_, [this, options](pid_t process) {
            int status = 0;
            if (::waitpid(process, &status, options) != process) {
                return false;
            }
            if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
                exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : 1;
                std::fprintf(stderr, "a unit has ended: process %d\n", static_cast<int>(process));
            }
            return true;
        });
    }
    void endAll() const
    {
        std::ranges::for_each(running_, [](pid_t process) { ::kill(process, SIGTERM); });
    }

private:
    std::vector<pid_t> running_;
    int exitCode_ = 0;
};

} // namespace

std::string UnitNumber::endpoint(std::string const& endpoint) const
{
    std::size_t const colon = endpoint.rfind(':');
    if (number == 0) {
        return endpoint;
    }
    if (endpoint.starts_with("unix:")) {
        return file(endpoint);
    }
    long port = 0;
    catalogue::parseNumber(std::string_view(endpoint).substr(colon + 1), 0, 65535, port);
    return endpoint.substr(0, colon + 1) + std::to_string(port == 0 ? 0 : port + static_cast<long>(number) - 1);
}

std::string UnitNumber::file(std::string const& file) const
{
    return number == 0 || file.empty() ? file : file + '-' + std::to_string(number);
}

UnitNumber Fleet::begin(unsigned count, bool endsWithInput, int& exitCode)
{
    Processes processes;
    for (unsigned number = 1; number <= count; ++number) {
        pid_t const process = ::fork();
        if (process == 0) {
            separate();
            return {number};
        }
        if (process < 0) {
            std::fprintf(stderr, "unit %u cannot be started: %s\n", number,
                         std::strerror(errno)); // NOLINT(concurrency-mt-unsafe): there is no other thread
            processes.endAll();
            processes.look(0);
            exitCode = 1;
            return {};
        }
        processes.add(process);
    }
    tools::Console console("stop");
    console.every(lookInterval, [&] {
        processes.look(WNOHANG);
        if (processes.areEnded()) {
            console.end();
        }
    });
    console.run(endsWithInput);
    processes.endAll();
    processes.look(0);
    exitCode = processes.exitCode();
    return {};
}

} // namespace trs::sim
