#include "catalogue/Text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <ctime>
#include <fmt/format.h>

namespace trs::catalogue {

namespace {

bool isBlank(char character) { return character == ' ' || character == '\t' || character == '\r'; }

// What a backslash and a character stand for: in double quotes it stays before those that it does not keep from
// anything.
std::string escaped(char character, char quote)
{
    bool const isKept = quote == '"' && std::string_view("\"\\$`").find(character) == std::string_view::npos;
    return (isKept ? "\\" : "") + std::string(1, character);
}

} // namespace

std::string splitWords(std::string_view line, Words& words)
{
    bool isInWord = false;
    char quote = 0; // that is open
    std::size_t opened = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        char const each = line[i];
        if (quote == 0 && isBlank(each)) {
            isInWord = false;
            continue;
        }
        if (!isInWord && each == '#') {
            return {};
        }
        if (!isInWord) {
            words.emplace_back();
            isInWord = true;
        }
        if (quote != 0 && each == quote) {
            quote = 0;
        } else if (quote == 0 && (each == '\'' || each == '"')) {
            quote = each;
            opened = i;
        } else if (each != '\\' || quote == '\'') {
            words.back() += each;
        } else if (++i == line.size()) {
            return "a backslash ends the line";
        } else {
            words.back() += escaped(line[i], quote);
        }
    }
    return quote == 0 ? "" : "the quote that opens '" + std::string(line.substr(opened + 1)) + "' is not closed";
}

bool isSameWord(std::string_view one, std::string_view other)
{
    return std::ranges::equal(one, other,
                              [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
}

bool parseNumber(std::string_view text, long least, long most, long& number)
{
    long parsed = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), parsed);
    if (error != std::errc() || end != text.data() + text.size() || parsed < least || parsed > most) {
        return false;
    }
    number = parsed;
    return true;
}

std::string timestamp(std::chrono::system_clock::time_point time)
{
    auto const seconds = std::chrono::floor<std::chrono::seconds>(time);
    std::time_t const whole = std::chrono::system_clock::to_time_t(seconds);
    tm parts{};
    ::gmtime_r(&whole, &parts);
    std::array<char, sizeof "2000-01-01T00:00:00"> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts);
    auto const rest = std::chrono::duration_cast<std::chrono::milliseconds>(time - seconds);
    return fmt::format("{}.{:03}Z", text.data(), rest.count());
}

} // namespace trs::catalogue
