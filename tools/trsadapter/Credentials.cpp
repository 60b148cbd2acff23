#include "tools/trsadapter/Credentials.h"

#include "adapter/ZYN_StringUtils.h"
#include "broker/PrintableText.h"
#include "platform/NmaLogHelper.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <crypt.h>
#include <cstring>
#include <fcntl.h>
#include <fmt/format.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace trs::adapter {

namespace {

constexpr off_t largestFile = 1 << 20;

class File {
public:
    explicit File(std::string const& path) : descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
    File(File const&) = delete;
    File& operator=(File const&) = delete;
    ~File()
    {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }

    // Empty, or why this is no file to trust.
    std::string check() const
    {
        struct stat status {};
        if (descriptor_ < 0 || ::fstat(descriptor_, &status) != 0) {
            return std::strerror(errno); // NOLINT(concurrency-mt-unsafe): the C library's is thread-safe
        }
        if (!S_ISREG(status.st_mode)) {
            return "it is not a regular file";
        }
        if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
            return fmt::format("its mode is {:04o} and must be 0600", status.st_mode & static_cast<unsigned>(ALLPERMS));
        }
        if (status.st_uid != ::geteuid() && status.st_uid != 0) {
            return fmt::format("it belongs to user {}", status.st_uid);
        }
        return status.st_size > largestFile ? "it is larger than 1 MiB" : std::string();
    }

    std::string content() const
    {
        std::string text;
        std::array<char, 4096> buffer;
        for (ssize_t count = 0; (count = ::read(descriptor_, buffer.data(), buffer.size())) > 0;) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
        }
        return text;
    }

private:
    int descriptor_;
};

// The old methods are not enough: any two letters begin a hash of the oldest one, as those of a plain password do.
bool isHash(std::string const& text)
{
    int const verdict = ::crypt_checksalt(text.c_str());
    return verdict == CRYPT_SALT_OK || verdict == CRYPT_SALT_TOO_CHEAP;
}

// The hash of the password with the settings of `hash`; empty when there is none.
std::string hashOf(std::string const& password, std::string const& hash)
{
    auto const room = std::make_unique<crypt_data>();
    char const* const result = ::crypt_rn(password.c_str(), hash.c_str(), room.get(), sizeof(crypt_data));
    std::string copy = result != nullptr ? result : "";
    explicit_bzero(room.get(), sizeof(crypt_data));
    return copy;
}

// The method of a hash and its cost: what stands before the salt.
std::string_view settingOf(std::string_view hash)
{
    constexpr std::string_view rounds = "rounds=";
    constexpr std::size_t scryptCost = 11; // letters, without an end
    std::size_t const method = std::min(hash.find('$', 1), hash.size() - 1) + 1;
    std::string_view const name = hash.substr(0, method);
    if (name == "$7$") {
        return hash.substr(0, method + scryptCost);
    }
    bool const hasDefaultCost = name == "$6$" && !hash.substr(method).starts_with(rounds);
    return hasDefaultCost ? name : hash.substr(0, hash.find('$', method));
}

// In a time that does not tell where the texts differ.
bool areEqual(std::string const& a, std::string const& b)
{
    if (a.size() != b.size()) {
        return false;
    }
    unsigned difference = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        difference |= static_cast<unsigned char>(a[i]) ^ static_cast<unsigned>(static_cast<unsigned char>(b[i]));
    }
    return difference == 0;
}

} // namespace

std::string Credentials::read(Hashes& hashes) const
{
    File const file(path_);
    std::string const place = "credentials " + printable(path_);
    if (std::string const why = file.check(); !why.empty()) {
        return place + ": " + why;
    }
    std::vector<std::string> lines;
    ZYN_StringUtils::split(file.content(), lines, "\n");
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::string line = lines[i];
        ZYN_StringUtils::strip(line);
        if (line.empty() || line.front() == '#') {
            continue;
        }
        std::string const at = place + ", line " + std::to_string(i + 1) + ": ";
        std::size_t const colon = line.find(':');
        if (colon == std::string::npos || colon == 0) {
            return at + "it is not NAME:HASH";
        }
        std::string const name = line.substr(0, colon);
        if (!isHash(line.substr(colon + 1))) {
            return at + "user '" + printable(name) + "' has no hash of crypt(5), or a weak one";
        }
        if (!hashes.emplace(name, line.substr(colon + 1)).second) {
            return at + "user '" + printable(name) + "' is there twice";
        }
    }
    return hashes.empty() ? place + ": it has no user" : std::string();
}

std::string Credentials::check() const
{
    Hashes hashes;
    return read(hashes);
}

bool Credentials::accepts(std::string const& user, std::string const& password) const
{
    Hashes hashes;
    if (std::string const why = read(hashes); !why.empty()) {
        NmaLogHelper(3, __FILE__, __func__, __LINE__).message("%s", why.c_str());
        return false;
    }
    // The user's own hash, and one of each other cost: the time tells neither who exists nor whose hash is cheap.
    auto const found = hashes.find(user);
    std::map<std::string_view, std::string const*> compared;
    if (found != hashes.end()) {
        compared.emplace(settingOf(found->second), &found->second);
    }
    for (auto const& [name, hash] : hashes) {
        compared.emplace(settingOf(hash), &hash);
    }
    bool isRight = false;
    for (auto const& [setting, hash] : compared) {
        bool const isEqual = areEqual(hashOf(password, *hash), *hash);
        isRight = isRight || (isEqual && found != hashes.end() && hash == &found->second);
    }
    // A hash is of the password up to its first NUL byte.
    bool const isComplete = password.find('\0') == std::string::npos && !password.empty();
    return isRight && isComplete;
}

} // namespace trs::adapter
