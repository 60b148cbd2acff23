// How people name an object: by its class and its identifier.
#pragma once

#include <string>

namespace trs::catalogue {

struct Class;

struct ObjectName {
    std::string className; // with or without "Client"
    std::string id;        // in the system's own namespace

    // "IfNet:IfNet/Transport", or the identifier of a well-known object alone: "IpNode", "NmiRmiAdapterServer",
    // "Simulator". Empty,
    // or what is wrong with the text. The class may be one of the framework's, which the catalogue does not have.
    static std::string parse(std::string const& text, ObjectName& name);
    // Without "Client".
    std::string text() const;
};

} // namespace trs::catalogue
