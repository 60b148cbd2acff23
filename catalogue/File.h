// Files that are read or written as a whole, and those that grow by whole parts.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <system_error>

namespace trs::catalogue {

constexpr std::size_t mostOfAFile = 64U << 20; // bytes that are read of one

// The content of a file. Empty, or why it cannot be had: "'x' cannot be read: Is a directory".
std::string readWholeFile(std::string const& path, std::string& text);
// The same for what is left of standard input.
std::string readStandardInput(std::string& text);

// Replaces what a file holds as a whole or not at all, on the disk too: whatever fails, the file is as it was, and
// there is no other one; only when syncing the directory fails, in the end, nobody knows which one the disk has. A
// symbolic link is followed, and the mode and the owner of a file that was there are kept.
// What is no regular file, such as a device or a pipe, is written to.
std::error_code writeWholeFile(std::string const& path, std::string_view text);

// Whether the error says that there is no room, and not that the file cannot be written at all.
bool isFull(std::error_code const& error);
// "'x' cannot be written: No space left on device".
std::string whyNotWritten(std::string const& path, std::error_code const& error);

// A file that holds nothing but whole parts. What was appended is in it at once.
class GrowingFile {
public:
    GrowingFile() = default;
    GrowingFile(GrowingFile const&) = delete;
    GrowingFile& operator=(GrowingFile const&) = delete;
    ~GrowingFile();

    // Begins anew with an empty one.
    std::error_code open(std::string const& path);
    bool isOpen() const { return descriptor_ >= 0; }
    // What a part that does not fit has left in a regular file is cut off again.
    std::error_code append(std::string_view part);

private:
    int descriptor_ = -1;
};

} // namespace trs::catalogue
