// What trsctl's exit codes tell: they differ by what can be done next.
#pragma once

#include "broker/CallFailure.h"

namespace trs::ctl {

enum class ExitCode : int {
    good = 0,
    different = 1,       // what was compared is not the same
    outputLost = 1,      // what was to be written is not all there: make room
    incomplete = 1,      // notifications may be missing in what was shown: read what was watched
    usage = 2,           // correct the command line
    noSuchObject = 3,    // look for the object: `trsctl tree`
    refused = 4,         // the unit refused; ask it for something else
    deadline = 5,        // nobody knows whether it was done; look, or use --timeout
    unreachable = 6,     // no connection, or a lost one; start the unit, or use --unit or --wait
    malformedReply = 7,  // the unit does not speak as it should
    noSuchOperation = 8, // the unit has no such operation
    busy = 9,            // the unit has no thread left for the call; ask again later
};

inline ExitCode exitCodeOf(CallFailure const& failure)
{
    using Kind = CallFailure::Kind;
    switch (failure.kind) {
    case Kind::noSuchObject:
        return ExitCode::noSuchObject;
    case Kind::refused:
        return ExitCode::refused;
    case Kind::deadline:
        return ExitCode::deadline;
    case Kind::malformedReply:
        return ExitCode::malformedReply;
    case Kind::noSuchOperation:
        return ExitCode::noSuchOperation;
    case Kind::busy:
        return ExitCode::busy;
    default:
        return ExitCode::unreachable;
    }
}

} // namespace trs::ctl
