#include "catalogue/File.h"

#include "broker/PrintableText.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace trs::catalogue {

namespace {

using Path = std::filesystem::path;

constexpr mode_t anybody = 0666; // as far as the process's mask lets them
constexpr mode_t owner = 0600;
constexpr mode_t allModes = 07777;

std::error_code lastError() { return {errno, std::generic_category()}; }

// `written`: how much of the text.
std::error_code writeAll(int descriptor, std::string_view text, std::size_t& written)
{
    for (written = 0; written < text.size();) {
        ssize_t const count = ::write(descriptor, text.data() + written, text.size() - written);
        if (count < 0 && errno != EINTR) {
            return lastError();
        }
        written += count < 0 ? 0 : static_cast<std::size_t>(count);
    }
    return {};
}

// All that is left. `name` is quoted when it is a file's.
std::string readAll(std::FILE* file, std::string const& name, std::string& text)
{
    text.clear();
    std::array<char, 65536> room;
    while (std::size_t const count = std::fread(room.data(), 1, room.size(), file)) {
        text.append(room.data(), count);
        if (text.size() > mostOfAFile) {
            return name + " cannot be read: it has more than " + std::to_string(mostOfAFile >> 20) + " MiB";
        }
    }
    return std::ferror(file) == 0 ? "" : name + " cannot be read: " + lastError().message();
}

std::string inQuotes(std::string const& path) { return '\'' + printable(path) + '\''; }

// The file that a symbolic link leads to, whether it is there or not.
Path targetOf(Path path)
{
    constexpr int mostLinks = 40; // as the system has it
    std::error_code error;
    for (int i = 0; i < mostLinks && std::filesystem::is_symlink(path, error); ++i) {
        path = path.parent_path() / std::filesystem::read_symlink(path, error);
    }
    return path;
}

// A file beside the one that it is to replace, gone again unless it does.
class Replacement {
public:
    explicit Replacement(Path target)
        : target_(std::move(target)), directory_(target_.has_parent_path() ? target_.parent_path() : Path("."))
    {
    }
    Replacement(Replacement const&) = delete;
    Replacement& operator=(Replacement const&) = delete;
    ~Replacement()
    {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
        if (!made_.empty()) {
            ::unlink(made_.c_str());
        }
    }

    // `old`: the file that is there, if there is one.
    std::error_code create(std::optional<struct stat> const& old)
    {
        do {
            std::uint64_t number = 0;
            if (::getentropy(&number, sizeof number) != 0) {
                return lastError();
            }
            made_ = directory_ / (".trs-" + std::to_string(number));
            descriptor_ = ::open(made_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, old ? owner : anybody);
        } while (descriptor_ < 0 && errno == EEXIST);
        if (descriptor_ < 0) {
            std::error_code const error = lastError();
            made_.clear();
            return error;
        }
        bool const isAsOld = !old || (::fchown(descriptor_, old->st_uid, old->st_gid) == 0 &&
                                      ::fchmod(descriptor_, old->st_mode & allModes) == 0);
        return isAsOld ? std::error_code() : lastError();
    }
    std::error_code fill(std::string_view text) const
    {
        std::size_t written = 0;
        std::error_code const error = writeAll(descriptor_, text, written);
        return error || ::fsync(descriptor_) == 0 ? error : lastError();
    }
    std::error_code replace()
    {
        if (::close(std::exchange(descriptor_, -1)) != 0 || ::rename(made_.c_str(), target_.c_str()) != 0) {
            return lastError();
        }
        made_.clear();
        int const directory = ::open(directory_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        bool const isSynced = directory < 0 || ::fsync(directory) == 0 || errno == EINVAL; // not all systems can
        std::error_code const error = isSynced ? std::error_code() : lastError();
        if (directory >= 0) {
            ::close(directory);
        }
        return error;
    }

private:
    Path const target_;
    Path const directory_;
    Path made_; // empty: nothing is to be removed
    int descriptor_ = -1;
};

std::error_code writeDirectly(std::string const& path, std::string_view text)
{
    int const descriptor = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return lastError();
    }
    std::size_t written = 0;
    std::error_code const error = writeAll(descriptor, text, written);
    bool const isClosed = ::close(descriptor) == 0;
    return error || isClosed ? error : lastError();
}

} // namespace

std::string readWholeFile(std::string const& path, std::string& text)
{
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> const file(std::fopen(path.c_str(), "rbe"), std::fclose);
    return file != nullptr ? readAll(file.get(), inQuotes(path), text)
                           : inQuotes(path) + " cannot be read: " + lastError().message();
}

std::string readStandardInput(std::string& text) { return readAll(stdin, "standard input", text); }

std::error_code writeWholeFile(std::string const& path, std::string_view text)
{
    std::optional<struct stat> old;
    if (struct stat found{}; ::stat(path.c_str(), &found) == 0) {
        old = found;
    } else if (errno != ENOENT) {
        return lastError();
    }
    if (old && !S_ISREG(old->st_mode)) {
        return writeDirectly(path, text);
    }
    if (old && ::access(path.c_str(), W_OK) != 0) {
        return lastError();
    }
    Replacement made(targetOf(path));
    std::error_code error = made.create(old);
    error = error ? error : made.fill(text);
    return error ? error : made.replace();
}

bool isFull(std::error_code const& error)
{
    int const number = error.value();
    return number == ENOSPC || number == EDQUOT || number == EFBIG || number == EIO;
}

std::string whyNotWritten(std::string const& path, std::error_code const& error)
{
    return inQuotes(path) + " cannot be written: " + error.message();
}

GrowingFile::~GrowingFile()
{
    if (isOpen()) {
        ::close(descriptor_);
    }
}

std::error_code GrowingFile::open(std::string const& path)
{
    int const opened = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, anybody);
    if (opened < 0) {
        return lastError();
    }
    if (int const before = std::exchange(descriptor_, opened); before >= 0) {
        ::close(before);
    }
    return {};
}

std::error_code GrowingFile::append(std::string_view part)
{
    std::size_t written = 0;
    std::error_code const error = writeAll(descriptor_, part, written);
    if (struct stat now{}; error && written != 0 && ::fstat(descriptor_, &now) == 0 && S_ISREG(now.st_mode)) {
        static_cast<void>(::ftruncate(descriptor_, now.st_size - static_cast<off_t>(written)) == 0);
    }
    return error;
}

} // namespace trs::catalogue
