// The unit's network management agent: the object that NmiRmiAdapterClient reaches.
#pragma once

#include "adapter/NmiRmiAdapterClient.h"
#include "unit/Signal.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>

namespace trs::sim {

class Inventory;
class Object;
class PublicAddress;

// All operations but letGo() are called under the run permission.
class UnitAgent {
public:
    // `address` outlives it.
    UnitAgent(Inventory& inventory, PublicAddress& address);
    UnitAgent(UnitAgent const&) = delete;
    UnitAgent& operator=(UnitAgent const&) = delete;
    ~UnitAgent();

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

    PublicAddress& address_;
    bool acceptsAlarms_ = true;
    bool hangsNext_ = false;
    bool isAnnouncing_ = false;
    std::mutex mutex_; // guards what follows, which calls that hang look at without the run permission
    std::condition_variable ended_;
    bool isEnded_ = false;
    std::unique_ptr<Object> const object_;
    Signal::Subscription const changes_;
};

} // namespace trs::sim
