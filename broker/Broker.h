// The process's broker, as programs and tests see it.
#pragma once

#include "broker/ServerCounters.h"
#include "platform/TipprmiObjectClient.h"
#include "platform/TreflectORB.h"

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace trs {

class Peer;
class Server;
class ServerTap;

// Makes this process's objects reachable from others, and others' from here. A process that does neither needs none of
// this: calls within it work without.
class Broker {
public:
    static Broker& instance();
    Broker(Broker const&) = delete;
    Broker& operator=(Broker const&) = delete;
    ~Broker() = delete;

    // Listens on `unix:PATH`, `tcp:HOST:PORT` or `tcp:PORT`, which is 127.0.0.1; port 0 lets the system choose one. Or
    // on `memory:NAME`, which peers of this process alone reach, without a socket. Empty, or why it cannot.
    std::string serve(std::string const& endpoint);
    // What is listened on, with the ports that the system chose.
    std::vector<std::string> endpoints() const;

    // Has calls that come over connections pass through `tap`, which outlives the serving, as soon as serving begins
    // anew; null: none, as at first.
    void setTap(ServerTap* tap);
    // Has this process's calls of its own objects by their identifiers pass through `tap` as well, from now on until
    // stop(). They go over a connection within the process then, with its deadlines, and objects run on handler
    // threads. Proxies made from a pointer to an object reach it directly as ever, and so does what runs under
    // UntappedCalls (broker/ServerTap.h). Null, as at first, ends that and waits for calls under way. Empty, or why it
    // cannot.
    std::string setLocalTap(ServerTap* tap);

    // Makes the broker at that endpoint one of those whose objects are reachable from here. It need not be up. Empty,
    // or what is wrong with the endpoint. Objects that no peer is known for are looked for in the order of addition.
    std::string addPeer(std::string const& endpoint, TreflectORB const** peer = nullptr);
    // Forgets all peers. Proxies that were connected to one fail their calls, also those under way, at once, whatever
    // thread waits for them; a peer that is added again is the same.
    void removePeers();

    // Forgets all peers, ends serving, and waits for the handler threads. Gives the run permission back meanwhile.
    // Happens by itself when the process ends.
    void stop();

    // How long a call may take, unless the thread has a CallDeadline (broker/Deadline.h); 5 s at first.
    static void setDeadline(std::chrono::milliseconds duration);
    // How long a thread that expects a message waits awake before it sleeps; 50 us at first, 0 for not at all. It never
    // does where the process has only one processor.
    static void setBusyWait(std::chrono::microseconds bound);

    // What this process's server has done for its connections, without those of setLocalTap(); nothing while it does
    // not serve.
    ServerCounters serverCounters() const;

    // The number of a peer, for TipprmiObjectClient::forwardMsg().
    static TreflectOrbId numberOf(TreflectORB const& peer);

    // For the broker's own parts: the peers in their order, and the one of a number or null.
    std::vector<Peer*> peers() const;
    Peer* peer(unsigned long number) const;

private:
    Broker();
    bool mayWait(char const* what) const;
    void endLocalTap();

    std::mutex changing_; // serving and peers change one at a time, which may take long
    mutable std::mutex mutex_;
    ServerTap* tap_ = nullptr;
    std::unique_ptr<Server> server_;
    std::mutex tapping_;                // held for moments only
    ServerTap* localTap_ = nullptr;     // while there is
    std::unique_ptr<Server> ownServer_; // a server for this process's own calls
    std::vector<Peer*> known_;          // every peer that ever was; its place is its number less 1
    std::vector<Peer*> peers_;
};

} // namespace trs
