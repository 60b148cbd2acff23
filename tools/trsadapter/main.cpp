// trsadapter: the site management adapter, linked to a unit, driven by commands and, when it serves, by clients.
#include "adapter/ZYN_OSServices.h"
#include "adapter/ZYN_XmlParser.h"
#include "broker/Broker.h"
#include "broker/PrintableText.h"
#include "broker/UnitValues.h"
#include "broker/transport/Endpoint.h"
#include "tools/support/CommandLine.h"
#include "tools/support/Console.h"
#include "tools/trsadapter/Adapter.h"
#include "tools/trsadapter/Service.h"

#include <chrono>
#include <cstdio>
#include <sys/stat.h>

namespace trs::adapter {

namespace {

constexpr char const* description =
    "Follows a unit's public address and sends it the certificate manager's alarms. It takes commands, one a line,\n"
    "from standard input (`help` lists them) and says what happens; the adapter's log lines go to standard error.";

constexpr char const* serveDescription =
    "Also answers site management clients, which POST their messages by HTTP, until SIGTERM or `quit`.";

constexpr int hasFailed = 1;
constexpr int longestRequestTimeout = 600000;
constexpr std::chrono::milliseconds lookInterval{2000};

struct Options {
    std::string unit = tools::CommandLine::defaultEndpoint();
    std::string alarm;
    bool once = false;
    int timeout = 5000;

