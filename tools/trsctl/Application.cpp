#include "tools/trsctl/Application.h"

#include "broker/PrintableText.h"
#include "catalogue/Json.h"
#include "catalogue/Text.h"
#include "catalogue/ValueText.h"
#include "tools/support/Colour.h"
#include "tools/support/StandardStreams.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Interrupt.h"
#include "tools/trsctl/Pending.h"

#include <algorithm>
#include <chrono>
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

// Takes a change back that was begun, because of what `code` tells.
ExitCode undo(Program::Options const& options, Value const& before, ExitCode code)
{
    note("what was done is taken back");
    ExitCode const end = Change::takeBack(options, before, [&](Step const& step) { showStep(step, options.format); });
    return end == ExitCode::good ? code : complain("not all of it is taken back", end, "unknown");
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
        pending.forget();
        return undo(options, change.before(), code);
    }
    showFacts(change.left(), how.showsFacts, options.format);
    if (isGuarded) {
        note("taken back at " + catalogue::timestamp(until) + " unless `trsctl confirm` comes");
    }
    return ExitCode::good;
}

} // namespace trs::ctl
