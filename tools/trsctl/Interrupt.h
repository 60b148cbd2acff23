// Ends what a verb does and not the program, when somebody at the terminal presses the key for it.
#pragma once

#include "tools/support/SignalWatch.h"

#include <optional>

namespace trs::ctl {

// Until it is destroyed, SIGINT has came() tell so and calls under way fail, instead of ending the program. There may
// be one within another.
class Interrupt {
public:
    Interrupt();
    Interrupt(Interrupt const&) = delete;
    Interrupt& operator=(Interrupt const&) = delete;
    ~Interrupt();

    // Since there is one; or there is no use in going on, as standard output takes no more.
    static bool came();

private:
    std::optional<tools::SignalWatch> watch_;
};

} // namespace trs::ctl
