// What the unit says of itself, as the adapter last heard it.
#pragma once

#include <mutex>
#include <string>

namespace trs::adapter {

struct UnitIdentity {
    long btsId = -1;              // -1 when it is unknown, as the addresses are empty then
    std::string publicAddress;    // where the unit is reached from outside
    std::string transportAddress; // of the transport Ethernet interface
};

// May be used from any thread.
class Identity {
public:
    // Asks the unit, which takes up to some calls' time. What it does not tell stays as it was.
    void refresh();
    // The public address changed.
    void setPublicAddress(std::string const& address);
    UnitIdentity get() const;

private:
    mutable std::mutex mutex_;
    UnitIdentity identity_;
};

} // namespace trs::adapter
