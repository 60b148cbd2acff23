#include "tools/trsctl/Confirmation.h"

#include "broker/PrintableText.h"
#include "catalogue/Collections.h"
#include "catalogue/Text.h"
#include "clients/ip/IfNetClient.h"
#include "clients/services/AdminStateClient.h"
#include "tools/trsctl/Interrupt.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <poll.h>
#include <string_view>
#include <unistd.h>

namespace trs::ctl {

namespace {

constexpr int askInterval = 100; // milliseconds between looks whether somebody interrupts

// A line of the terminal's; empty when it ends, or somebody interrupts.
std::string readAnswer()
{
    std::string answer;
    while (!Interrupt::came()) {
        pollfd ready{STDIN_FILENO, POLLIN, 0};
        char key = 0;
        if (::poll(&ready, 1, askInterval) <= 0) {
            continue;
        }
        if (::read(STDIN_FILENO, &key, 1) != 1 || key == '\n') {
            return answer;
        }
        answer += key;
    }
    return {};
}

} // namespace

bool destroys(catalogue::Class const& type, catalogue::Operation const& operation,
              std::vector<catalogue::Value> const& in)
{
    constexpr std::array<std::string_view, 5> words{"delete", "destroy", "reset", "removeAll", "clear"};
    std::optional<long> const number =
        !in.empty() && in[0].is_number_integer() ? std::optional(in[0].get<long>()) : std::nullopt;
    bool const takesDown = number && operation.name == "setFlags" && (*number & IfNetClient::IFF__UP) == 0;
    bool const locks = number && operation.name == "set" && catalogue::isOf(&type, "AdminStateClient") &&
                       (*number == AdminStateClient::LOCKED || *number == AdminStateClient::SHUTTING_DOWN);
    return takesDown || locks ||
           std::ranges::any_of(words, [&](std::string_view each) { return operation.name.starts_with(each); });
}

bool canAsk() { return ::isatty(STDIN_FILENO) == 1 && ::isatty(STDERR_FILENO) == 1; }

bool isConfirmed(std::string const& what, bool isSure)
{
    if (isSure || !canAsk()) {
        return true;
    }
    std::fprintf(stderr, "%s: sure? [y/N] ", escaped(what).c_str());
    std::string const answer = readAnswer();
    return catalogue::isSameWord(answer, "y") || catalogue::isSameWord(answer, "yes");
}

tools::Option yesOption(bool& isSure)
{
    return {.name = "--yes",
            .target = &isSure,
            .help = "Do not ask at a terminal before something is deleted, reset or taken down"};
}

} // namespace trs::ctl
