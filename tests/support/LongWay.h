// A connection to a server that is far away.
#pragma once

#include "tests/support/Sockets.h"

#include <chrono>
#include <deque>
#include <list>

namespace support {

// Listens at one Unix socket and hands on to another what comes, in both directions, each byte after a time.
class LongWay {
public:
    LongWay(std::string const& from, std::string to, std::chrono::milliseconds oneWay)
        : to_(std::move(to)), time_(oneWay), listener_(::socket(AF_UNIX, SOCK_STREAM, 0))
    {
        sockaddr_un const address = addressOf(from);
        EXPECT_EQ(::bind(listener_.get(), reinterpret_cast<sockaddr const*>(&address), sizeof address), 0) << from;
        EXPECT_EQ(::listen(listener_.get(), 16), 0);
        EXPECT_EQ(::pipe(end_.data()), 0);
        thread_ = std::thread([this] { run(); });
    }
    LongWay(LongWay const&) = delete;
    LongWay& operator=(LongWay const&) = delete;
    ~LongWay()
    {
        ::close(end_[1]);
        thread_.join();
        ::close(end_[0]);
    }

private:
    using Clock = std::chrono::steady_clock;
    struct OneWay {
        struct Piece {
            Clock::time_point due;
            Octets bytes; // none: the end
        };
        Descriptor const* from;
        Descriptor const* to;
        std::deque<Piece> pieces;
        bool hasEnded = false;
    };
    struct Pair {
        Descriptor near;
        Descriptor far;
        OneWay there;
        OneWay back;
    };

    void run()
    {
        for (;;) {
            std::vector<pollfd> waited{{end_[0], POLLIN, 0}, {listener_.get(), POLLIN, 0}};
            auto next = Clock::time_point::max();
            forAll([&](OneWay& way) {
                waited.push_back({way.hasEnded ? -1 : way.from->get(), POLLIN, 0});
                next = way.pieces.empty() ? next : std::min(next, way.pieces.front().due);
            });
            auto const left = std::chrono::ceil<std::chrono::milliseconds>(next - Clock::now()).count();
            int const limit = next == Clock::time_point::max() ? -1 : static_cast<int>(std::max<long>(left, 0));
            ::poll(waited.data(), waited.size(), limit);
            if (waited[0].revents != 0) {
                return;
            }
            std::size_t place = 2;
            forAll([&](OneWay& way) {
                if (waited[place++].revents != 0) {
                    take(way);
                }
                give(way);
            });
            if (waited[1].revents != 0) {
                accept();
            }
        }
    }
    template <class Act>
    void forAll(Act const& act)
    {
        for (Pair& pair : pairs_) {
            act(pair.there);
            act(pair.back);
        }
    }
    void accept()
    {
        Pair& pair = pairs_.emplace_back();
        pair.near = Descriptor(::accept(listener_.get(), nullptr, nullptr));
        pair.far = connectTo(to_, false);
        pair.there = {&pair.near, &pair.far, {}};
        pair.back = {&pair.far, &pair.near, {}};
    }
    void take(OneWay& way) const
    {
        Octets bytes(65536);
        ssize_t const count = ::read(way.from->get(), bytes.data(), bytes.size());
        bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        way.hasEnded = bytes.empty();
        way.pieces.push_back({Clock::now() + time_, std::move(bytes)});
    }
    static void give(OneWay& way)
    {
        for (; !way.pieces.empty() && way.pieces.front().due <= Clock::now(); way.pieces.pop_front()) {
            if (way.pieces.front().bytes.empty()) {
                ::shutdown(way.to->get(), SHUT_WR);
            } else {
                way.to->write(way.pieces.front().bytes);
            }
        }
    }

    std::string const to_;
    std::chrono::milliseconds const time_;
    Descriptor const listener_;
    std::array<int, 2> end_{};
    std::list<Pair> pairs_;
    std::thread thread_;
};

} // namespace support
