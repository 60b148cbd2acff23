// Documents that are applied to a unit, and what is shown of that.
#pragma once

#include "tools/trsctl/Change.h"
#include "tools/trsctl/Program.h"

#include <vector>

namespace trs::ctl {

struct Application {
    bool showsFacts = false; // else their number
    double minutes = 0;      // until it is taken back unless it is confirmed; 0: never
    bool isSure = false;     // else somebody at a terminal is asked before something is destroyed
};

// Brings the unit to what the document says, or back when something fails. What is done is shown, what is wrong is
// said.
ExitCode applyDocument(Program::Options const& options, catalogue::Value document, Application const& how);

void showStep(Step const& step, Format format);
// What nothing sets: each place, or how many there are.
void showFacts(std::vector<Unsettable> const& facts, bool inFull, Format format);

} // namespace trs::ctl
