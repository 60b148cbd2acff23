// trsctl watch and wait: what happens at a unit.
#include "broker/CallFailure.h"
#include "broker/NotificationGap.h"
#include "broker/PrintableText.h"
#include "broker/calls/Observation.h"
#include "catalogue/ConstantNames.h"
#include "catalogue/Json.h"
#include "catalogue/MessageText.h"
#include "catalogue/Text.h"
#include "catalogue/ValueText.h"
#include "platform/TreflectObserver.h"
#include "rmi/TipprmiAny.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/support/Console.h"
#include "tools/trsctl/Feed.h"
#include "tools/trsctl/Interrupt.h"
#include "tools/trsctl/Predicate.h"
#include "tools/trsctl/Target.h"
#include "tools/trsctl/Verbs.h"

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

struct NotificationWords {
    std::string object;
    std::vector<std::string> operations;
    std::string where;
    double seconds = 0; // 0: without end
    unsigned long count = 0;
};

// Tells a feed of the executions of one operation.
class Listener final : public TreflectObserver {
public:
    Listener(Target const& target, catalogue::Operation const& operation, Feed& feed)
        : TreflectObserver(target.object.getOID(), nullptr, "trsctl"), name_(target.name.text()), operation_(operation),
          feed_(feed)
    {
    }
    ~Listener() override { withdraw(); }

    bool detected() override { return true; }
    bool notify(TipprmiSequence<TipprmiAny> const& parameters) override
    {
        Value values = catalogue::unpackParameters(operation_, parameters);
        catalogue::nameConstants(operation_, values);
        feed_.put({{"time", catalogue::timestamp(std::chrono::system_clock::now())},
                   {"object", name_},
                   {"operation", operation_.name},
                   {"parameters", std::move(values)}});
        return true;
    }

private:
    std::string const name_;
    catalogue::Operation const& operation_;
    Feed& feed_;
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

// Why an object cannot be observed.
Outcome whyNotObserved()
{
    Outcome outcome;
    outcome.kind = Outcome::Kind::failed;
    outcome.failure = lastCallFailure();
    return outcome;
}

// Has the feed told of the operations. What is wrong is said.
ExitCode listen(Target const& target, std::vector<catalogue::Operation const*> const& operations, Feed& feed,
                std::list<Listener>& listeners)
{
    TreflectHandlerState const running;
    for (catalogue::Operation const* const operation : operations) {
        Listener& listener = listeners.emplace_back(target, *operation, feed);
        if (!observe(target.object, operation->classId, operation->index, listener)) {
            return complain(target, *operation, whyNotObserved());
        }
    }
    std::fprintf(stderr, "watching %s\n", target.name.text().c_str());
    return ExitCode::good;
}

ExitCode readWords(Program::Options const& options, NotificationWords const& words, Target& target,
                   std::vector<catalogue::Operation const*>& operations, Predicate& predicate)
{
    if (std::string const wrong = words.where.empty() ? "" : Predicate::parse(words.where, predicate); !wrong.empty()) {
        std::fprintf(stderr, "--where: %s\n", wrong.c_str());
        return ExitCode::usage;
    }
    if (ExitCode const code = findTarget(options, words.object, target); code != ExitCode::good) {
        return code;
    }
    for (std::string const& name : words.operations) {
        operations.push_back(findOperation(target, name));
        if (operations.back() == nullptr) {
            return ExitCode::usage;
        }
    }
    if (operations.empty()) {
        operations = target.type->operations();
        std::erase_if(operations,
                      [](catalogue::Operation const* each) { return kindOf(*each) == catalogue::OperationKind::read; });
    }
    return ExitCode::good;
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
    void say(Target const& target) const
    {
        if (count_ != 0) {
            std::fprintf(stderr, "%s: notifications may be missing: %zu gap%s, the first since %s\n",
                         target.name.text().c_str(), count_, count_ == 1 ? "" : "s", first_.c_str());
        }
    }
    bool isAny() const { return count_ != 0; }

private:
    std::size_t count_ = 0;
    std::string first_;
};

// Shows `words.count` notifications that satisfy the predicate, and the gaps among them; 0: until the time is over.
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
    std::optional<Clock::time_point> const end = endOf(words.seconds);
    unsigned long shown = 0;
    while (words.count == 0 || shown < words.count) {
        std::optional<Value> const event = feed.take(end);
        if (!event) {
            break;
        }
        if (Feed::isGap(*event)) {
            show(*event, options.format);
            gaps.add((*event)["gap"]);
        } else if (predicate.holds((*event)["parameters"])) {
            show(*event, options.format);
            ++shown;
        }
    }
    gaps.say(target);
    return words.count == 0 || shown == words.count ? ExitCode::good : ExitCode::deadline;
}

// Until it has shown what it was to, or is interrupted.
ExitCode watch(Program::Options const& options, NotificationWords const& words)
{
    Target target;
    std::vector<catalogue::Operation const*> operations;
    Predicate predicate;
    if (ExitCode const code = readWords(options, words, target, operations, predicate); code != ExitCode::good) {
        return code;
    }
    Interrupt const interrupt;
    Gaps gaps;
    ExitCode const code = follow(options, target, operations, predicate, words, gaps);
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
            catalogue::nameConstants(operation, outcome.results);
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
            std::fprintf(stderr, "%s %s does not satisfy it in time\n", target.name.text().c_str(),
                         std::string(operation.name).c_str());
            return ExitCode::deadline;
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
        std::fprintf(stderr, "no such notification came in time\n");
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
                 .help = "Show what happens to an object",
                 .example = "watch NmiRmiAdapterServer notifyPublicIpAddrChangeRmi",
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
