// The values behind platform/UnitEnvironment.h, which a program or test sets and reads.
#pragma once

#include <array>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

namespace trs {

class UnitValues {
public:
    // An address whose octets may each be unknown.
    using Address = std::array<std::optional<unsigned char>, 4>;
    // Something that the unit's environment was told, such as "public IP address: 10.0.0.1".
    using Listener = std::function<void(std::string const& what)>;

    static UnitValues& instance();

    // The address of the local management port; unknown at first.
    Address localManagementAddress() const;
    void setLocalManagementAddress(Address const& address);
    // 1, a WCDMA unit, at first.
    int productType() const;
    void setProductType(int type);

    // What the environment was told last; empty and false when it was not.
    std::string publicAddress() const;
    bool isPrivateMaskSet() const;
    // Is called, on the telling thread, with everything that the environment is told from then on; null ends it.
    void setListener(Listener listener);

    void tellPublicAddress(std::string const& address);
    void tellPrivateMask();
    // All values as they were at the start of the process, without a listener.
    void reset();

private:
    struct Values {
        Address localManagementAddress;
        int productType = 1;
        std::string publicAddress;
        bool isPrivateMaskSet = false;
        Listener listener;
    };

    mutable std::mutex mutex_;
    Values values_;
};

} // namespace trs
