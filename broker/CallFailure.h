// Why the last call had no result.
#pragma once

#include "platform/TipprmiOID.h"

#include <cstdint>
#include <string>

namespace trs {

struct CallFailure {
    enum class Kind {
        none,            // the call was delivered
        notConnected,    // no connection to a process that has the object
        noSuchObject,    // no process that was asked has the object
        noSuchOperation, // the object has no such operation
        refused,         // the request could not be read there, or not be sent
        deadline,        // no reply in time
        connectionLost,  // the connection broke while the reply was awaited
        malformedReply,  // something came back that is no reply to this call
        busy,            // the server has no thread left for it
        cancelled,       // the caller of an asynchronous call does not wait any more
    };
    enum class CarriedOut { no, yes, unknown };

    Kind kind = Kind::none;
    CarriedOut carriedOut = CarriedOut::no;
    std::uint32_t classId = 0; // 0, like the index, of what is no call: isConnected()
    std::uint32_t opIndex = 0;
    TipprmiOID object{""};
    std::string peer; // its endpoint; empty for this process, or when there was none to ask
    std::string reason;

    // "it was carried out" and its kin.
    char const* effect() const;
    // One line for a person.
    std::string text() const;
};

// What became of the calling thread's last call through a stream, here or to a peer, or of its last isConnected() or
// registration of an observer, which have failed when the answer is false.
CallFailure const& lastCallFailure();

// For the broker: begins a call; ends one as failed; the same with a log line.
void resetCallFailure();
void recordCallFailure(CallFailure failure);
void reportCallFailure(CallFailure failure);

} // namespace trs
