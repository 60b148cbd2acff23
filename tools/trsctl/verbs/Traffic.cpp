// trsctl trace, capture, decode and stats: what passes between management processes and a unit.
#include "broker/PrintableText.h"
#include "catalogue/File.h"
#include "catalogue/Json.h"
#include "catalogue/Text.h"
#include "catalogue/ValueText.h"
#include "tools/support/Colour.h"
#include "tools/support/StandardStreams.h"
#include "tools/traffic/Capture.h"
#include "tools/traffic/Dissector.h"
#include "tools/traffic/Relay.h"
#include "tools/traffic/Statistics.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Program.h"
#include "tools/trsctl/Svg.h"
#include "tools/trsctl/Verbs.h"

#include <algorithm>
#include <cstdio>
#include <fmt/format.h>
#include <fnmatch.h>
#include <memory>

namespace trs::ctl {

namespace {

using traffic::Direction;
using traffic::Packet;
using traffic::Traffic;
using Told = traffic::Conversation::Told;

struct TrafficWords {
    std::string listen;
    std::string file;
    unsigned long count = 0; // 0: without end
    double seconds = 0;      // 0: without end
    std::string svg;         // a file to draw to
    std::string object;      // patterns; empty: any
    std::string operation;
    std::string status;
    double longest = 0; // of replies that are passed over, in milliseconds

    // Whether a message is one that somebody wants to see. Only replies have a status and a duration.
    bool areMet(Told const& told) const
    {
        auto const matches = [&told](std::string const& pattern, char const* name) {
            return pattern.empty() || (told.value.contains(name) &&
                                       ::fnmatch(pattern.c_str(), catalogue::textOf(told.value[name]).c_str(), 0) == 0);
        };
        bool const isShort =
            longest > 0 &&
            (!told.duration || std::chrono::duration<double, std::milli>(*told.duration).count() <= longest);
        return matches(object, "object") && matches(operation, "operation") && matches(status, "status") && !isShort;
    }
};

// Messages as a drawing shows them.
class Drawing {
public:
    static constexpr std::size_t mostArrows = 2000;

