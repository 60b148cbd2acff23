// The unit's network management agent: the object that NmiRmiAdapterClient reaches.
#pragma once

#include "adapter/NmiRmiAdapterClient.h"
#include "rmi/Servant.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>

namespace trs::sim {

// All operations but letGo() are called under the run permission.
class UnitAgent {
public:
    // `listener`, if any, is told the public address now and whenever it changes.
    using Listener = std::function<void(std::string const& address)>;
    explicit UnitAgent(std::string const& address, Listener listener = nullptr);
    UnitAgent(UnitAgent const&) = delete;
    UnitAgent& operator=(UnitAgent const&) = delete;
    ~UnitAgent() { letGo(); }

    void sayAddress() const;
    // Sets the public address, which may be empty, without telling anybody.
    void setAddress(std::string const& address);
    // Sets it, and executes the operation whose observers are told.
    void announce(std::string const& address);
    // Whether alarms are answered with true.
    void setAcceptsAlarms(bool accepts);
    // Lets the next call that comes from another process wait for its answer until the unit ends.
    void hang();
    // Ends that wait, now and for good.
    void letGo();

private:
    void answer(char const* operation);
    void change(std::string const& address);

    std::string address_;
    Listener listener_;
    bool acceptsAlarms_ = true;
    bool hangsNext_ = false;
    std::mutex mutex_; // guards what follows, which calls that hang look at without the run permission
    std::condition_variable ended_;
    bool isEnded_ = false;
    Servant servant_{TipprmiOID(NmiRmiAdapterClient::NMI_RMI_ADAPTER_SER_NAME)};
};

} // namespace trs::sim
