#include "platform/TipprmiStream.h"

#include <array>
#include <new>
#include <utility>

namespace {

constexpr std::size_t leastBlock = 512;
constexpr std::size_t greatestKeptBlock = 65536;

struct Block {
    unsigned char* bytes;
    std::size_t capacity;
};

// The blocks that a thread keeps for its next streams. Trivially destructible, so that a stream with static storage
// that goes after its thread's other thread-local objects still finds it.
struct KeptBlocks {
    std::array<Block, 4> blocks;
    std::size_t count;
    bool isClosed;
};
thread_local KeptBlocks kept{};

void freeBlock(Block const& block) { ::operator delete(block.bytes, block.capacity); }

struct Closer {
    ~Closer()
    {
        kept.isClosed = true;
        while (kept.count > 0) {
            freeBlock(kept.blocks[--kept.count]);
        }
    }
};

Block takeBlock(std::size_t capacity)
{
    for (std::size_t i = kept.count; i-- > 0;) {
        if (kept.blocks[i].capacity >= capacity) {
            Block const block = kept.blocks[i];
            kept.blocks[i] = kept.blocks[--kept.count];
            return block;
        }
    }
    return {static_cast<unsigned char*>(::operator new(capacity)), capacity};
}

void keepBlock(Block const& block)
{
    if (kept.isClosed || block.capacity > greatestKeptBlock) {
        freeBlock(block);
        return;
    }
    thread_local Closer const closer;
    static_cast<void>(closer);
    if (kept.count < kept.blocks.size()) {
        kept.blocks[kept.count++] = block;
        return;
    }
    // Four small blocks must not keep a large one out for good: the thread would allocate for every long message.
    Block* smallest = kept.blocks.data();
    for (Block& candidate : kept.blocks) {
        smallest = candidate.capacity < smallest->capacity ? &candidate : smallest;
    }
    Block const unkept = smallest->capacity < block.capacity ? std::exchange(*smallest, block) : block;
    freeBlock(unkept);
}

} // namespace

TipprmiStream::TipprmiStream(int size) noexcept
{
    // The hint is not worth a block before the content is there: most streams end up short.
    static_cast<void>(size);
}

TipprmiStream::TipprmiStream(TipprmiStream const& other) : TipprmiStream(0) { *this = other; }

TipprmiStream& TipprmiStream::operator=(TipprmiStream const& other)
{
    if (this != &other) {
        clear();
        if (other.size_ != 0) {
            std::memcpy(extend(other.size_), other.buffer_, other.size_);
        }
        origin_ = other.origin_;
        isExclusive_ = other.isExclusive_;
    }
    return *this;
}

TipprmiStream::~TipprmiStream()
{
    if (buffer_ != inline_) {
        keepBlock({buffer_, capacity_});
    }
}

void TipprmiStream::marshall(void const* data, int length)
{
    if (length > 0) {
        auto const count = static_cast<std::size_t>(length);
        std::memcpy(extend(count), data, count);
    }
}

void TipprmiStream::unmarshall(void* data, int length)
{
    if (length < 0) {
        fail();
        return;
    }
    auto const count = static_cast<std::size_t>(length);
    unsigned char const* const place = take(count);
    if (place != nullptr && count != 0) {
        std::memcpy(data, place, count);
    }
}

void TipprmiStream::grow(std::size_t length)
{
    std::size_t capacity = capacity_ < leastBlock / 2 ? leastBlock : capacity_ * 2;
    if (capacity < size_ + length) {
        capacity = size_ + length;
    }
    Block const block = takeBlock(capacity);
    std::memcpy(block.bytes, buffer_, size_);
    if (buffer_ != inline_) {
        keepBlock({buffer_, capacity_});
    }
    buffer_ = block.bytes;
    capacity_ = block.capacity;
}
