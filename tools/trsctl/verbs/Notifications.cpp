// trsctl watch and wait: what happens at a unit.
#include "broker/CallFailure.h"
#include "broker/NotificationGap.h"
#include "broker/PrintableText.h"
#include "catalogue/ConstantNames.h"
#include "catalogue/Json.h"
#include "catalogue/Text.h"
#include "catalogue/ValueText.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/support/Console.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Herd.h"
#include "tools/trsctl/Interrupt.h"
#include "tools/trsctl/Paths.h"
#include "tools/trsctl/Predicate.h"
#include "tools/trsctl/Target.h"
#include "tools/trsctl/Verbs.h"

#include <fmt/format.h>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <thread>

namespace trs::ctl {

namespace {

using catalogue::Outcome;
using catalogue::Value;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds pollInterval{100};
constexpr std::chrono::milliseconds herdInterval{2000}; // for objects that come and go

struct NotificationWords {
    std::string object;
    std::vector<std::string> operations;
    std::string where;
    double seconds = 0; // 0: without end
    unsigned long count = 0;
    bool isWait = false;
};

void show(Value const& event, Format format)
{
    if (format == Format::json) {
        tools::say(catalogue::toJson(event, -1));
        return;
    }
    bool const isGap = Feed::isGap(event);
    std::string line = catalogue::textOf(event["time"]) + ' ' + escaped(catalogue::textOf(event["object"])) + ' ';
    line += isGap ? "gap" : escaped(catalogue::textOf(event["operation"]));
    catalogue::forEachLeaf(event[isGap ? "gap" : "parameters"], [&line](std::string const& path, Value const& leaf) {
        if (!path.empty()) {
            line += ' ' + path + '=' + escaped(catalogue::textOf(leaf));
        }
    });
    tools::say(line);
}

std::optional<Clock::time_point> endOf(double seconds)
{
    if (seconds == 0) {
        return std::nullopt;
    }
    return Clock::now() + std::chrono::milliseconds(static_cast<long>(seconds * 1000));
}

void sayWatching(std::string const& what) { std::fprintf(stderr, "watching %s\n", escaped(what).c_str()); }

ExitCode readPredicate(NotificationWords const& words, std::vector<catalogue::Operation const*> const& operations,
                       Predicate& predicate)
{
    if (std::string const wrong = words.where.empty() ? "" : Predicate::parse(words.where, predicate); !wrong.empty()) {
        return complain("--where: " + wrong);
    }
    bool const isPolled = !words.operations.empty() && isPlainRead(*operations.front()) && words.isWait;
    for (std::string const& path : predicate.paths()) {
        if (std::string const wrong = whyNoPath(path, operations, !isPolled); !wrong.empty()) {
            return complain("--where: " + wrong);
        }
    }
    return ExitCode::good;
}

ExitCode readWords(Program::Options const& options, NotificationWords const& words, Target& target,
                   std::vector<catalogue::Operation const*>& operations, Predicate& predicate)
{
    if (ExitCode const code = findTarget(options, words.object, target); code != ExitCode::good) {
        return code;
    }
    for (std::string const& name : words.operations) {
        operations.push_back(findOperation(target, name));
        if (operations.back() == nullptr) {
            return ExitCode::usage;
        }
    }
    operations = operations.empty() ? changesOf(*target.type) : operations;
    return readPredicate(words, operations, predicate);
}

// What may be missing in what was shown.
class Gaps {
public:
    void add(Value const& gap)
    {
        bool const isEnd = gap.contains("lost") && gap.contains("until"); // of one that was counted
        if (!isEnd && count_++ == 0) {
            first_ = gap["since"].get<std::string>();
        }
    }
    // Says so on standard error.
    void say(std::string const& object) const
    {
        if (count_ != 0) {
            complain(fmt::format("{}: notifications may be missing: {} gap{}, the first since {}", object, count_,
                                 count_ == 1 ? "" : "s", first_),
                     ExitCode::incomplete);
        }
    }
    bool isAny() const { return count_ != 0; }

private:
    std::size_t count_ = 0;
    std::string first_;
};

// Shows `words.count` notifications that satisfy the predicate, and the gaps among them; 0: until the time is over.
// `look` is called every now and then.
ExitCode show(Feed& feed, Predicate const& predicate, NotificationWords const& words, Format format, Gaps& gaps,
              std::function<void()> const& look = nullptr)
{
    std::optional<Clock::time_point> const end = endOf(words.seconds);
    unsigned long shown = 0;
    while (words.count == 0 || shown < words.count) {
        std::optional<Clock::time_point> const next = Clock::now() + herdInterval;
        std::optional<Value> const event = feed.take(look && (!end || *next < *end) ? next : end);
        if (!event && look && !Interrupt::came() && (!end || Clock::now() < *end)) {
            look();
            continue;
        }
        if (!event) {
            break;
        }
        if (Feed::isGap(*event)) {
            show(*event, format);
            gaps.add((*event)["gap"]);
        } else if (predicate.holds((*event)["parameters"])) {
            show(*event, format);
            ++shown;
        }
    }
    return words.count == 0 || shown == words.count ? ExitCode::good : ExitCode::deadline;
}

ExitCode follow(Program::Options const& options, Target const& target,
                std::vector<catalogue::Operation const*> const& operations, Predicate const& predicate,
                NotificationWords const& words, Gaps& gaps)
{
    Feed feed(target.name.text());
    GapListener const gapListener([&feed](NotificationGap const& gap) { feed.tell(gap); });
    std::list<Listener> listeners;
    if (ExitCode const code = listen(target, operations, feed, listeners); code != ExitCode::good) {
        return code;
    }
    sayWatching(target.name.text());
    ExitCode const code = show(feed, predicate, words, options.format, gaps);
    gaps.say(target.name.text());
    return code;
}

// The same of all objects that a pattern matches.
ExitCode followPattern(Program::Options const& options, NotificationWords const& words, Gaps& gaps)
{
    Feed feed(words.object);
    GapListener const gapListener([&feed](NotificationGap const& gap) { feed.tell(gap); });
    Herd herd(options, words.object, words.operations, feed);
    if (ExitCode const code = herd.look(true); code != ExitCode::good) {
        return code;
    }
    if (herd.size() == 0) {
        note("no object is there yet that '" + words.object + "' matches");
    }
    Predicate predicate;
    if (ExitCode const code = readPredicate(words, herd.operations(), predicate); code != ExitCode::good) {
        return code;
    }
    sayWatching(fmt::format("{}: {} objects", words.object, herd.size()));
    ExitCode const code = show(feed, predicate, words, options.format, gaps, [&herd] { herd.look(false); });
    gaps.say(words.object);
    return code;
}

// Until it has shown what it was to, or is interrupted.
ExitCode watch(Program::Options const& options, NotificationWords const& words)
{
    Interrupt const interrupt;
    Gaps gaps;
    ExitCode code = ExitCode::good;
    if (words.object.find_first_of("*?") != std::string::npos) {
        code = followPattern(options, words, gaps);
    } else {
        Target target;
        std::vector<catalogue::Operation const*> operations;
        Predicate predicate;
        if (code = readWords(options, words, target, operations, predicate); code != ExitCode::good) {
            return code;
        }
        code = follow(options, target, operations, predicate, words, gaps);
    }
    bool const isOver = code == ExitCode::good || (code == ExitCode::deadline && Interrupt::came());
    return !isOver ? code : gaps.isAny() ? ExitCode::incomplete : ExitCode::good;
}

// Reads until what is read satisfies the predicate.
ExitCode poll(Program::Options const& options, Target const& target, catalogue::Operation const& operation,
              Predicate const& predicate, double seconds)
{
    std::optional<Clock::time_point> const end = endOf(seconds);
    for (;;) {
        Outcome outcome;
        {
            TreflectHandlerState const running;
            outcome = catalogue::call(target.object, operation, {});
        }
        if (outcome.kind == Outcome::Kind::done) {
            catalogue::nameConstants(*target.type, operation, outcome.results);
            if (predicate.holds(outcome.results)) {
                writeResults(outcome.results, options.format);
                return ExitCode::good;
            }
        }
        if (Interrupt::came()) {
            return ExitCode::deadline;
        }
        if (end && Clock::now() >= *end) {
            if (outcome.kind != Outcome::Kind::done) {
                return complain(target, operation, outcome);
            }
            return complain(fmt::format("{} {} does not satisfy it in time", target.name.text(), operation.name),
                            ExitCode::deadline);
        }
        std::this_thread::sleep_for(pollInterval);
    }
}

ExitCode wait(Program::Options const& options, NotificationWords const& words)
{
    Target target;
    std::vector<catalogue::Operation const*> operations;
    Predicate predicate;
    if (ExitCode const code = readWords(options, words, target, operations, predicate); code != ExitCode::good) {
        return code;
    }
    if (isPlainRead(*operations.front())) {
        return poll(options, target, *operations.front(), predicate, words.seconds);
    }
    Gaps gaps;
    ExitCode const code = follow(options, target, operations, predicate, words, gaps);
    if (code == ExitCode::deadline) {
        complain("no such notification came in time", ExitCode::deadline);
    }
    return code;
}

tools::Option whereOption(NotificationWords& words)
{
    return {.name = "--where",
            .target = &words.where,
            .help = "Only where this holds: PATH=VALUE [and ...], also != < <= > >= ~ (contains)",
            .type = "EXPRESSION"};
}

tools::Option timeOption(NotificationWords& words)
{
    return {.name = "--for",
            .target = &words.seconds,
            .help = "How long, in seconds; without end unless said",
            .type = "S",
            .range = {{0, 1e6}}};
}

} // namespace

void addNotificationsVerbs(Program& program)
{
    auto const watched = std::make_shared<NotificationWords>();
    program.add({.name = "watch",
                 .help = "Show what happens to an object, or to all that a pattern matches",
                 .example = "watch 'IfNet/**'",
                 .options =
                     {
                         Program::objectArgument(watched->object),
                         {.name = "OPERATION",
                          .target = &watched->operations,
                          .help = "Operations of which executions are shown; all that do not read"},
                         {.name = "--count", .target = &watched->count, .help = "End after so many", .type = "N"},
                         whereOption(*watched),
                         timeOption(*watched),
                     }},
                [watched](Program::Options const& options) { return watch(options, *watched); });

    auto const awaited = std::make_shared<NotificationWords>();
    awaited->count = 1;
    awaited->isWait = true;
    program.add(
        {.name = "wait",
         .help = "Wait until something happens, or something read is so",
         .example = "wait IpNode mtu --where 'mtu<1500' --for 10",
         .options =
             {
                 Program::objectArgument(awaited->object),
                 {.name = "OPERATION",
                  .target = &awaited->operations,
                  .help = "One that reads is called until what it tells is so; of another the next execution is "
                          "awaited",
                  .isRequired = true,
                  .count = 1},
                 whereOption(*awaited),
                 timeOption(*awaited),
             }},
        [awaited](Program::Options const& options) { return wait(options, *awaited); });
}

} // namespace trs::ctl
