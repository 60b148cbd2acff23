// trsctl plan, apply, confirm and rollback: a unit as a document wants it.
#include "catalogue/File.h"
#include "catalogue/Json.h"
#include "catalogue/Text.h"
#include "tools/trsctl/Application.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Confirmation.h"
#include "tools/trsctl/Interrupt.h"
#include "tools/trsctl/Pending.h"
#include "tools/trsctl/Verbs.h"

#include <memory>
#include <thread>

namespace trs::ctl {

namespace {

using catalogue::Value;

constexpr double longestConfirmation = 60.0 * 24 * 7; // minutes
constexpr std::chrono::milliseconds lookInterval{100};
constexpr std::chrono::seconds retryInterval{2};
constexpr int mostRetries = 1800; // an hour

struct ApplyWords {
    std::string file;
    bool isDry = false;
    bool showsFacts = false;
    double minutes = 0; // until it is taken back; 0: never
    bool isSure = false;
};

ExitCode readDocument(std::string const& file, Value& document)
{
    std::string text;
    std::string const why = file == "-" ? catalogue::readStandardInput(text) : catalogue::readWholeFile(file, text);
    if (!why.empty()) {
        return complain(why);
    }
    std::string const wrong = catalogue::parseJson(text, document);
    return wrong.empty() ? ExitCode::good : complain('\'' + file + "' is " + wrong);
}

ExitCode plan(Program::Options const& options, ApplyWords const& words)
{
    Value document;
    if (ExitCode const code = readDocument(words.file, document); code != ExitCode::good) {
        return code;
    }
    Change change(options, std::move(document));
    if (ExitCode const code = change.read(); code != ExitCode::good) {
        return code;
    }
    for (Step const& step : change.plan().steps) {
        showStep(step, options.format);
    }
    showFacts(change.plan().facts, words.showsFacts, options.format);
    return change.plan().steps.empty() ? ExitCode::good : ExitCode::different;
}

ExitCode apply(Program::Options const& options, ApplyWords const& words)
{
    if (words.isDry) {
        ExitCode const code = plan(options, words);
        return code == ExitCode::different ? ExitCode::good : code;
    }
    Value document;
    if (ExitCode const code = readDocument(words.file, document); code != ExitCode::good) {
        return code;
    }
    return applyDocument(options, std::move(document), {words.showsFacts, words.minutes, words.isSure});
}

ExitCode confirm(Program::Options const& options)
{
    return Pending(options.unit).confirm() ? ExitCode::good : complain("no change waits to be confirmed");
}

ExitCode rollback(Program::Options const& options)
{
    Value before;
    Pending const pending(options.unit);
    if (!pending.take(before)) {
        return complain("no change is remembered that could be taken back");
    }
    Interrupt const interrupt;
    ExitCode const code = Change::takeBack(options, before, [&](Step const& step) { showStep(step, options.format); });
    if (code != ExitCode::good) {
        pending.keep(before); // for another time
    }
    return code;
}

// The process that takes a change back: after so many seconds, unless somebody has confirmed it or taken it back.
ExitCode guard(Program::Options const& options, double seconds)
{
    Pending const pending(options.unit);
    auto const end = std::chrono::steady_clock::now() + std::chrono::milliseconds(static_cast<long>(seconds * 1000));
    std::string const own = pending.until(); // another change has another time
    while (std::chrono::steady_clock::now() < end) {
        if (!pending.isWaiting() || pending.until() != own) {
            return ExitCode::good;
        }
        std::this_thread::sleep_for(lookInterval);
    }
    Value before;
    if (pending.until() != own || !pending.takeWaiting(before)) {
        return ExitCode::good;
    }
    note(catalogue::timestamp(std::chrono::system_clock::now()) + ": nobody confirmed the change, it is taken back");
    ExitCode code = ExitCode::unreachable;
    for (int i = 0; i < mostRetries && (code == ExitCode::unreachable || code == ExitCode::deadline); ++i) {
        if (i > 0) {
            std::this_thread::sleep_for(retryInterval);
        }
        code = Change::takeBack(options, before, [&](Step const& step) { showStep(step, options.format); });
    }
    return code;
}

tools::Option documentArgument(ApplyWords& words)
{
    return {.name = "FILE",
            .target = &words.file,
            .help = "A snapshot, a part of one, or what was written by hand; - for standard input",
            .isRequired = true};
}

tools::Option factsOption(ApplyWords& words)
{
    return {.name = "--facts", .target = &words.showsFacts, .help = "Show what is told otherwise and nothing sets"};
}

} // namespace

void addApplyVerbs(Program& program)
{
    auto const words = std::make_shared<ApplyWords>();
    program.add({.name = "plan",
                 .help = "Show what brings a unit to what a file says; exit code 1 when there is something to do",
                 .example = "plan before.json",
                 .options = {documentArgument(*words), factsOption(*words)}},
                [words](Program::Options const& options) { return plan(options, *words); });
    program.add({.name = "apply",
                 .help = "Bring a unit to what a file says, or back to what it was when something fails",
                 .example = "apply before.json --confirm 5",
                 .options =
                     {
                         documentArgument(*words),
                         {.name = "--dry-run", .target = &words->isDry, .help = "Show what would be done"},
                         {.name = "--confirm",
                          .target = &words->minutes,
                          .help = "Take it back after so many minutes unless `trsctl confirm` comes, whatever becomes "
                                  "of this session",
                          .type = "MINUTES",
                          .range = {{0, longestConfirmation}}},
                         factsOption(*words),
                         yesOption(words->isSure),
                     }},
                [words](Program::Options const& options) { return apply(options, *words); });
    program.add({.name = "confirm", .help = "Keep a change that was applied with --confirm", .example = "confirm"},
                [](Program::Options const& options) { return confirm(options); });
    program.add({.name = "rollback",
                 .help = "Take the last change back that was applied to the unit, confirmed or not",
                 .example = "rollback"},
                [](Program::Options const& options) { return rollback(options); });

    auto const seconds = std::make_shared<double>(0);
    program.add({.name = "guard", // that apply --confirm starts
                 .help = "Take a change back unless it is confirmed",
                 .example = "guard 300",
                 .options = {{.name = "SECONDS", .target = seconds.get(), .help = "After so long", .isRequired = true}},
                 .isHidden = true},
                [seconds](Program::Options const& options) { return guard(options, *seconds); });
}

} // namespace trs::ctl
