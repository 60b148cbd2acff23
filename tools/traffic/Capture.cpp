#include "tools/traffic/Capture.h"

#include "broker/PrintableText.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace trs::traffic {

namespace {

// Blocks and options of the format, in the byte order of this machine.
constexpr std::uint32_t sectionHeader = 0x0a0d0d0a;
constexpr std::uint32_t interfaceDescription = 1;
constexpr std::uint32_t enhancedPacket = 6;
constexpr std::uint32_t byteOrderMagic = 0x1a2b3c4d;
constexpr std::uint16_t exportedPdu = 252;  // the link type
constexpr std::uint16_t timeResolution = 9; // an interface's option: powers of 1/10 s
constexpr std::uint16_t packetFlags = 2;
constexpr std::uint32_t greatestBlock = 4U << 20;

// Tags of an exported PDU, in network byte order.
constexpr std::uint16_t dissectorName = 12;
constexpr std::uint16_t sourcePort = 25;
constexpr std::uint16_t destinationPort = 26;

template <class T>
void append(std::string& bytes, T value)
{
    std::array<char, sizeof value> raw{};
    std::memcpy(raw.data(), &value, sizeof value);
    bytes.append(raw.data(), raw.size());
}

template <class T>
T take(std::string_view bytes, std::size_t place)
{
    T value{};
    std::memcpy(&value, bytes.data() + place, sizeof value);
    return value;
}

void appendBig(std::string& bytes, std::uint32_t value, int size)
{
    for (int shift = (size - 1) * 8; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(value >> shift);
    }
}

std::uint32_t takeBig(std::string_view bytes, std::size_t place, std::size_t size)
{
    std::uint32_t value = 0;
    for (std::size_t i = place; i < place + size; ++i) {
        value = value << 8 | static_cast<unsigned char>(bytes[i]);
    }
    return value;
}

void pad(std::string& bytes) { bytes.append((4 - bytes.size() % 4) % 4, '\0'); }

void appendTag(std::string& bytes, std::uint16_t tag, std::string const& value)
{
    appendBig(bytes, tag, 2);
    appendBig(bytes, static_cast<std::uint32_t>(value.size()), 2);
    bytes += value;
}

std::string portOf(std::uint32_t number)
{
    std::string bytes;
    appendBig(bytes, number, 4);
    return bytes;
}

std::string block(std::uint32_t type, std::string body)
{
    pad(body);
    std::string bytes;
    auto const length = static_cast<std::uint32_t>(body.size() + 12);
    append(bytes, type);
    append(bytes, length);
    bytes += body;
    append(bytes, length);
    return bytes;
}

std::string beginning()
{
    std::string section;
    append(section, byteOrderMagic);
    append(section, std::uint16_t{1});
    append(section, std::uint16_t{0});
    append(section, std::int64_t{-1}); // its length is not known
    std::string interface;
    append(interface, exportedPdu);
    append(interface, std::uint16_t{0});
    append(interface, std::uint32_t{0}); // packets are not cut
    append(interface, timeResolution);
    append(interface, std::uint16_t{1});
    interface += '\x09'; // nanoseconds
    pad(interface);
    append(interface, std::uint32_t{0}); // the end of the options
    return block(sectionHeader, section) + block(interfaceDescription, interface);
}

// The connection stands as the port of the side that called.
std::string pdu(Packet const& packet)
{
    std::string bytes;
    appendTag(bytes, dissectorName, std::string("trsman\0\0", 8));
    bool const isToUnit = packet.direction == Direction::toUnit;
    appendTag(bytes, sourcePort, portOf(isToUnit ? packet.connection : 0));
    appendTag(bytes, destinationPort, portOf(isToUnit ? 0 : packet.connection));
    appendTag(bytes, 0, "");
    return bytes + packet.message;
}

// Takes the tags off; false when there is something else.
bool readPdu(std::string_view bytes, Packet& packet)
{
    std::uint32_t source = 0;
    std::uint32_t destination = 0;
    for (std::size_t place = 0; place + 4 <= bytes.size();) {
        auto const tag = takeBig(bytes, place, 2);
        auto const length = takeBig(bytes, place + 2, 2);
        place += 4;
        if (bytes.size() - place < length) {
            return false;
        }
        if (tag == 0) {
            packet.direction = source != 0 ? Direction::toUnit : Direction::fromUnit;
            packet.connection = source != 0 ? source : destination;
            packet.message = bytes.substr(place);
            return true;
        }
        source = tag == sourcePort && length == 4 ? takeBig(bytes, place, 4) : source;
        destination = tag == destinationPort && length == 4 ? takeBig(bytes, place, 4) : destination;
        place += length;
    }
    return false;
}

} // namespace