    void add(Packet const& packet, Told const& told)
    {
        if (arrows_.size() >= mostArrows) {
            return;
        }
        std::string const client = fmt::format("connection {}", packet.connection);
        bool const isRequest = packet.direction == Direction::toUnit;
        std::string label = told.value.contains("operation") ? catalogue::textOf(told.value["operation"])
                                                             : catalogue::textOf(told.value["kind"]);
        if (!isRequest && told.value.contains("status")) {
            label += ' ' + catalogue::textOf(told.value["status"]);
        }
        if (told.duration) {
            label +=
                fmt::format(" {} us", std::chrono::duration_cast<std::chrono::microseconds>(*told.duration).count());
        }
        if (isRequest && told.value.contains("object")) {
            label += ' ' + catalogue::textOf(told.value["object"]);
        }
        bool const isBad =
            told.value.contains("wrong") || (told.value.contains("status") && told.value["status"] != "done");
        arrows_.push_back({isRequest ? client : "unit", isRequest ? "unit" : client, std::move(label),
                           catalogue::timestamp(packet.time).substr(11), isBad});
    }
    // An exit code that is not good is complained about.
    ExitCode write(std::string const& file, std::string const& title) const
    {
        std::error_code const error = catalogue::writeWholeFile(file, sequenceSvg(title, arrows_));
        return error ? complain(catalogue::whyNotWritten(file, error),
                                catalogue::isFull(error) ? ExitCode::outputLost : ExitCode::usage)
                     : ExitCode::good;
    }

private:
    std::vector<Arrow> arrows_;
};

void show(Packet const& packet, Told const& told, Format format)
{
    catalogue::Value line{{"time", catalogue::timestamp(packet.time)},
                          {"connection", packet.connection},
                          {"direction", packet.direction == Direction::toUnit ? "to unit" : "from unit"}};
    line.update(told.value);
    if (told.duration) {
        line["microseconds"] = std::chrono::duration_cast<std::chrono::microseconds>(*told.duration).count();
    }
    if (format == Format::json) {
        tools::say(catalogue::toJson(line, -1));
        return;
    }
    std::string text;
    catalogue::forEachLeaf(line, [&text](std::string const& path, catalogue::Value const& value) {
        constexpr std::string_view plain[] = {"time", "direction", "kind", "object", "operation", "status"};
        bool const isPlain = std::ranges::find(plain, path) != std::end(plain);
        std::string const leaf = catalogue::textOf(value);
        std::string word = escaped(isPlain ? leaf : path + '=' + leaf);
        if (path == "status" || path == "wrong") {
            word = tools::coloured(word, leaf == "done" ? tools::Colour::good : tools::Colour::bad);
        } else if (path == "object" || path == "operation") {
            word = tools::coloured(word, tools::Colour::name);
        } else if (path == "time" || path == "connection" || path == "microseconds") {
            word = tools::coloured(word, tools::Colour::aside);
        }
        text += (text.empty() ? "" : " ") + word;
    });
    tools::say(text);
}

// Relays until the words say that it is enough.
ExitCode relay(Program::Options const& options, TrafficWords const& words, Traffic::Act const& act)
{
    Endpoint listen;
    Endpoint unit;
    std::string wrong = Endpoint::parse(words.listen, listen);
    wrong = wrong.empty() ? Endpoint::parse(options.unit, unit) : wrong;
    if (!wrong.empty()) {
        return complain(wrong);
    }
    unsigned long seen = 0;
    Traffic carried([&](Packet const& packet, Told const& told) {
        return !words.areMet(told) || (act(packet, told) && ++seen != words.count);
    });
    traffic::Relay relay(
        listen, unit,
        [&carried](std::uint32_t connection, Direction direction, std::string_view bytes) {
            return carried.pass(connection, direction, bytes);
        },
        [](std::string const& why) { complain(why, ExitCode::unreachable); });
    if (std::string const why = relay.open(); !why.empty()) {
        return complain(why);
    }
    std::fprintf(stderr, "relaying %s to %s\n", relay.endpoint().c_str(), options.unit.c_str());
    relay.run(words.seconds == 0 ? std::nullopt
                                 : std::optional(std::chrono::milliseconds(static_cast<long>(words.seconds * 1000))));
    return ExitCode::good;
}

ExitCode decode(TrafficWords const& words, Traffic::Act const& act)
{
    std::string const wrong = traffic::readCapture(
        words.file, [&](Packet const& packet, Told const& told) { return !words.areMet(told) || act(packet, told); });
    return wrong.empty() ? ExitCode::good : complain(wrong);
}

ExitCode capture(Program::Options const& options, TrafficWords const& words)
{
    traffic::CaptureWriter writer;
    if (std::string const why = writer.open(words.file); !why.empty()) {
        return complain(why);
    }
    std::error_code error;
    ExitCode const code = relay(options, words, [&](Packet const& packet, Told const&) {
        error = writer.write(packet);
        return !error;
    });
    if (!error) {
        return code;
    }
    complain("'" + words.file + "' takes no more: " + error.message() + "; it has all messages before");
    return ExitCode::outputLost;
}

ExitCode stats(Program::Options const& options, TrafficWords const& words)
{
    if (words.file.empty() == words.listen.empty()) {
        return complain("either FILE or --listen is needed");
    }
    traffic::Statistics statistics;
    auto const add = [&statistics](Packet const& packet, Told const& told) {
        statistics.add(packet, told);
        return true;
    };
    ExitCode const code = words.file.empty() ? relay(options, words, add) : decode(words, add);
    writeRows(traffic::Statistics::head(), statistics.rows(), options.format);
    return code;
}

// Shows what passes or passed, and draws it when that is wanted.
ExitCode showTraffic(Program::Options const& options, TrafficWords const& words)
{
    Drawing drawing;
    Traffic::Act const act = [&](Packet const& packet, Told const& told) {
        drawing.add(packet, told);
        show(packet, told, options.format);
        return !tools::isOutputGone();
    };
    ExitCode const code = words.file.empty() ? relay(options, words, act) : decode(words, act);
    std::string const title = words.file.empty() ? "Calls of " + options.unit : "Calls in " + words.file;
    ExitCode const drawn = words.svg.empty() ? ExitCode::good : drawing.write(words.svg, title);
    return code == ExitCode::good ? drawn : code;
}

// What a verb shows or counts, and what it does not.
std::vector<tools::Option> filterOptions(TrafficWords& words, std::vector<tools::Option> options)
{
    options.push_back({.name = "--object",
                       .target = &words.object,
                       .help = "Only messages about objects whose identifiers match, with * and ?",
                       .type = "PATTERN"});
    options.push_back({.name = "--operation",
                       .target = &words.operation,
                       .help = "Only operations that match, such as 'IfNetClient.set*'",
                       .type = "PATTERN"});
    options.push_back({.name = "--status",
                       .target = &words.status,
                       .help = "Only replies of a status that matches: done, refused, 'no such *'",
                       .type = "PATTERN"});
    options.push_back({.name = "--longer-than",
                       .target = &words.longest,
                       .help = "Only replies that took longer, in milliseconds",
                       .type = "MS",
                       .range = {{0, 1e9}}});
    return options;
}

tools::Option svgOption(TrafficWords& words)
{
    return {.name = "--svg",
            .target = &words.svg,
            .help = "Draw who told whom what, to a file that browsers show; the first 2000 messages",
            .type = "FILE"};
}

// The options of a verb that relays, and more.
std::vector<tools::Option> relayOptions(TrafficWords& words, bool isRequired, std::vector<tools::Option> more = {})
{
    std::vector<tools::Option> options{
        {.name = "--listen",
         .target = &words.listen,
         .help = "Where management processes connect instead of to the unit",
         .type = "ENDPOINT",
         .check = tools::CommandLine::checkEndpoint,
         .isRequired = isRequired},
        {.name = "--count", .target = &words.count, .help = "End after so many messages", .type = "N"},
        {.name = "--for",
         .target = &words.seconds,
         .help = "How long, in seconds; until it is interrupted unless said",
         .type = "S",
         .range = {{0, 1e6}}},
    };
    options.insert(options.begin(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    return options;
}

tools::Option fileArgument(TrafficWords& words, bool isRequired)
{
    return {
        .name = "FILE", .target = &words.file, .help = "A capture, or - for standard input", .isRequired = isRequired};
}

} // namespace

void addTrafficVerbs(Program& program)
{
    auto const traced = std::make_shared<TrafficWords>();
    program.add({.name = "trace",
                 .help = "Show what passes, message by message",
                 .example = "trace --listen unix:/tmp/traced.sock",
                 .options = filterOptions(*traced, relayOptions(*traced, true, {svgOption(*traced)}))},
                [traced](Program::Options const& options) { return showTraffic(options, *traced); });

    auto const captured = std::make_shared<TrafficWords>();
    program.add({.name = "capture",
                 .help = "Write what passes to a file for packet analysers",
                 .example = "capture --listen unix:/tmp/traced.sock -w unit.pcapng",
                 .options = relayOptions(*captured, true,
                                         {{.name = "-w,--write",
                                           .target = &captured->file,
                                           .help = "The file, in pcapng format",
                                           .type = "FILE",
                                           .isRequired = true}})},
                [captured](Program::Options const& options) { return capture(options, *captured); });

    auto const decoded = std::make_shared<TrafficWords>();
    program.add(
        {.name = "decode",
         .help = "Show a capture as trace does",
         .example = "decode unit.pcapng",
         .options = filterOptions(*decoded, {fileArgument(*decoded, true), svgOption(*decoded)})},
        [decoded](Program::Options const& options) { return showTraffic(options, *decoded); }, Program::Units::none);

    auto const counted = std::make_shared<TrafficWords>();
    program.add({.name = "stats",
                 .help = "Count calls by operation: errors, times, bytes",
                 .example = "stats unit.pcapng",
                 .options = filterOptions(*counted, relayOptions(*counted, false, {fileArgument(*counted, false)}))},
                [counted](Program::Options const& options) { return stats(options, *counted); });

    program.add(
        {.name = "dissector",
         .help = "Write what has packet analysers show captures in the catalogue's words, in Lua",
         .example = "dissector >trsman.lua && tshark -X lua_script:trsman.lua -r unit.pcapng"},
        [](Program::Options const&) {
            tools::print(traffic::dissector());
            return ExitCode::good;
        },
        Program::Units::none);
}

} // namespace trs::ctl
