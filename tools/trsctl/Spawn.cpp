#include "tools/trsctl/Spawn.h"

#include <algorithm>
#include <csignal>
#include <iterator>
#include <system_error>
#include <unistd.h>

namespace trs::ctl {

Spawn::Spawn() : files_(), attributes_()
{
    ::posix_spawn_file_actions_init(&files_);
    ::posix_spawnattr_init(&attributes_);
    sigset_t none;
    ::sigemptyset(&none);
    ::posix_spawnattr_setsigmask(&attributes_, &none);
}

Spawn::~Spawn()
{
    ::posix_spawn_file_actions_destroy(&files_);
    ::posix_spawnattr_destroy(&attributes_);
}

void Spawn::open(int descriptor, std::string const& file, int flags)
{
    constexpr mode_t owners = 0600;
    ::posix_spawn_file_actions_addopen(&files_, descriptor, file.c_str(), flags, owners);
}

void Spawn::copy(int descriptor, int from) { ::posix_spawn_file_actions_adddup2(&files_, from, descriptor); }

void Spawn::leaveSession()
{
    sigset_t all;
    ::sigfillset(&all);
    ::posix_spawnattr_setsigdefault(&attributes_, &all);
    flags_ |= POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF;
}

std::string Spawn::start(std::vector<std::string> words, pid_t& id)
{
    words.insert(words.begin(), "trsctl");
    std::vector<char*> arguments;
    std::ranges::transform(words, std::back_inserter(arguments), [](std::string& each) { return each.data(); });
    arguments.push_back(nullptr);
    ::posix_spawnattr_setflags(&attributes_, flags_);
    int const error = ::posix_spawn(&id, "/proc/self/exe", &files_, &attributes_, arguments.data(), environ);
    return error == 0 ? std::string() : std::generic_category().message(error);
}

} // namespace trs::ctl
