// The gzip file stream: what it writes, whole and damaged files, and streams that are not open.
#include "adapter/ZYN_ZipStream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include <sys/resource.h>
#include <unistd.h>
#include <zlib.h>

namespace {

namespace fs = std::filesystem;

class ZipStream : public testing::Test {
protected:
    ~ZipStream() override { fs::remove(path_); }

    void setBytes(std::string const& bytes) const { std::ofstream(path_, std::ios::binary) << bytes; }
    std::string bytes() const
    {
        std::ifstream file(path_, std::ios::binary);
        return {std::istreambuf_iterator(file), {}};
    }
    char const* path() const { return path_.c_str(); }

    // What reading the whole file comes to.
    struct Outcome {
        std::string content;
        int lastCount;
        bool eof;
        friend bool operator==(Outcome const&, Outcome const&) = default;
        friend void PrintTo(Outcome const& outcome, std::ostream* out)
        {
            *out << outcome.content.size() << " bytes, count " << outcome.lastCount << ", eof " << outcome.eof;
        }
    };
    Outcome readAll(unsigned int step = 100) const
    {
        ZYN_ZipStream stream(path(), ZYN_ZipStream::in);
        std::string content;
        std::string buffer(step, '\0');
        while (stream.read(buffer.data(), step).gcount() > 0) {
            content.append(buffer, 0, static_cast<std::size_t>(stream.gcount()));
        }
        return {content, stream.gcount(), stream.eof()};
    }

    // One gzip member, made by zlib's other interface.
    static std::string gzip(std::string const& content)
    {
        z_stream deflater{};
        EXPECT_EQ(deflateInit2(&deflater, 9, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY), Z_OK);
        std::string packed(deflateBound(&deflater, content.size()), '\0');
        std::string input = content;
        deflater.next_in = reinterpret_cast<Bytef*>(input.data());
        deflater.avail_in = static_cast<uInt>(input.size());
        deflater.next_out = reinterpret_cast<Bytef*>(packed.data());
        deflater.avail_out = static_cast<uInt>(packed.size());
        EXPECT_EQ(deflate(&deflater, Z_FINISH), Z_STREAM_END);
        packed.resize(deflater.total_out);
        deflateEnd(&deflater);
        return packed;
    }

