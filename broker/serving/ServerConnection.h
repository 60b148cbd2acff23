// The server's side of one connection.
#pragma once

#include "broker/ServerTap.h"
#include "broker/framing/Message.h"
#include "broker/objects/StubTable.h"
#include "broker/serving/EventSink.h"
#include "broker/transport/Connection.h"

#include <cstddef>
#include <memory>
#include <string>

namespace trs {

// Answers what arrives, one message after the other, on the handler thread that runs serve().
class ServerConnection {
public:
    // `tap` may be null.
    ServerConnection(std::unique_ptr<Channel> channel, std::string endpoint, ServerTap* tap);
    ~ServerConnection();

    // Returns when the connection has ended.
    void serve();
    // Ends the connection, from any thread.
    void shutDown() { connection_.shutDown(); }

private:
    bool greet();
    bool answer(TipprmiStream& message, TipprmiStream& reply);
    bool answerRequest(MessageHeader const& header, TipprmiStream& request, TipprmiStream& reply);
    bool answerTapped(MessageHeader const& header, ObjectAddress const& address, TipprmiStream& request,
                      TipprmiStream& reply);
    ReplyStatus execute(bool flag, ObjectAddress const& address, TipprmiStream& request, TipprmiStream& reply);
    bool answerLocate(MessageHeader const& header, ObjectAddress const& address, TipprmiStream& reply);
    bool answerSubscribe(MessageHeader const& header, ObjectAddress const& address, TipprmiStream& reply);
    bool send(TipprmiStream const& message);
    void logMalformed() const;

    std::string const endpoint_;
    ServerTap* const tap_;
    Connection connection_;
    TreflectStubRef lastStub_; // of the object that was called last: most connections call one object for a while
    std::shared_ptr<EventSink> sink_;
    std::size_t subscriptions_ = 0;
};

} // namespace trs
