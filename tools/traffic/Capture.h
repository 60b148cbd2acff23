// Messages in a file that packet analysers read: pcapng (draft-ietf-opsawg-pcapng), each message as an exported PDU for
// the dissector "trsman".
#pragma once

#include "catalogue/File.h"
#include "tools/traffic/Traffic.h"

#include <iosfwd>
#include <string>

namespace trs::traffic {

// What is written is in the file at once.
class CaptureWriter {
public:
    // Replaces what the file holds. Empty, or why it cannot be written.
    std::string open(std::string const& file);
    // What does not fit leaves no trace: the file ends with the last packet that did.
    std::error_code write(Packet const& packet);

private:
    catalogue::GrowingFile file_;
};

class CaptureReader {
public:
    explicit CaptureReader(std::istream& stream) : stream_(stream) {}
    // The next packet; false at the end, or when something is wrong, which wrong() tells.
    bool read(Packet& packet);
    std::string const& wrong() const { return wrong_; }

private:
    bool readBlock(std::uint32_t& type, std::string& body);
    bool fail(std::string why);

    std::istream& stream_;
    bool isBegun_ = false;
    std::string wrong_;
};

// Has something done with what a file holds, or standard input when its name is "-", until the end or until `act` has
// had enough. Empty, or what is wrong.
std::string readCapture(std::string const& file, Traffic::Act const& act);

} // namespace trs::traffic
