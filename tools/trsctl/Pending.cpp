#include "tools/trsctl/Pending.h"

#include "catalogue/File.h"
#include "catalogue/Json.h"
#include "catalogue/Text.h"
#include "tools/trsctl/StateDirectory.h"

#include <cctype>
#include <csignal>
#include <fcntl.h>
#include <fmt/format.h>
#include <spawn.h>
#include <system_error>
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

// Starts this program anew in a session of its own, writing to a file. 0, or the error.
int startDetached(std::vector<std::string> words, std::filesystem::path const& log)
{
    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawnattr_init(&attributes);
    ::posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    ::posix_spawn_file_actions_adddup2(&files, STDOUT_FILENO, STDERR_FILENO);
    sigset_t none;
    sigset_t all;
    ::sigemptyset(&none);
    ::sigfillset(&all);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setsigdefault(&attributes, &all);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    std::vector<char*> arguments;
    for (std::string& each : words) {
        arguments.push_back(each.data());
    }
    arguments.push_back(nullptr);
    pid_t id = -1;
    int const error = ::posix_spawn(&id, "/proc/self/exe", &files, &attributes, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&files);
    ::posix_spawnattr_destroy(&attributes);
    return error;
}

} // namespace

Pending::Pending(std::string const& unit)
{
    std::filesystem::path const directory = stateDirectory();
    base_ = directory.empty() ? directory : directory / fileName(unit);
}

std::string Pending::keep(catalogue::Value const& before) const
{
    return base_.empty() ? noPlace : write(kept(), {{"before", before}});
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
    int const error = startDetached({"trsctl", "--unit", options.unit, "--timeout", std::to_string(options.timeout),
                                     "guard", fmt::format("{:.3f}", seconds)},
                                    log());
    if (error == 0) {
        return {};
    }
    forget();
    return "no process to take the change back can be started: " + std::generic_category().message(error);
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

bool Pending::confirm() const { return !base_.empty() && ::rename(waiting().c_str(), kept().c_str()) == 0; }

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

} // namespace trs::ctl
