// LocationIdClient: the location identity of an application object, handed out by
// ApplicationObjectClient::getLocationId() and AtmPersistentObjectClient::getLocationId().
#pragma once

#include "platform/TipprmiObjectClient.h"

#include <string>

// Renders itself as text and as a key, tells what it contains and compares itself with another. Its operations spell
// out the call road with the framework's own primitives; it has no meta object.
class LocationIdClient : public TipprmiObjectClient {
public:
    using TipprmiObjectClient::TipprmiObjectClient;
    LocationIdClient() = default;
    explicit LocationIdClient(TipprmiObjectClient const& other) : TipprmiObjectClient(other) {}
    LocationIdClient(LocationIdClient const&) = default;
    LocationIdClient& operator=(LocationIdClient const&) = default;
    ~LocationIdClient() override;

    // The type of a location identity itself, for containsType().
    static constexpr int LID_LOCATION_ID = 1;

    // The identity as text, in the server's form; empty when the call fails.
    virtual std::string toString() const;
    // The identity as a key, in the server's form; empty when the call fails.
    virtual std::string toKey() const;
    // Whether the identity contains the given type; false when the call fails.
    virtual bool containsType(unsigned long const& type) const;
    // Whether both designate the same location; false when the call fails.
    virtual bool equals(LocationIdClient const& other) const;
};
