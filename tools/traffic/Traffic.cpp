#include "tools/traffic/Traffic.h"

#include <utility>

namespace trs::traffic {

bool Traffic::pass(std::uint32_t connection, Direction direction, std::string_view bytes)
{
    Connection& passed = connections_[connection];
    Cutter& cutter = direction == Direction::toUnit ? passed.toUnit : passed.fromUnit;
    cutter.add(bytes);
    std::optional<std::string> message = cutter.next();
    for (; message; message = cutter.next()) {
        if (!take({std::chrono::system_clock::now(), connection, direction, std::move(*message)})) {
            return false;
        }
    }
    return !bytes.empty() || end(connection, direction, cutter.rest());
}

bool Traffic::take(Packet const& packet)
{
    return act_(packet, connections_[packet.connection].conversation.tell(packet.message, packet.time));
}

// The rest is of a message that never came to its end.
bool Traffic::end(std::uint32_t connection, Direction direction, std::string rest)
{
    bool const goesOn =
        rest.empty() || take({std::chrono::system_clock::now(), connection, direction, std::move(rest)});
    if (--connections_[connection].openDirections == 0) {
        connections_.erase(connection);
    }
    return goesOn;
}

} // namespace trs::traffic
