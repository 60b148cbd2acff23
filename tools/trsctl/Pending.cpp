#include "tools/trsctl/Pending.h"

#include "catalogue/File.h"
#include "catalogue/Json.h"
#include "catalogue/Text.h"
#include "tools/trsctl/Spawn.h"
#include "tools/trsctl/StateDirectory.h"

#include <cctype>
#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

namespace trs::ctl {

namespace {

constexpr char const* noPlace = "there is no place for what trsctl must remember: neither $XDG_STATE_HOME nor $HOME";

// An endpoint as a part of a file's name; no two are the same.
std::string fileName(std::string const& unit)
{
    std::string name;
    for (char const each : unit) {
        auto const byte = static_cast<unsigned char>(each);
        name +=
            std::isalnum(byte) != 0 || each == '-' || each == '.' ? std::string(1, each) : fmt::format("_{:02x}", byte);
    }
    return name;
}

std::string write(std::filesystem::path const& file, catalogue::Value const& value)
{
    std::error_code const error = catalogue::writeWholeFile(file.string(), catalogue::toJson(value, -1) + '\n');
    return error ? catalogue::whyNotWritten(file.string(), error) : std::string();
}

} // namespace

Pending::Pending(std::string const& unit)
{
    std::filesystem::path const directory = stateDirectory();
    base_ = directory.empty() ? directory : directory / fileName(unit);
}

std::string Pending::keep(catalogue::Value const& before) const
{
    if (base_.empty()) {
        return noPlace;
    }
    makeFormer();
    return write(kept(), {{"before", before}});
}

std::string Pending::guard(Program::Options const& options, catalogue::Value const& before,
                           std::chrono::system_clock::time_point until) const
{
    if (base_.empty()) {
        return noPlace;
    }
    if (std::string why = write(waiting(), {{"until", catalogue::timestamp(until)}, {"before", before}});
        !why.empty()) {
        return why;
    }
    auto const seconds = std::chrono::duration<double>(until - std::chrono::system_clock::now()).count();
    Spawn guard;
    guard.leaveSession();
    guard.open(STDIN_FILENO, "/dev/null", O_RDONLY);
    guard.open(STDOUT_FILENO, log().string(), O_WRONLY | O_CREAT | O_APPEND);
    guard.copy(STDERR_FILENO, STDOUT_FILENO);
    pid_t id = -1;
    std::string const why = guard.start(
        {"--unit", options.unit, "--timeout", std::to_string(options.timeout), "guard", fmt::format("{:.3f}", seconds)},
        id);
    if (why.empty()) {
        return {};
    }
    forget();
    return "no process to take the change back can be started: " + why;
}

bool Pending::isWaiting() const
{
    std::error_code error;
    return !base_.empty() && std::filesystem::exists(waiting(), error);
}

std::string Pending::until() const
{
    std::string text;
    catalogue::Value value;
    bool const isRead = catalogue::readWholeFile(waiting().string(), text).empty() &&
                        catalogue::parseJson(text, value).empty() && value.is_object();
    return isRead ? value.value("until", "") : std::string();
}

bool Pending::confirm() const
{
    if (!isWaiting()) {
        return false;
    }
    makeFormer();
    bool const isKept = ::rename(waiting().c_str(), kept().c_str()) == 0;
    if (!isKept) {
        forgetLast();
    }
    return isKept;
}

bool Pending::take(catalogue::Value& before) const { return takeWaiting(before) || takeFile(kept(), before); }

bool Pending::takeWaiting(catalogue::Value& before) const { return takeFile(waiting(), before); }

bool Pending::takeFile(std::filesystem::path const& file, catalogue::Value& before) const
{
    std::filesystem::path const taken = base_.string() + '.' + std::to_string(::getpid()) + ".taken";
    if (base_.empty() || ::rename(file.c_str(), taken.c_str()) != 0) {
        return false;
    }
    std::string text;
    catalogue::Value value;
    bool const isRead = catalogue::readWholeFile(taken.string(), text).empty() &&
                        catalogue::parseJson(text, value).empty() && value.is_object() && value.contains("before");
    if (isRead) {
        before = std::move(value["before"]);
    }
    ::unlink(taken.c_str());
    return isRead;
}

void Pending::forget() const { ::unlink(waiting().c_str()); }

void Pending::forgetLast() const
{
    if (::rename(former().c_str(), kept().c_str()) != 0) {
        ::unlink(kept().c_str());
    }
}

void Pending::makeFormer() const
{
    if (::rename(kept().c_str(), former().c_str()) != 0) {
        ::unlink(former().c_str());
    }
}

} // namespace trs::ctl
