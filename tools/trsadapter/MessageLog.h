// The adapter's compressed log: every message and alarm, as an XML document in a gzip file.
#pragma once

#include "adapter/ZYN_ZipStream.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace trs::adapter {

// May be used from any thread. docs/adapter.md has the entries.
//
// What was written to it reaches the file completely when the log is closed or begins a new file, which it also does
// when a file is full. A file that was there is kept under its name and ".1", the one before under ".2", and so on.
//
// A file that does not take what is written, as on a full disk, is logged once, and ends the log: it is not open until
// it is opened again.
class MessageLog {
public:
    static constexpr int keptFiles = 9;

    // An attribute of an entry.
    using Attribute = std::pair<char const*, std::string>;

    // `fullSize`: how much a file takes, in bytes before compression.
    MessageLog(std::string directory, std::size_t fullSize);
    MessageLog(MessageLog const&) = delete;
    MessageLog& operator=(MessageLog const&) = delete;
    ~MessageLog() { close(); }

    // Begins a file of this name, unless it is the present one. Makes the directory if need be, for this user alone.
    // Empty, or why it cannot be; what is added to the log is lost then.
    std::string open(std::string const& name);
    bool isOpen() const;
    // Adds an entry with these attributes and the present time, and `text`, if any, as its content. Of a text that
    // would take more than `most` bytes of the file, before compression, it has the beginning, and as an attribute the
    // length of the whole.
    void add(char const* element, std::vector<Attribute> const& attributes, std::string const& text = {},
             std::size_t most = 0);
    void close();
    // Where the present file is.
    std::string path() const;

    // The text of a message as it may be kept: what an XML element _password contains is left out, and so is text that
    // cannot be searched for one because it is not in an encoding that ASCII is part of.
    static std::string withoutPassword(std::string const& document);

private:
    std::string begin();
    bool end();
    void write(std::string text);
    bool check();

    std::string const directory_;
    std::size_t const fullSize_;
    mutable std::mutex mutex_;
    std::string name_;
    std::unique_ptr<ZYN_ZipStream> file_; // null while there is none
    std::size_t size_ = 0;
};

} // namespace trs::adapter
