// The site management adapter as a program runs it: one wrapper at a time, and words for what happens to it.
#pragma once

#include "adapter/ZynNmaWrapper.h"
#include "broker/NotificationGap.h"

#include <functional>
#include <memory>
#include <string>

namespace trs::adapter {

// What the agent announced while the connection to it was lost is asked for when it is there again.
class Adapter {
public:
    using Alarm = ZynNmaWrapper::CertMgrAlarmInfo;

    // What became of an alarm.
    struct Outcome {
        bool isAccepted;     // by the agent
        char const* failure; // a word for why it is not; empty when it is
        std::string text;
    };
    // Who else is told what the adapter says. Each may be empty, and is called on the thread on which it happens.
    struct Listeners {
        std::function<void(std::string const& address)> applied;
        std::function<void(Alarm const&, Outcome const&)> alarm;
    };

    // Says from now on which addresses are applied.
    explicit Adapter(Listeners listeners = {});
    Adapter(Adapter const&) = delete;
    Adapter& operator=(Adapter const&) = delete;
    ~Adapter();

    // Makes a new wrapper in place of the present one, and says so when the agent cannot be reached. Whether it can.
    bool connect();
    // Says what becomes of the alarm. Whether the agent accepted it.
    bool sendAlarm(Alarm const& alarm);
    // How things stand with the agent, whose address should be the one that was applied last.
    enum class Standing { unreachable, hasOtherAddress, good };
    static Standing standing();
    // Makes the agent announce its address. Empty, or why that failed.
    std::string announce();

    // "TYPE,STATE", two numbers. False when the text is none.
    static bool parse(std::string const& text, Alarm& alarm);

private:
    void catchUp();

    Listeners listeners_;
    std::unique_ptr<ZynNmaWrapper> wrapper_;
    std::unique_ptr<GapListener> gaps_;
};

} // namespace trs::adapter
