// The object request broker as the calling code sees it.
#pragma once

// The process's own broker (static functions), or one that it knows as a peer.
//
// The code of objects runs under the broker's run permission, one token per process. Handler threads (those that
// the broker made, to serve requests and deliver notifications) hold it while they run an object's code. A thread
// of the caller's own takes part through TreflectHandlerState. Whoever waits for a remote reply gives the token
// back while it waits.
class TreflectORB {
public:
    TreflectORB(TreflectORB const&) = delete;
    TreflectORB& operator=(TreflectORB const&) = delete;

    // Whether the calling thread is one of the broker's.
    static bool isHandlerThread();
    static bool hasRunPermission();
    static void getRunPermission();
    static void releaseRunPermission();
    // Brings a thread that is not the broker's under the run permission, and out of it. Calls nest.
    static void enterHandlerState(bool flag);
    static void leaveHandlerState(bool flag);

protected:
    TreflectORB() = default;
    ~TreflectORB() = default;
};
