// Plain sockets, for peers that do not speak as they should.
#pragma once

#include "broker/Broker.h"
#include "broker/Log.h"
#include "tests/support/Echo.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <mutex>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace support {

using Octets = std::vector<unsigned char>;

inline void flip(Octets& octets, std::size_t bit)
{
    unsigned const mask = 1U << bit % 8;
    octets[bit / 8] = static_cast<unsigned char>(octets[bit / 8] ^ mask);
}

// How long a test waits for what must happen.
inline constexpr std::chrono::milliseconds patience{20000};

class Descriptor {
public:
    explicit Descriptor(int value = -1) : value_(value) {}
    Descriptor(Descriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(value_, other.value_);
        return *this;
    }
    ~Descriptor()
    {
        if (value_ >= 0) {
            ::close(value_);
        }
    }
    int get() const { return value_; }
    void reset() { *this = Descriptor(); }

    void write(Octets const& octets) const
    {
        for (std::size_t sent = 0; sent < octets.size();) {
            ssize_t const count = ::send(value_, octets.data() + sent, octets.size() - sent, MSG_NOSIGNAL);
            if (count <= 0) {
                return; // the other side has heard enough
            }
            sent += static_cast<std::size_t>(count);
        }
    }
    // Up to `count` octets; fewer when the other side closes first, or lets more than our patience pass.
    Octets read(std::size_t count) const
    {
        Octets octets;
        while (octets.size() < count) {
            pollfd waiting{value_, POLLIN, 0};
            if (::poll(&waiting, 1, static_cast<int>(patience.count())) <= 0) {
                ADD_FAILURE() << "nothing came";
                break;
            }
            unsigned char room[4096];
            std::size_t const wanted = std::min(sizeof room, count - octets.size());
            ssize_t const received = ::recv(value_, room, wanted, 0);
            if (received <= 0) {
                break;
            }
            octets.insert(octets.end(), room, room + received);
        }
        return octets;
    }
    // One message: the length of what follows, and that.
    Octets readMessage() const
    {
        Octets message = read(4);
        if (message.size() == 4) {
            Octets const rest = read(std::size_t{message[0]} << 24 | std::size_t{message[1]} << 16 |
                                     std::size_t{message[2]} << 8 | message[3]);
            message.insert(message.end(), rest.begin(), rest.end());
        }
        return message;
    }
    bool isClosedByPeer() const { return read(1).empty(); }
    // Whether something comes, or the peer closes, in that time.
    bool hasInput(std::chrono::milliseconds time) const
    {
        pollfd waiting{value_, POLLIN, 0};
        return ::poll(&waiting, 1, static_cast<int>(time.count())) > 0;
    }

private:
    int value_;
};

inline Octets const greeting{'T', 'O', 'I', 'P', 0, 1, 0, 0};

// A directory of the test's own, gone with it.
class ScratchDirectory {
public:
    ScratchDirectory()
    {
        char name[] = "/tmp/trsman-test-XXXXXX";
        path_ = ::mkdtemp(name);
    }
    ScratchDirectory(ScratchDirectory const&) = delete;
    ScratchDirectory& operator=(ScratchDirectory const&) = delete;
    ~ScratchDirectory()
    {
        for (std::string const& file : files_) {
            ::unlink(file.c_str());
        }
        ::rmdir(path_.c_str());
    }
    std::string file(std::string const& name)
    {
        files_.push_back(path_ + '/' + name);
        return files_.back();
    }

private:
    std::string path_;
    std::vector<std::string> files_;
};

inline sockaddr_un addressOf(std::string const& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return address;
}

inline Descriptor connectTo(std::string const& path, bool greets = true)
{
    Descriptor descriptor(::socket(AF_UNIX, SOCK_STREAM, 0));
    sockaddr_un const address = addressOf(path);
    EXPECT_EQ(::connect(descriptor.get(), reinterpret_cast<sockaddr const*>(&address), sizeof address), 0) << path;
    if (greets) {
        descriptor.write(greeting);
        EXPECT_EQ(descriptor.read(greeting.size()), greeting);
    }
    return descriptor;
}

// A server that greets as it should and then treats each connection as a test wants.
class FakePeer {
public:
    using Treatment = std::function<void(Descriptor const&)>;

    FakePeer(std::string const& path, Treatment treatment, bool greets = true)
        : listener_(::socket(AF_UNIX, SOCK_STREAM, 0)), treatment_(std::move(treatment)), greets_(greets)
    {
        sockaddr_un const address = addressOf(path);
        EXPECT_EQ(::bind(listener_.get(), reinterpret_cast<sockaddr const*>(&address), sizeof address), 0) << path;
        EXPECT_EQ(::listen(listener_.get(), 16), 0);
        thread_ = std::thread([this] { run(); });
    }
    FakePeer(FakePeer const&) = delete;
    FakePeer& operator=(FakePeer const&) = delete;
    ~FakePeer()
    {
        ::shutdown(listener_.get(), SHUT_RDWR);
        {
            std::lock_guard const lock(mutex_);
            ::shutdown(served_, SHUT_RDWR);
        }
        thread_.join();
    }

private:
    void run()
    {
        for (;;) {
            Descriptor const connection(::accept(listener_.get(), nullptr, nullptr));
            serve(connection.get());
            if (connection.get() < 0) {
                return;
            }
            if (!greets_ || connection.read(greeting.size()) == greeting) {
                if (greets_) {
                    connection.write(greeting);
                }
                treatment_(connection);
            }
            serve(-1);
        }
    }
    void serve(int descriptor)
    {
        std::lock_guard const lock(mutex_);
        served_ = descriptor;
    }

    Descriptor listener_;
    Treatment treatment_;
    bool greets_;
    std::mutex mutex_;
    int served_ = -1;
    std::thread thread_;
};

// Leaves the process's broker as it was found, and standard error quiet.
class BrokerTest : public testing::Test {
protected:
    BrokerTest() { trs::setLogLevel(0); }
    ~BrokerTest() override
    {
        trs::Broker& broker = trs::Broker::instance();
        broker.stop();
        trs::Broker::setDeadline(std::chrono::seconds(5));
        trs::setLogLevel(6);
    }
    static TreflectORB const* peerAt(std::string const& endpoint)
    {
        TreflectORB const* peer = nullptr;
        EXPECT_EQ(trs::Broker::instance().addPeer(endpoint, &peer), "");
        return peer;
    }
    // This process as its own peer: calls then take the road of the endpoint.
    TreflectORB const* loopBack(std::string const& endpoint)
    {
        trs::Broker& broker = trs::Broker::instance();
        EXPECT_EQ(broker.serve(endpoint), "");
        return peerAt(broker.endpoints().back());
    }

    ScratchDirectory directory;
    std::string const path = directory.file("socket");
};

} // namespace support
