// Files that are replaced as a whole: what is on the disk, and when.
#include "catalogue/File.h"

#include <gmock/gmock.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace {

std::vector<std::string> synced; // the files, by their names at that time
std::size_t syncsThatSucceed = 0;

} // namespace

// Takes the place of the C library's, for the code that is linked into this program.
extern "C" int fsync(int descriptor) // NOLINT(readability-inconsistent-declaration-parameter-name): its is reserved
{
    std::array<char, 4096> name{};
    std::string const link = "/proc/self/fd/" + std::to_string(descriptor);
    ssize_t const length = ::readlink(link.c_str(), name.data(), name.size());
    synced.emplace_back(name.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    if (synced.size() > syncsThatSucceed) {
        errno = EIO;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

namespace {

namespace fs = std::filesystem;
using trs::catalogue::writeWholeFile;

class WholeFile : public testing::Test {
protected:
    WholeFile()
    {
        char name[] = "/tmp/trsman-test-XXXXXX";
        directory = ::mkdtemp(name);
        synced.clear();
        syncsThatSucceed = 10;
        std::ofstream(file()) << "old";
    }
    ~WholeFile() override { fs::remove_all(directory); }

    std::string file() const { return directory + "/file"; }
    std::string content() const
    {
        std::ifstream stream(file());
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    struct stat status() const
    {
        struct stat found {};
        EXPECT_EQ(::stat(file().c_str(), &found), 0);
        return found;
    }
    void give(uid_t user, gid_t group, mode_t mode) const
    {
        ASSERT_EQ(::chown(file().c_str(), user, group), 0);
        ASSERT_EQ(::chmod(file().c_str(), mode), 0);
    }

    std::string directory;
};

TEST_F(WholeFile, IsOnTheDiskBeforeItTakesTheOldOnesPlace)
{
    EXPECT_FALSE(writeWholeFile(file(), "new"));
    ASSERT_EQ(synced.size(), 2U) << "the new file, then the directory with its name";
    EXPECT_THAT(synced[0], testing::StartsWith(directory + "/.trs-"));
    EXPECT_EQ(synced[1], directory);
    EXPECT_EQ(content(), "new");
}

TEST_F(WholeFile, StaysAsItWasWhenTheDiskFails)
{
    syncsThatSucceed = 0;
    EXPECT_EQ(writeWholeFile(file(), "new"), std::errc::io_error);
    EXPECT_EQ(content(), "old");
    EXPECT_EQ(std::distance(fs::directory_iterator(directory), {}), 1) << "something was left behind";

    synced.clear();
    syncsThatSucceed = 1; // the disk may have either now, and who asked is told
    EXPECT_EQ(writeWholeFile(file(), "new"), std::errc::io_error);
    EXPECT_EQ(content(), "new");
}

TEST_F(WholeFile, KeepsItsOwner)
{
    bool const isRoot = ::geteuid() == 0; // who alone can have files of others
    uid_t const user = isRoot ? 4711 : ::geteuid();
    gid_t const group = isRoot ? 4712 : ::getegid();
    give(user, group, 06640);
    EXPECT_FALSE(writeWholeFile(file(), "new"));
    struct stat const status = this->status();
    EXPECT_EQ(status.st_uid, user);
    EXPECT_EQ(status.st_gid, group);
    EXPECT_EQ(status.st_mode & 07777U, 06640U) << "also the bits that a change of the owner takes away";
    EXPECT_EQ(content(), "new");
}

} // namespace
