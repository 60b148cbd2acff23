// What passes on some connections, one part after the other.
#pragma once

#include "tools/traffic/Conversation.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string_view>

namespace trs::traffic {

// Has something done with every part: greeting, message, or what is neither.
class Traffic {
public:
    // False when it has had enough.
    using Act = std::function<bool(Packet const& packet, Conversation::Told const& told)>;

    explicit Traffic(Act act) : act_(std::move(act)) {}

    // Bytes of a live connection; none at the end of this direction. False when the act has had enough.
    bool pass(std::uint32_t connection, Direction direction, std::string_view bytes);
    // A part as a whole.
    bool take(Packet const& packet);

private:
    struct Connection {
        Cutter toUnit;
        Cutter fromUnit;
        Conversation conversation;
        int openDirections = 2;
    };

    bool end(std::uint32_t connection, Direction direction, std::string rest);

    Act const act_;
    std::map<std::uint32_t, Connection> connections_;
};

} // namespace trs::traffic
