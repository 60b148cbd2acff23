#include "bench/support/Processes.h"

#include <sched.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr char const* thisProgram = "/proc/self/exe";

[[noreturn]] void runAs(std::vector<std::string> const& arguments)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::vector<char*> pointers{const_cast<char*>("two_process")};
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
        std::perror("two_process: no server process");
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
    char first;
    if (read(output_, &first, 1) != 1) {
        std::fprintf(stderr, "two_process: a server process did not start\n");
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
