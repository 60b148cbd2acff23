#include "broker/Broker.h"

#include "broker/calls/Engine.h"
#include "broker/calls/Handlers.h"
#include "broker/calls/Peer.h"
#include "broker/calls/TappedRoad.h"
#include "broker/machine/BusyWait.h"
#include "broker/objects/LocalNotifier.h"
#include "broker/objects/ObserverTable.h"
#include "broker/objects/RunPermission.h"
#include "broker/objects/SubscriberTable.h"
#include "broker/serving/Server.h"
#include "broker/transport/MemoryTransport.h"
#include "broker/transport/Transport.h"
#include "platform/NmaLogHelper.h"

#include <algorithm>

namespace trs {

namespace {

// Where this process calls itself: an endpoint without a name, which no user can state.
Endpoint const& ownEndpoint()
{
    static Endpoint const endpoint{Endpoint::Kind::memory, {}, {}, 0};
    return endpoint;
}

// What this process is to itself; as everywhere, it has no endpoint to tell. Never destroyed, as no peer is.
Peer& ownPeer()
{
    static Peer& own = *new Peer({}, std::make_unique<MemoryDialer>(ownEndpoint()), 0);
    return own;
}

} // namespace

Broker::Broker() = default;

// Never destroyed, because stubs refer to its peers, but stopped when the process ends.
Broker& Broker::instance()
{
    struct Stopped {
        Broker* const broker = new Broker;
        ~Stopped() { broker->stop(); }
    };
    static Stopped const only;
    return *only.broker;
}

// A thread of the broker's that waited for all of them would wait for itself.
bool Broker::mayWait(char const* what) const
{
    if (TreflectORB::isHandlerThread()) {
        LogDispatch(3, LogMakeString("%s was called on a handler thread, and does nothing there", what));
        return false;
    }
    return true;
}

std::string Broker::serve(std::string const& endpoint)
{
    Endpoint parsed;
    if (std::string why = Endpoint::parse(endpoint, parsed); !why.empty()) {
        return why;
    }
    RunPermissionPause const waiting;
    std::lock_guard const changing(changing_);
    std::lock_guard const lock(mutex_);
    if (server_ == nullptr) {
        server_ = std::make_unique<Server>(tap_);
    }
    return server_->listen(parsed);
}

void Broker::setTap(ServerTap* tap)
{
    std::lock_guard const lock(mutex_);
    tap_ = tap;
}

std::string Broker::setLocalTap(ServerTap* tap)
{
    if (tap == nullptr) {
        endLocalTap();
        return {};
    }
    std::lock_guard const lock(tapping_);
    if (localTap_ != nullptr) {
        return localTap_ == tap ? "" : "this process's calls are tapped already";
    }
    auto server = std::make_unique<Server>(tap);
    std::string why = server->listen(ownEndpoint());
    if (why.empty()) {
        ownServer_ = std::move(server);
        localTap_ = tap;
        ownPeer().open();
        TappedRoad::open(&ownPeer());
        SubscriberTable::instance().markAll(true);
    }
    return why;
}

void Broker::endLocalTap()
{
    std::unique_ptr<Server> ended;
    {
        std::lock_guard const lock(tapping_);
        if (localTap_ == nullptr || !mayWait("setLocalTap(nullptr)")) {
            return;
        }
        TappedRoad::open(nullptr);
        SubscriberTable::instance().markAll(false);
        localTap_ = nullptr;
        ended = std::move(ownServer_);
    }
    ended.reset();
    ownPeer().close();
}

std::vector<std::string> Broker::endpoints() const
{
    std::lock_guard const lock(mutex_);
    return server_ != nullptr ? server_->endpoints() : std::vector<std::string>();
}

ServerCounters Broker::serverCounters() const
{
    std::lock_guard const lock(mutex_);
    return server_ != nullptr ? server_->counters() : ServerCounters();
}

std::string Broker::addPeer(std::string const& endpoint, TreflectORB const** peer)
{
    Endpoint parsed;
    if (std::string why = Endpoint::parse(endpoint, parsed); !why.empty()) {
        return why;
    }
    if (parsed.kind == Endpoint::Kind::tcp && parsed.port == 0) {
        return LogMakeString("endpoint '%s': no peer listens on port 0", endpoint.c_str());
    }
    RunPermissionPause const waiting;
    std::lock_guard const changing(changing_);
    std::string why;
    std::unique_ptr<Dialer> dialer = makeDialer(parsed, why);
    if (dialer == nullptr) {
        return why;
    }
    std::string const text = parsed.text();
    std::lock_guard const lock(mutex_);
    auto const known =
        std::find_if(known_.begin(), known_.end(), [&](Peer const* other) { return other->endpoint() == text; });
    Peer* const added =
        known != known_.end() ? *known : known_.emplace_back(new Peer(text, std::move(dialer), known_.size() + 1));
    if (std::find(peers_.begin(), peers_.end(), added) == peers_.end()) {
        added->open();
        peers_.push_back(added);
    }
    if (peer != nullptr) {
        *peer = added;
    }
    return {};
}

void Broker::removePeers()
{
    if (!mayWait("removePeers()")) {
        return;
    }
    RunPermissionPause const waiting;
    std::lock_guard const changing(changing_);
    std::vector<Peer*> removed;
    {
        std::lock_guard const lock(mutex_);
        removed.swap(peers_);
    }
    for (Peer* const peer : removed) {
        peer->close();
        ObserverTable::instance().removeAllAt(*peer);
    }
}

void Broker::stop()
{
    if (!mayWait("stop()")) {
        return;
    }
    RunPermissionPause const waiting;
    removePeers();
    endLocalTap();
    std::lock_guard const changing(changing_);
    std::unique_ptr<Server> ended;
    {
        std::lock_guard const lock(mutex_);
        ended = std::move(server_);
    }
    ended.reset();
    Engine::instance().stop();
    Handlers::stop();
    LocalNotifier::instance().stop();
}

void Broker::setDeadline(std::chrono::milliseconds duration) { Deadline::setDefault(duration); }

void Broker::setBusyWait(std::chrono::microseconds bound) { BusyWait::setBound(bound); }

TreflectOrbId Broker::numberOf(TreflectORB const& peer) { return TreflectOrbId(Peer::of(peer).number()); }

std::vector<Peer*> Broker::peers() const
{
    std::lock_guard const lock(mutex_);
    return peers_;
}

Peer* Broker::peer(unsigned long number) const
{
    std::lock_guard const lock(mutex_);
    return number >= 1 && number <= known_.size() ? known_[number - 1] : nullptr;
}

} // namespace trs
