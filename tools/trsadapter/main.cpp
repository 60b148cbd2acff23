// trsadapter: the site management adapter's link to a unit, driven by commands.
#include "platform/host/Broker.h"
#include "platform/host/CallFailure.h"
#include "platform/host/UnitValues.h"
#include "tools/support/CommandLine.h"
#include "tools/support/Console.h"
#include "tools/trsadapter/Adapter.h"

#include <chrono>
#include <cstdio>

namespace {

constexpr char const* description =
    "Follows a unit's public address and sends it the certificate manager's alarms. It takes commands, one a line,\n"
    "from standard input (`help` lists them) and says what happens; the adapter's log lines go to standard error.";

constexpr int hasFailed = 1;
constexpr int longestTimeout = 600000;

std::string checkAlarm(std::string const& text)
{
    Adapter::Alarm alarm{};
    return Adapter::parse(text, alarm) ? std::string() : "'" + host::printable(text) + "' is not TYPE,STATE";
}

void addCommands(tools::Console& console, Adapter& adapter)
{
    using tools::Words;
    console.add({"alarm", "TYPE,STATE", "sends an alarm", [&adapter](Words const& words) {
                     Adapter::Alarm alarm{};
                     std::string wrong = checkAlarm(words.front());
                     if (Adapter::parse(words.front(), alarm)) {
                         adapter.sendAlarm(alarm);
                     }
                     return wrong;
                 }});
    console.add({"announce", "", "makes the agent announce its address",
                 [&adapter](Words const&) { return adapter.announce(); }});
    console.add({"address", "", "says the address that was applied last", [](Words const&) {
                     std::string const address = host::UnitValues::instance().publicAddress();
                     tools::say(address.empty() ? "no address" : "address " + host::printable(address));
                     return std::string();
                 }});
    console.add({"reconnect", "", "begins anew, as a unit that was away requires", [&adapter](Words const&) {
                     adapter.connect();
                     return std::string();
                 }});
}

} // namespace

int main(int argc, char** argv)
{
    std::string unit = tools::CommandLine::defaultEndpoint();
    std::string alarmText;
    bool once = false;
    int timeout = 5000;
    tools::CommandLine line("trsadapter", description, 6);
    line.options()
        .add_option("--unit", unit, "Where the unit serves (default: " + unit + ")")
        ->envname("TRS_UNIT")
        ->type_name("ENDPOINT")
        ->check(CLI::Validator(tools::CommandLine::checkEndpoint, ""));
    line.options()
        .add_option("--alarm", alarmText, "Send this alarm at the start")
        ->type_name("TYPE,STATE")
        ->check(CLI::Validator(checkAlarm, ""));
    line.options().add_flag("--once", once, "End after the start: 0 when all of it succeeded, else 1");
    line.options()
        .add_option("--timeout", timeout, "How long a call may take, in milliseconds")
        ->type_name("MS")
        ->capture_default_str()
        ->check(CLI::Range(1, longestTimeout).description(""));
    line.takeCommands();
    if (std::optional<int> const code = line.parse(argc, argv)) {
        return *code;
    }

    tools::Console console("quit");
    host::Broker& broker = host::Broker::instance();
    host::Broker::setDeadline(std::chrono::milliseconds(timeout));
    if (std::string const why = broker.addPeer(unit); !why.empty()) {
        std::fprintf(stderr, "%s\n", why.c_str());
        return hasFailed;
    }
    Adapter adapter;
    bool succeeded = adapter.connect();
    if (Adapter::Alarm alarm{}; Adapter::parse(alarmText, alarm)) {
        succeeded = adapter.sendAlarm(alarm) && succeeded;
    }
    if (once) {
        return succeeded ? 0 : hasFailed;
    }
    addCommands(console, adapter);
    console.run(line.exitsOnEof());
    return 0;
}
