// The same calls through the proxies and the broker.
#pragma once

#include "bench/support/BenchNodeClient.h"
#include "platform/TreflectORB.h"
#include "platform/TreflectObserver.h"

#include <atomic>
#include <functional>
#include <string>
#include <vector>

namespace ours {

// Serves a BenchNode at the endpoints. Does not return. With `isBusy`, connections are watched without sleeping.
[[noreturn]] void serve(std::vector<std::string> const& endpoints, bool isBusy);

// Makes this process a client of the server at `endpoint`, which becomes a peer, for the calls below.
TreflectORB const* addPeer(std::string const& endpoint);
// The same, and sees that the server answers as it should.
TreflectORB const* use(std::string const& endpoint, bool isBusy);

// Its node; null: the only peer's.
BenchNodeClient nodeAt(TreflectORB const* peer);

// Calls of one thread, each checked; of the server at `peer`, or of the only one.
std::function<void()> numberCall(TreflectORB const* peer = nullptr);
std::function<void()> tableCall();
// One such call. Whether it was answered.
bool isAnswered(TreflectORB const* peer);

// Counts what it is told.
class Listener final : public TreflectObserver {
public:
    Listener() : TreflectObserver(TipprmiOID(""), nullptr, "listener") {}
    ~Listener() override { withdraw(); }
    bool detected() override
    {
        ++told;
        return true;
    }
    std::atomic<long> told = 0;
};
// Has it told of the numbers that are got from the server at `endpoint`, which becomes a peer.
void subscribe(std::string const& endpoint, Listener& listener);

// Connects that many times to the server at `endpoint`, writes how many of the connections it has kept, and holds them.
[[noreturn]] void hold(std::string const& endpoint, int count);

} // namespace ours
