// The byte stream that requests are written into and replies are read from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

class TreflectORB;

// No message, and so nothing in one, is longer than this many bytes.
inline constexpr std::size_t TIPPRMI_MAX_MESSAGE = 1048576;

// Values stand back to back in network byte order, without tags, names or padding. Reading never runs past the
// end: a read that cannot be satisfied writes nothing, records an unmarshalling failure, and every later read
// fails too, so that a reader may go on to its end and ask once.
//
// Short content lives inside the object; longer content in a block that is handed from stream to stream of the
// same thread, so that a call allocates nothing once its thread is warm.
class TipprmiStream {
public:
    // An empty stream. `size` is the expected number of bytes, a hint only; 100 is this system's custom.
    explicit TipprmiStream(int size) noexcept;
    TipprmiStream(TipprmiStream const& other);
    // Replaces the content by a copy of the other's, to be read from its start. Self-assignment does nothing.
    TipprmiStream& operator=(TipprmiStream const& other);
    ~TipprmiStream();

    // Appends `length` bytes.
    void marshall(void const* data, int length);
    // Takes the next `length` bytes, or records an unmarshalling failure and leaves `data` untouched.
    void unmarshall(void* data, int length);

    // Appends `length` bytes for the caller to fill; valid until the next append.
    unsigned char* extend(std::size_t length)
    {
        if (capacity_ - size_ < length) {
            grow(length);
        }
        unsigned char* const place = buffer_ + size_;
        size_ += length;
        return place;
    }
    // Takes the next `length` bytes in place; null, with a failure recorded, when there are fewer.
    unsigned char const* take(std::size_t length)
    {
        if (failed_ || size_ - position_ < length) {
            failed_ = true;
            return nullptr;
        }
        unsigned char const* const place = buffer_ + position_;
        position_ += length;
        return place;
    }
    // Cuts the content to its first `length` bytes.
    void truncate(std::size_t length) { size_ = length < size_ ? length : size_; }
    // Places the reader `offset` bytes after the start and forgets a recorded failure.
    void rewind(std::size_t offset = 0)
    {
        position_ = offset < size_ ? offset : size_;
        failed_ = false;
    }
    // Back to an empty stream; the storage is kept.
    void clear()
    {
        size_ = position_ = 0;
        failed_ = false;
    }
    // Records an unmarshalling failure that the reader of a value found, such as a count that cannot be true.
    void fail() { failed_ = true; }

    unsigned char* data() { return buffer_; }
    unsigned char const* data() const { return buffer_; }
    std::size_t size() const { return size_; }
    // Room for this many bytes in all before storage must grow.
    std::size_t capacity() const { return capacity_; }
    // Bytes that have not been read.
    std::size_t available() const { return size_ - position_; }

    // Whether a read could not be satisfied since the stream was made or rewound.
    bool hasUnmarshallingFailed() const;
    // Logs, at severity 4, that the reply of operation `opIndex` of class `classId` could not be read.
    void printUnmarshallError(unsigned long classId, unsigned long opIndex) const;

    // The broker that the content came from, which object references in it are relative to; null: this process.
    // References from an exclusive origin lead to objects there and nowhere else; from any other, to wherever the
    // object is found, there first.
    TreflectORB const* origin() const { return origin_; }
    bool isOriginExclusive() const { return isExclusive_; }
    void setOrigin(TreflectORB const* origin, bool isExclusive)
    {
        origin_ = origin;
        isExclusive_ = isExclusive;
    }

private:
    static constexpr std::size_t inlineCapacity = 136;

    void grow(std::size_t length);

    unsigned char* buffer_ = inline_;
    std::size_t size_ = 0;
    std::size_t position_ = 0;
    std::size_t capacity_ = inlineCapacity;
    TreflectORB const* origin_ = nullptr;
    bool isExclusive_ = false;
    bool failed_ = false;
    unsigned char inline_[inlineCapacity];
};
