// Brings a unit to a wanted state, and back when that fails.
#pragma once

#include "catalogue/Call.h"
#include "tools/trsctl/Plan.h"
#include "tools/trsctl/Program.h"

#include <functional>

namespace trs::ctl {

class Change {
public:
    // What is done is told to `tell`, step by step.
    using Tell = std::function<void(Step const&)>;
    Change(Program::Options const& options, catalogue::Value wanted) : options_(options), document_(std::move(wanted))
    {
    }

    // Reads the unit, and what is wanted of it. What is wrong is said.
    ExitCode read();
    // What there is to do, as far as that is known before objects are created.
    Plan const& plan() const { return plan_; }
    // What the unit told when it was read.
    catalogue::Value const& before() const { return before_; }

    // Does it: objects that are made are given what they are to tell, and a step that is refused is tried again behind
    // the others. What is wrong is said; the unit is then as far as it came.
    ExitCode carryOut(Tell const& tell);
    // Whether anything was done.
    bool hasDone() const { return hasDone_; }
    // In the end: what was accepted and is told otherwise, and what nothing sets.
    std::vector<Unsettable> const& left() const { return left_; }

    // Brings a unit back to what it told, as far as it can be; says what was refused.
    static ExitCode takeBack(Program::Options const& options, catalogue::Value const& before, Tell const& tell);

private:
    ExitCode readNow(catalogue::Value& told);
    ExitCode doSteps(std::vector<Step> steps, Tell const& tell);
    void adopt(std::string const& wantedId, catalogue::Outcome const& outcome, catalogue::Operation const& operation);

    Program::Options const& options_;
    catalogue::Value document_;
    catalogue::Value before_;
    UnitState now_;
    UnitState wanted_;
    Plan plan_;
    std::vector<Unsettable> left_;
    bool takesBack_ = false; // passing over what is refused, and not to be interrupted
    bool hasDone_ = false;
};

} // namespace trs::ctl
