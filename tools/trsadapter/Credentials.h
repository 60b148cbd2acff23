// Who may log in: an operator's file of names and password hashes.
#pragma once

#include <map>
#include <string>

namespace trs::adapter {

// The file has a line for each user, "NAME:HASH", with a hash of crypt(5), and not by a method that
// is called legacy there; blank lines and lines that begin with # are
// skipped. It is read anew for every login, so that a change takes effect at once. A file that its owner shares, with
// any permission for group or others, is refused, and so is one of another user's than this process's or root.
class Credentials {
public:
    explicit Credentials(std::string path) : path_(std::move(path)) {}

    // Empty, or why nobody can log in: the file, the line and what is wrong with it.
    std::string check() const;
    // Whether the password is that of the user. Whoever asks, and for whatever name, it takes the time of one hash for
    // every method and cost that the file has. False for every user when the file cannot be used, which is logged.
    bool accepts(std::string const& user, std::string const& password) const;

private:
    using Hashes = std::map<std::string, std::string, std::less<>>;

    std::string read(Hashes& hashes) const;

    std::string path_;
};

} // namespace trs::adapter