std::string CaptureWriter::open(std::string const& file)
{
    std::error_code error = file_.open(file);
    error = error ? error : file_.append(beginning());
    return error ? catalogue::whyNotWritten(file, error) : std::string();
}

std::error_code CaptureWriter::write(Packet const& packet)
{
    std::string const data = pdu(packet);
    auto const time = static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(packet.time.time_since_epoch()).count());
    std::string body;
    append(body, std::uint32_t{0}); // the interface
    append(body, static_cast<std::uint32_t>(time >> 32));
    append(body, static_cast<std::uint32_t>(time));
    append(body, static_cast<std::uint32_t>(data.size()));
    append(body, static_cast<std::uint32_t>(data.size()));
    body += data;
    pad(body);
    append(body, packetFlags);
    append(body, std::uint16_t{4});
    append(body, std::uint32_t{packet.direction == Direction::fromUnit ? 1U : 2U}); // inbound, outbound
    append(body, std::uint32_t{0});
    return file_.append(block(enhancedPacket, body));
}

bool CaptureReader::fail(std::string why)
{
    wrong_ = std::move(why);
    return false;
}

bool CaptureReader::readBlock(std::uint32_t& type, std::string& body)
{
    std::array<char, 8> head{};
    stream_.read(head.data(), head.size());
    if (stream_.gcount() == 0 && isBegun_) {
        return false; // the end
    }
    std::string_view const view(head.data(), head.size());
    type = take<std::uint32_t>(view, 0);
    auto const length = take<std::uint32_t>(view, 4);
    if (stream_.gcount() != static_cast<std::streamsize>(head.size())) {
        return fail(isBegun_ ? "the file ends in the middle of a block" : "this is no capture file");
    }
    if (!isBegun_ && type != sectionHeader) {
        return fail("this is no capture file");
    }
    if (length < 12 || length % 4 != 0 || length > greatestBlock) {
        return fail("a block of " + std::to_string(length) + " bytes cannot be");
    }
    body.resize(length - head.size());
    stream_.read(body.data(), static_cast<std::streamsize>(body.size()));
    if (stream_.gcount() != static_cast<std::streamsize>(body.size())) {
        return fail("the file ends in the middle of a block");
    }
    body.resize(body.size() - 4); // the length once more
    if (!isBegun_ && (body.size() < 4 || take<std::uint32_t>(body, 0) != byteOrderMagic)) {
        return fail("the file was written in another byte order");
    }
    isBegun_ = true;
    return true;
}

bool CaptureReader::read(Packet& packet)
{
    std::uint32_t type = 0;
    std::string body;
    while (wrong_.empty() && readBlock(type, body)) {
        if (type != enhancedPacket) {
            continue;
        }
        constexpr std::size_t headSize = 20;
        std::size_t const length = body.size() >= headSize ? take<std::uint32_t>(body, 12) : 0;
        if (body.size() < headSize || body.size() - headSize < length ||
            !readPdu(std::string_view(body).substr(headSize, length), packet)) {
            return fail("a packet is not one of a unit");
        }
        auto const time = std::uint64_t{take<std::uint32_t>(body, 4)} << 32 | take<std::uint32_t>(body, 8);
        if (time > INT64_MAX) {
            return fail("a packet's time of " + std::to_string(time) + " ns is after the year 2262");
        }
        packet.time = Conversation::Time(std::chrono::duration_cast<Conversation::Time::duration>(
            std::chrono::nanoseconds(static_cast<std::int64_t>(time))));
        return true;
    }
    return false;
}

std::string readCapture(std::string const& file, Traffic::Act const& act)
{
    std::string const name = file == "-" ? "standard input" : '\'' + printable(file) + '\'';
    std::ifstream opened;
    if (file != "-") {
        opened.open(file, std::ios::binary);
        std::error_code error(errno, std::generic_category());
        bool const isDirectory = std::filesystem::is_directory(file); // which can be opened
        if (!opened || isDirectory) {
            error = isDirectory ? std::make_error_code(std::errc::is_a_directory) : error;
            return name + " cannot be read: " + error.message();
        }
    }
    CaptureReader reader(file == "-" ? std::cin : opened);
    Traffic traffic(act);
    for (Packet packet; reader.read(packet) && traffic.take(packet);) {
    }
    if (file == "-" && std::ferror(stdin) != 0) {
        return name + " cannot be read: " + std::error_code(errno, std::generic_category()).message();
    }
    return reader.wrong().empty() ? std::string() : name + ": " + reader.wrong();
}

} // namespace trs::traffic
