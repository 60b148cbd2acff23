#include "bench/support/Processes.h"

#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace {

constexpr char const* thisProgram = "/proc/self/exe";

[[noreturn]] void runAs(std::vector<std::string> const& arguments)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::vector<char*> pointers{program_invocation_short_name};
    for (std::string const& argument : arguments) {
        pointers.push_back(const_cast<char*>(argument.c_str()));
    }
    pointers.push_back(nullptr);
    execv(thisProgram, pointers.data());
    std::perror("execv");
    _exit(127);
}

} // namespace

bench::ServerProcess::ServerProcess(std::vector<std::string> const& arguments)
{
    int output[2];
    if (pipe(output) != 0 || (id_ = fork()) < 0) {
        std::perror("no server process");
        std::exit(1);
    }
    if (id_ == 0) {
        dup2(output[1], STDOUT_FILENO);
        close(output[0]);
        close(output[1]);
        runAs(arguments);
    }
    close(output[1]);
    output_ = output[0];
    char next = 0;
    while (read(output_, &next, 1) == 1 && next != '\n') {
        line_ += next;
    }
    if (next != '\n') {
        std::fprintf(stderr, "%s: a server process did not start\n", program_invocation_short_name);
        std::exit(1);
    }
}

bench::ServerProcess::~ServerProcess()
{
    kill(id_, SIGKILL);
    waitpid(id_, nullptr, 0);
    close(output_);
}

void bench::ServerProcess::pause() const
{
    kill(id_, SIGSTOP);
    waitpid(id_, nullptr, WUNTRACED);
}

void bench::ServerProcess::resume() const { kill(id_, SIGCONT); }

bench::Usage bench::usageOf(pid_t process)
{
    Usage usage{};
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("Threads:")) {
            usage.threads = std::atol(line.c_str() + 8);
        } else if (line.starts_with("VmRSS:")) {
            usage.kibibytes = std::atol(line.c_str() + 6);
        }
    }
    return usage;
}

long bench::allowManyDescriptors()
{
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
    getrlimit(RLIMIT_NOFILE, &limit);
    return static_cast<long>(limit.rlim_cur);
}

int bench::runAgain(std::vector<std::string> const& arguments)
{
    pid_t const id = fork();
    if (id == 0) {
        runAs(arguments);
    }
    int status;
    if (id < 0 || waitpid(id, &status, 0) != id || !WIFEXITED(status)) {
        return -1;
    }
    return WEXITSTATUS(status);
}

void bench::useOneProcessor()
{
    cpu_set_t allowed;
    sched_getaffinity(0, sizeof allowed, &allowed);
    std::size_t last = CPU_SETSIZE - 1;
    while (last > 0 && !CPU_ISSET(last, &allowed)) {
        --last;
    }
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(last, &one);
    sched_setaffinity(0, sizeof one, &one);
}

int bench::processors()
{
    cpu_set_t allowed;
    sched_getaffinity(0, sizeof allowed, &allowed);
    return CPU_COUNT(&allowed);
}
