// How people name an object: by its class and its identifier.
#pragma once

#include <span>
#include <string>

namespace trs::catalogue {

struct Class;

struct ObjectName {
    std::string className; // with or without "Client"
    std::string id;        // in the system's own namespace

    // Those that a unit has under identifiers of their own, and from which all others are reached: the IP node, the
    // network management agent, and the controls of a simulated unit.
    static std::span<ObjectName const> wellKnown();

    // "IfNet:IfNet/Transport", or the identifier of a well-known object alone, such as "IpNode". Empty, or what is
    // wrong with the text. The class may be one of the framework's, which the catalogue does not have.
    static std::string parse(std::string const& text, ObjectName& name);
    // Without "Client".
    std::string text() const;
};

} // namespace trs::catalogue