    static std::string noise(std::size_t length)
    {
        std::mt19937 random(4);
        std::string text(length, '\0');
        std::generate(text.begin(), text.end(), [&random] { return static_cast<char>(random()); });
        return text;
    }

private:
    fs::path path_ = fs::temp_directory_path() / ("zip_stream_test." + std::to_string(getpid()));
};

TEST_F(ZipStream, writesAGzipFileAtTheHighestLevel)
{
    std::string const content = "abc" + noise(300'000);
    std::string first = content.substr(0, 3);
    std::string rest = content.substr(3);
    {
        ZYN_ZipStream stream(path(), ZYN_ZipStream::out);
        ASSERT_TRUE(stream.is_open());
        stream.write(first.data(), 3).write(rest.data(), static_cast<unsigned int>(rest.size()));
    }
    std::string const file = bytes();
    EXPECT_EQ(file.substr(0, 4), std::string("\x1f\x8b\x08\0", 4));
    EXPECT_EQ(file.at(8), 2) << "the header does not say that the highest level was used";
    EXPECT_EQ(readAll(), (Outcome{content, 0, true}));
}

TEST_F(ZipStream, tellsThatWhatWasWrittenIsNotInTheFile)
{
    std::string text = noise(300'000);
    auto const length = static_cast<unsigned int>(text.size());
    ZYN_ZipStream full("/dev/full", ZYN_ZipStream::out);
    EXPECT_FALSE(full.write(text.data(), 3).fail()) << "zlib has it";
    full.close();
    EXPECT_TRUE(full.fail());
    EXPECT_TRUE(ZYN_ZipStream("/dev/full", ZYN_ZipStream::out).write(text.data(), length).fail());
    EXPECT_TRUE(ZYN_ZipStream("/nowhere/file", ZYN_ZipStream::out).write(text.data(), length).fail());

    ZYN_ZipStream good(path(), ZYN_ZipStream::out);
    good.write(text.data(), 0).write(text.data(), length).close();
    EXPECT_FALSE(good.fail());
    ZYN_ZipStream readInPart(path(), ZYN_ZipStream::in);
    readInPart.read(text.data(), 10).close();
    EXPECT_FALSE(readInPart.fail());
}

TEST_F(ZipStream, countsWhatItReads)
{
    setBytes(gzip("abc"));
    ZYN_ZipStream stream(path(), ZYN_ZipStream::in);
    char buffer[2] = {};
    EXPECT_EQ(stream.gcount(), 0);
    EXPECT_EQ(stream.read(buffer, 2).gcount(), 2);
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(stream.read(buffer, 2).gcount(), 1);
    EXPECT_EQ(stream.read(buffer, 2).gcount(), 0);
    EXPECT_TRUE(stream.eof());
    EXPECT_FALSE(stream.good());
    stream.close();
    EXPECT_EQ(stream.gcount(), 0);
    EXPECT_FALSE(stream.is_open());
    stream.close();
}

TEST_F(ZipStream, getsBytesAndThen0xff)
{
    setBytes(gzip("a\xff"));
    ZYN_ZipStream stream(path(), ZYN_ZipStream::in);
    for (auto const& [expected, atEnd] : {std::pair('a', false), {'\xff', false}, {'\xff', true}, {'\xff', true}}) {
        char c = 'x';
        EXPECT_EQ(&stream.get(c), &stream);
        EXPECT_EQ(c, expected);
        EXPECT_EQ(stream.eof(), atEnd);
    }
}

TEST_F(ZipStream, opensOnlyWhatItCanOpen)
{
    setBytes("x");
    EXPECT_TRUE(ZYN_ZipStream(path(), ZYN_ZipStream::in).is_open());
    EXPECT_FALSE(ZYN_ZipStream(path(), static_cast<ZYN_ZipStream::openmode>(2)).is_open());
    EXPECT_FALSE(ZYN_ZipStream(path(), static_cast<ZYN_ZipStream::openmode>(-1)).is_open());
    EXPECT_FALSE(ZYN_ZipStream("/nowhere/file", ZYN_ZipStream::in).is_open());
    EXPECT_FALSE(ZYN_ZipStream("/nowhere/file", ZYN_ZipStream::out).is_open());
    EXPECT_FALSE(ZYN_ZipStream(nullptr, ZYN_ZipStream::in).is_open());
    EXPECT_EQ(bytes(), "x");
}

TEST_F(ZipStream, answersWhenItIsClosedOrCannotBeRead)
{
    ZYN_ZipStream stream("/nowhere/file", ZYN_ZipStream::in);
    char c = 'x';
    EXPECT_EQ(stream.read(&c, 1).gcount(), -1);
    EXPECT_EQ(stream.write(&c, 1).get(c).eof(), false);
    EXPECT_EQ(c, '\xff');
    EXPECT_TRUE(stream.good());
    ZYN_ZipStream directory("/", ZYN_ZipStream::in);
    EXPECT_EQ(directory.read(&c, 1).gcount(), -1);
    EXPECT_FALSE(directory.eof());
    ZYN_ZipStream written(path(), ZYN_ZipStream::out);
    EXPECT_EQ(written.read(&c, 1).gcount(), -1);
}

TEST_F(ZipStream, readsMembersOneAfterTheOtherAndPlainFilesAsTheyAre)
{
    std::string const text = noise(1000);
    std::string const packed = gzip(text);
    struct {
        char const* claim;
        std::string file;
        std::string content;
    } const cases[] = {{"empty", "", ""},
                       {"plain", "hello\n", "hello\n"},
                       {"two members", packed + packed, text + text},
                       {"an empty member between two", packed + gzip("") + packed, text + text},
                       {"rubbish after the last member", packed + "rubbish", text},
                       {"zeros after the last member", packed + std::string(600, '\0'), text}};
    for (auto const& [claim, file, content] : cases) {
        setBytes(file);
        EXPECT_EQ(readAll(), (Outcome{content, 0, true})) << claim;
    }
    std::string many;
    for (int i = 0; i < 20'000; ++i) {
        many += gzip("");
    }
    setBytes(many + gzip("end"));
    EXPECT_EQ(readAll(), (Outcome{"end", 0, true}));
}

TEST_F(ZipStream, deliversNoMoreThanThereIsOfAFileCutShort)
{
    std::string const text = noise(300) + std::string(300, 'x') + noise(50);
    std::string const packed = gzip(text);
    for (std::size_t length = 2; length < packed.size(); ++length) { // with its first byte alone it is a plain file
        setBytes(packed.substr(0, length));
        Outcome const outcome = readAll();
        EXPECT_EQ(outcome, (Outcome{text.substr(0, outcome.content.size()), 0, true})) << length;
    }
    setBytes(packed.substr(0, packed.size() - 1));
    EXPECT_EQ(readAll().content, text) << "only the end of the check is missing";
}

TEST_F(ZipStream, failsOnAWrongCheckSum)
{
    std::string const text = noise(1000);
    for (std::size_t const fromEnd : {std::size_t{8}, std::size_t{5}, std::size_t{4}, std::size_t{1}}) {
        std::string packed = gzip(text);
        packed[packed.size() - fromEnd] ^= 1;
        setBytes(packed + gzip("more"));
        Outcome const outcome = readAll();
        EXPECT_EQ(outcome.lastCount, -1);
        EXPECT_FALSE(outcome.eof);
        EXPECT_EQ(outcome.content, text.substr(0, outcome.content.size()));
    }
}

TEST_F(ZipStream, readsABombInBoundedMemory)
{
    std::string const filling(1 << 20, '\0');
    std::string const member = gzip(filling);
    std::string bomb;
    constexpr int members = 256;
    for (int i = 0; i < members; ++i) {
        bomb += member;
    }
    setBytes(bomb);
    rusage before{};
    getrusage(RUSAGE_SELF, &before);
    ZYN_ZipStream stream(path(), ZYN_ZipStream::in);
    std::string buffer(1 << 16, '\0');
    std::size_t total = 0;
    while (stream.read(buffer.data(), 1 << 16).gcount() > 0) {
        total += static_cast<std::size_t>(stream.gcount());
    }
    rusage after{};
    getrusage(RUSAGE_SELF, &after);
    EXPECT_EQ(total, filling.size() * members);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 8 * 1024) << "kilobytes";
}

} // namespace
