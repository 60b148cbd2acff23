// The guard around proxy calls that are made from a thread of the caller's own.
#pragma once

// Puts the thread, whether it is one of the broker's handler threads or not, into the state that calls require, and
// restores the former one at the end of the block. Guards nest.
class TreflectHandlerState {
public:
    TreflectHandlerState();
    TreflectHandlerState(TreflectHandlerState const&) = delete;
    TreflectHandlerState& operator=(TreflectHandlerState const&) = delete;
    ~TreflectHandlerState();

private:
    bool isHandler;                // the thread is a handler thread
    bool hadRunPermission = false; // that handler thread held the run permission already
};
