// This program anew, in a process of its own.
#pragma once

#include <spawn.h>
#include <string>
#include <sys/types.h>
#include <vector>

namespace trs::ctl {

// How it is to be started. All signals reach it.
class Spawn {
public:
    Spawn();
    Spawn(Spawn const&) = delete;
    Spawn& operator=(Spawn const&) = delete;
    ~Spawn();

    // Has one of its descriptors lead to a file, which it opens, or to where one of this process leads.
    void open(int descriptor, std::string const& file, int flags);
    void copy(int descriptor, int from);
    // Has it be in a session of its own, with no signal ignored, so that the loss of this one does not end it.
    void leaveSession();

    // Starts it with these words, the program's name not among them. Empty, or why it cannot be started.
    std::string start(std::vector<std::string> words, pid_t& id);

private:
    posix_spawn_file_actions_t files_;
    posix_spawnattr_t attributes_;
    short flags_ = POSIX_SPAWN_SETSIGMASK;
};

} // namespace trs::ctl
