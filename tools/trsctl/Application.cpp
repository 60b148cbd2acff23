#include "tools/trsctl/Application.h"

#include "broker/PrintableText.h"
#include "catalogue/Json.h"
#include "catalogue/Text.h"
#include "catalogue/ValueText.h"
#include "tools/support/Colour.h"
#include "tools/support/StandardStreams.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Confirmation.h"
#include "tools/trsctl/Interrupt.h"
#include "tools/trsctl/Pending.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fmt/format.h>

namespace trs::ctl {

namespace {

using catalogue::Value;

void show(Unsettable const& fact, Format format)
{
    if (format == Format::json) {
        tools::say(catalogue::toJson(
            {{"change", "none"}, {"place", fact.place}, {"wanted", fact.wanted}, {"now", fact.now}}, -1));
        return;
    }
    tools::say(tools::coloured("? " + escaped(fact.place) + ": wanted " + escaped(catalogue::textOf(fact.wanted)) +
                                   ", is " + escaped(catalogue::textOf(fact.now)),
                               tools::Colour::aside));
}

// Whether somebody who is there wants what the plan destroys to be destroyed.
bool isWanted(Plan const& plan, Program::Options const& options, bool isSure)
{
    std::vector<Step> doomed;
    std::ranges::copy_if(plan.steps, std::back_inserter(doomed), [](Step const& each) {
        return each.kind == Step::Kind::remove || destroys(*each.type, *each.operation, each.arguments());
    });
    if (doomed.empty() || isSure || !canAsk()) {
        return true;
    }
    for (Step const& each : doomed) {
        std::fprintf(stderr, "- %s\n", escaped(each.text()).c_str());
    }
    return isConfirmed(fmt::format("{} of {} steps at {}", doomed.size(), plan.steps.size(), options.unit), isSure);
}

// Takes a change back that was begun, because of what `code` tells.
ExitCode undo(Program::Options const& options, Change const& change, Pending const& pending, ExitCode code)
{
    bool const isUntouched = code == ExitCode::refused && !change.hasDone();
    if (!isUntouched) {
        note("what was done is taken back");
        ExitCode const end =
            Change::takeBack(options, change.before(), [&](Step const& step) { showStep(step, options.format); });
        if (end != ExitCode::good) {
            return complain("not all of it is taken back; `trsctl rollback` tries again", end, "unknown");
        }
    }
    pending.forgetLast();
    return code;
}

} // namespace

void showStep(Step const& step, Format format)
{
    if (format == Format::json) {
        tools::say(catalogue::toJson(step.json(), -1));
        return;
    }
    constexpr char signs[] = {'+', '~', '-'};
    std::string line = signs[static_cast<int>(step.kind)] + (' ' + escaped(step.text()));
    catalogue::forEachLeaf(step.before, [&line](std::string const& path, Value const& leaf) {
        if (!path.empty()) {
            line += "  (" + escaped(path) + " was " + escaped(catalogue::textOf(leaf)) + ')';
        }
    });
    tools::say(step.kind == Step::Kind::create   ? tools::coloured(line, tools::Colour::good)
               : step.kind == Step::Kind::remove ? tools::coloured(line, tools::Colour::bad)
                                                 : line);
}

void showFacts(std::vector<Unsettable> const& facts, bool inFull, Format format)
{
    if (inFull || format == Format::json) {
        std::ranges::for_each(facts, [format](Unsettable const& each) { show(each, format); });
    } else if (!facts.empty()) {
        note(fmt::format("{} place{} told otherwise, which nothing sets; --facts shows {}", facts.size(),
                         facts.size() == 1 ? " is" : "s are", facts.size() == 1 ? "it" : "them"));
    }
}

ExitCode applyDocument(Program::Options const& options, Value document, Application const& how)
{
    Pending const pending(options.unit);
    if (pending.isWaiting()) {
        return complain("a change waits to be confirmed until " + pending.until() +
                        "; `trsctl confirm` or `trsctl rollback` first");
    }
    Interrupt const interrupt;
    Change change(options, std::move(document));
    if (ExitCode const code = change.read(); code != ExitCode::good) {
        return code;
    }
    if (!isWanted(change.plan(), options, how.isSure)) {
        return complain("nothing is done");
    }
    auto const until =
        std::chrono::system_clock::now() + std::chrono::milliseconds(static_cast<std::int64_t>(how.minutes * 60'000));
    bool const isGuarded = how.minutes > 0;
    if (std::string const why =
            isGuarded ? pending.guard(options, change.before(), until) : pending.keep(change.before());
        !why.empty()) {
        return complain(why, ExitCode::outputLost);
    }
    ExitCode const code = change.carryOut([&](Step const& step) { showStep(step, options.format); });
    if (code != ExitCode::good) {
        if (isGuarded) {
            pending.confirm(); // which ends the guard
        }
        return undo(options, change, pending, code);
    }
    showFacts(change.left(), how.showsFacts, options.format);
    if (isGuarded) {
        note("taken back at " + catalogue::timestamp(until) + " unless `trsctl confirm` comes");
    }
    return ExitCode::good;
}

} // namespace trs::ctl