    bool serves = false;
    std::string listen;
    Service::Options service;
    long sessionTimeout = 900;
    int requestTimeout = 10000;
    std::size_t logFileSize = 64;
};

std::string checkAlarm(std::string const& text)
{
    Adapter::Alarm alarm{};
    return Adapter::parse(text, alarm) ? std::string() : "'" + printable(text) + "' is not TYPE,STATE";
}

std::string checkListen(std::string const& text)
{
    Endpoint place;
    return Endpoint::parse("tcp:" + text, place).empty() ? std::string()
                                                         : "'" + printable(text) + "' is neither ADDRESS:PORT nor PORT";
}

tools::Verb serveVerb(Options& options)
{
    return {
        .name = "serve",
        .help = serveDescription,
        .options =
            {
                {.name = "--credentials",
                 .target = &options.service.credentials,
                 .help = "File of users and hashes, NAME:HASH a line, mode 0600",
                 .type = "FILE",
                 .isRequired = true},
                {.name = "--listen",
                 .target = &options.listen,
                 .help = "Where to listen, as ADDRESS:PORT or PORT on the loopback address; 0 lets the system choose\n"
                         "(default: as the site configuration says, on the loopback address unless that names one)",
                 .type = "PLACE",
                 .check = checkListen},
                {.name = "--log-dir",
                 .target = &options.service.logDirectory,
                 .help = "Directory of the compressed log",
                 .type = "DIRECTORY",
                 .showsDefault = true},
                {.name = "--log-size",
                 .target = &options.logFileSize,
                 .help = "When a log file is full, in MiB before compression",
                 .type = "MIB",
                 .range = {{1, 1024}},
                 .showsDefault = true},
                {.name = "--session-timeout",
                 .target = &options.sessionTimeout,
                 .help = "When a silent session ends, in seconds",
                 .type = "S",
                 .range = {{1, 86400}},
                 .showsDefault = true},
                {.name = "--request-timeout",
                 .target = &options.requestTimeout,
                 .help = "How long a request may take to come, in milliseconds",
                 .type = "MS",
                 .range = {{1, longestRequestTimeout}},
                 .showsDefault = true},
                {.name = "--max-body",
                 .target = &options.service.bounds.body,
                 .help = "How large a message may be, in bytes",
                 .type = "BYTES",
                 .range = {{1, ZYN_XmlParser::DOCUMENT_SIZE_MAX}},
                 .showsDefault = true},
            },
        .chosen = [&options] { options.serves = true; }};
}

void addOptions(tools::CommandLine& line, Options& options)
{
    line.add(tools::CommandLine::unitOption(options.unit));
    line.add({.name = "--alarm",
              .target = &options.alarm,
              .help = "Send this alarm at the start",
              .type = "TYPE,STATE",
              .check = checkAlarm});
    line.add(
        {.name = "--once", .target = &options.once, .help = "End after the start: 0 when all of it succeeded, else 1"});
    line.add(tools::CommandLine::timeoutOption(options.timeout));
    line.table().verbs.push_back(serveVerb(options));
}

// Asks the unit, which takes up to some calls' time.
void saySiteConfiguration()
{
    auto const text = [](bool isKnown, std::string const& value) {
        return isKnown && !value.empty() ? escaped(value) : "unknown";
    };
    auto const asked = [&text](bool (*ask)(std::string&)) {
        std::string value;
        bool const isKnown = ask(value);
        return text(isKnown, value);
    };
    long const btsId = ZYN_OSServices::getBsId();
    tools::say("site element " + text(true, ZYN_OSServices::getNEName()) + ", identifier " +
               (btsId >= 0 ? std::to_string(btsId) : "unknown"));
    tools::say("site O&M peer " + asked(ZYN_OSServices::getBTSOMIpAddress) + ", port " +
               std::to_string(ZYN_OSServices::getBTSOMPort()));
    tools::say("site addresses: public " + asked(ZYN_OSServices::getPublicIp) + ", transport " +
               asked(ZYN_OSServices::getTransportEthIp) + ", local management " +
               asked(ZYN_OSServices::getLmpIpAddress));
    tools::say("site certificates " + text(true, ZYN_OSServices::getApplnCertificateDataStore()) + ", log " +
               text(true, ZYN_OSServices::getRuemLogfilePath() + '/' + ZYN_OSServices::getRuemLogfileName()));
}

void addCommands(tools::Console& console, Adapter& adapter)
{
    using catalogue::Words;
    console.add({"alarm", "TYPE,STATE", "sends an alarm", [&adapter](catalogue::Words const& words) {
                     Adapter::Alarm alarm{};
                     std::string wrong = checkAlarm(words.front());
                     if (Adapter::parse(words.front(), alarm)) {
                         adapter.sendAlarm(alarm);
                     }
                     return wrong;
                 }});
    console.add({"announce", "", "makes the agent announce its address",
                 [&adapter](catalogue::Words const&) { return adapter.announce(); }});
    console.add({"address", "", "says the address that was applied last", [](catalogue::Words const&) {
                     std::string const address = UnitValues::instance().publicAddress();
                     tools::say(address.empty() ? "no address" : "address " + escaped(address));
                     return std::string();
                 }});
    console.add(
        {"site", "", "says what the site configuration has, some of it asked of the unit", [](catalogue::Words const&) {
             saySiteConfiguration();
             return std::string();
         }});
    console.add({"reconnect", "", "begins anew, as a unit that was away requires", [&adapter](catalogue::Words const&) {
                     adapter.connect();
                     return std::string();
                 }});
}

void addServeCommands(tools::Console& console, Sessions& sessions)
{
    using catalogue::Words;
    console.add({"session", "", "says who is logged in", [&sessions](catalogue::Words const&) {
                     std::optional<Sessions::Session> const active = sessions.active();
                     tools::say(active ? "session of " + escaped(active->user) + " from " + active->address
                                       : "no session");
                     return std::string();
                 }});
    console.add({"logout", "", "ends the session", [&sessions](catalogue::Words const&) {
                     std::optional<Sessions::Session> const active = sessions.active();
                     sessions.end(active ? active->id : std::string());
                     tools::say(active ? "session ended" : "no session");
                     return std::string();
                 }});
}

int follow(Options const& options, tools::Console& console, bool endsWithInput)
{
    Adapter adapter;
    bool succeeded = adapter.connect();
    if (Adapter::Alarm alarm{}; Adapter::parse(options.alarm, alarm)) {
        succeeded = adapter.sendAlarm(alarm) && succeeded;
    }
    if (options.once) {
        return succeeded ? 0 : hasFailed;
    }
    addCommands(console, adapter);
    console.run(endsWithInput);
    return 0;
}

std::string placeOf(Options const& options, std::string& address, int& port)
{
    if (options.listen.empty()) {
        return Service::configuredPlace(address, port);
    }
    Endpoint place;
    std::string wrong = Endpoint::parse("tcp:" + options.listen, place);
    address = place.host;
    port = place.port;
    return wrong;
}

int serve(Options const& options, tools::Console& console, bool endsWithInput)
{
    ::umask(S_IRWXG | S_IRWXO);
    Service::Options made = options.service;
    made.sessionTimeout = std::chrono::seconds(options.sessionTimeout);
    made.bounds.request = std::chrono::milliseconds(options.requestTimeout);
    made.logFileSize = options.logFileSize << 20;
    std::string why = placeOf(options, made.address, made.port);
    Service service(made);
    why = why.empty() ? service.start() : why;
    if (!why.empty()) {
        std::fprintf(stderr, "%s\n", why.c_str());
        return hasFailed;
    }
    if (Adapter::Alarm alarm{}; Adapter::parse(options.alarm, alarm)) {
        service.adapter().sendAlarm(alarm);
    }
    addCommands(console, service.adapter());
    addServeCommands(console, service.sessions());
    console.every(lookInterval, [&service] { service.look(); });
    console.run(endsWithInput);
    service.stop();
    tools::say("ended");
    return 0;
}

} // namespace

// The program. Its exit code.
static int run(int argc, char** argv)
{
    Options options;
    options.service.logDirectory = ZYN_OSServices::getRuemLogfilePath();
    tools::CommandLine line("trsadapter", description, 6);
    addOptions(line, options);
    line.takeCommands();
    if (std::optional<int> const code = line.parse(argc, argv)) {
        return *code;
    }

    Broker::setDeadline(std::chrono::milliseconds(options.timeout));
    if (std::string const why = Broker::instance().addPeer(options.unit); !why.empty()) {
        std::fprintf(stderr, "%s\n", why.c_str());
        return hasFailed;
    }
    // A unit that hangs is not waited for.
    tools::Console console("quit", [] { Broker::instance().removePeers(); });
    return options.serves ? serve(options, console, line.exitsOnEof()) : follow(options, console, line.exitsOnEof());
}

} // namespace trs::adapter

int main(int argc, char** argv)
{
    return trs::tools::runProgram([&] { return trs::adapter::run(argc, argv); });
}
