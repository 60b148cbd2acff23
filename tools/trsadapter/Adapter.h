// The site management adapter as a program runs it: one wrapper at a time, and words for what happens to it.
#pragma once

#include "adapter/ZynNmaWrapper.h"

#include <memory>
#include <string>

class Adapter {
public:
    using Alarm = ZynNmaWrapper::CertMgrAlarmInfo;

    // Says from now on which addresses are applied.
    Adapter();
    Adapter(Adapter const&) = delete;
    Adapter& operator=(Adapter const&) = delete;
    ~Adapter();

    // Makes a new wrapper in place of the present one, and says so when the agent cannot be reached. Whether it can.
    bool connect();
    // Says what becomes of the alarm. Whether the agent accepted it.
    bool sendAlarm(Alarm const& alarm);
    // Makes the agent announce its address. Empty, or why that failed.
    std::string announce();

    // "TYPE,STATE", two numbers. False when the text is none.
    static bool parse(std::string const& text, Alarm& alarm);

private:
    std::unique_ptr<ZynNmaWrapper> wrapper_;
};
