// Changes that can be taken back: the last one of each unit, and one that waits to be confirmed.
#pragma once

#include "catalogue/Value.h"
#include "tools/trsctl/Program.h"

#include <chrono>
#include <filesystem>
#include <string>

namespace trs::ctl {

// A file in stateDirectory() for each unit and kind. A file changes hands by being renamed, so that of a confirmation
// and the guard that takes the change back one comes first.
class Pending {
public:
    explicit Pending(std::string const& unit);

    // Keeps what the unit told before a change that is done. Empty, or why it cannot be kept.
    std::string keep(catalogue::Value const& before) const;
    // Keeps it for a change that is taken back at a time unless confirmed, and starts the process that does: it has a
    // session of its own, and survives this one. Empty, or why not.
    std::string guard(Program::Options const& options, catalogue::Value const& before,
                      std::chrono::system_clock::time_point until) const;

    // Whether a change waits to be confirmed, and until when.
    bool isWaiting() const;
    std::string until() const;
    // Makes a change that waits a kept one. False when there is none.
    bool confirm() const;
    // Takes what the unit told before the change that waits, or else before the last one. False when there is none.
    bool take(catalogue::Value& before) const;
    // The same for the guard, of the one that waits.
    bool takeWaiting(catalogue::Value& before) const;
    // Ends the guard of a change that did not begin.
    void forget() const;
    // Forgets the last change, which failed and left nothing behind: the one before is the last again.
    void forgetLast() const;

    // Where the guard writes what it does.
    std::filesystem::path log() const { return base_.string() + ".log"; }

private:
    std::filesystem::path waiting() const { return base_.string() + ".waiting"; }
    std::filesystem::path kept() const { return base_.string() + ".kept"; }
    std::filesystem::path former() const { return base_.string() + ".former"; } // before the one that is kept
    void makeFormer() const;
    bool takeFile(std::filesystem::path const& file, catalogue::Value& before) const;

    std::filesystem::path base_; // empty when there is no place for files
};

} // namespace trs::ctl
