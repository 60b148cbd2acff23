#include "tools/trsctl/Complaint.h"

#include "catalogue/Json.h"
#include "tools/support/StandardStreams.h"

#include <atomic>
#include <cstdio>

namespace trs::ctl {

namespace {

std::atomic<Format> complaintFormat = Format::text;

// What an exit code stands for, and the failure of a call that has it.
std::string_view kindOf(ExitCode code)
{
    switch (code) {
    case ExitCode::usage:
        return "usage";
    case ExitCode::noSuchObject:
        return "noSuchObject";
    case ExitCode::refused:
        return "refused";
    case ExitCode::deadline:
        return "deadline";
    case ExitCode::unreachable:
        return "notConnected";
    case ExitCode::malformedReply:
        return "malformedReply";
    case ExitCode::noSuchOperation:
        return "noSuchOperation";
    default:
        return "incomplete";
    }
}

void writeError(std::string const& text) { std::fputs(text.c_str(), stderr); }

ExitCode say(std::string const& what, std::string_view kind, std::string_view carriedOut, ExitCode code)
{
    if (complaintFormat == Format::json) {
        catalogue::Value const value{
            {"error", what}, {"kind", kind}, {"carriedOut", carriedOut}, {"exitCode", static_cast<int>(code)}};
        writeError(catalogue::toJson(value, -1) + '\n');
    } else {
        writeError(tools::complaintText(what));
    }
    return code;
}

} // namespace

void setComplaintFormat(Format format) { complaintFormat = format; }

ExitCode complain(std::string const& what, ExitCode code, std::string_view carriedOut)
{
    return say(what, kindOf(code), carriedOut, code);
}

ExitCode complain(std::string const& what, CallFailure const& failure)
{
    using CarriedOut = CallFailure::CarriedOut;
    ExitCode const code = exitCodeOf(failure);
    return say(what, failure.kind == CallFailure::Kind::connectionLost ? "connectionLost" : kindOf(code),
               failure.carriedOut == CarriedOut::no    ? "no"
               : failure.carriedOut == CarriedOut::yes ? "yes"
                                                       : "unknown",
               code);
}

void passOn(catalogue::Value const& complaint) { writeError(catalogue::toJson(complaint, -1) + '\n'); }

void note(std::string const& what)
{
    writeError(complaintFormat == Format::json ? catalogue::toJson(catalogue::Value{{"note", what}}, -1) + '\n'
                                               : "note: " + tools::complaintText(what));
}

} // namespace trs::ctl
