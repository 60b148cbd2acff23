// From an endpoint to what its transport brings. A new transport is a pair of files with a channel, a listener and a
// dialer, its word in Endpoint, and its lines in Transport.cpp.
#pragma once

#include "broker/transport/Dialer.h"
#include "broker/transport/Endpoint.h"
#include "broker/transport/Listener.h"
#include "platform/NmaLogHelper.h"

#include <memory>
#include <string>
#include <system_error>

namespace asio {
class io_context;
}

namespace trs {

std::unique_ptr<Listener> makeListener(asio::io_context& context, Endpoint const& endpoint);
// Null, and why, when there is no way to the endpoint. Names are looked up here and never during a call, because a
// look-up knows no deadline.
std::unique_ptr<Dialer> makeDialer(Endpoint const& endpoint, std::string& why);

// The attempt's complaint, or why the system lets it fail, which Asio throws: it has no descriptor to spare.
template <class Attempt>
std::string complaintOf(Endpoint const& endpoint, Attempt&& attempt)
{
    try {
        return attempt();
    } catch (std::system_error const& error) {
        return LogMakeString("endpoint '%s': %s", endpoint.text().c_str(), error.code().message().c_str());
    }
}

} // namespace trs
