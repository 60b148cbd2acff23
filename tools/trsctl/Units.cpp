#include "tools/trsctl/Units.h"

#include "catalogue/File.h"
#include "catalogue/Text.h"
#include "tools/support/CommandLine.h"
#include "tools/support/Nearest.h"

#include <algorithm>
#include <cstdlib>
#include <fmt/format.h>
#include <sstream>

namespace trs::ctl {

namespace {

std::string readUnit(std::string const& line, std::vector<NamedUnit>& units)
{
    std::vector<std::string> words;
    if (std::string wrong = catalogue::splitWords(line, words); !wrong.empty() || words.empty()) {
        return wrong;
    }
    if (words.size() < 2) {
        return "'" + words[0] + "' has no endpoint";
    }
    if (words[0].find(':') != std::string::npos || words[0].starts_with('-')) {
        return "'" + words[0] + "' is no name: it is an endpoint or an option";
    }
    if (std::string wrong = tools::CommandLine::checkEndpoint(words[1]); !wrong.empty()) {
        return wrong;
    }
    NamedUnit unit{words[0], words[1]};
    for (auto word = words.begin() + 2; word != words.end(); ++word) {
        if (word->find('=') == std::string::npos || word->starts_with('=')) {
            return "'" + *word + "' is no label: NAME=VALUE";
        }
        unit.labels.push_back(*word);
    }
    if (std::ranges::find(units, unit.name, &NamedUnit::name) != units.end()) {
        return "'" + unit.name + "' is there twice";
    }
    units.push_back(std::move(unit));
    return {};
}

void add(NamedUnit const& unit, std::vector<NamedUnit>& chosen)
{
    if (std::ranges::find(chosen, unit.endpoint, &NamedUnit::endpoint) == chosen.end()) {
        chosen.push_back(unit);
    }
}

} // namespace

std::filesystem::path unitsFile()
{
    char const* const config = std::getenv("XDG_CONFIG_HOME");
    char const* const home = std::getenv("HOME");
    if (config != nullptr && *config == '/') {
        return std::filesystem::path(config) / "trsman/units";
    }
    return home != nullptr && *home == '/' ? std::filesystem::path(home) / ".config/trsman/units"
                                           : std::filesystem::path();
}

std::string readUnits(std::vector<NamedUnit>& units)
{
    std::filesystem::path const file = unitsFile();
    std::error_code error;
    if (file.empty() || !std::filesystem::exists(file, error)) {
        return {};
    }
    std::string text;
    if (std::string why = catalogue::readWholeFile(file.string(), text); !why.empty()) {
        return why;
    }
    std::istringstream lines(text);
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        if (std::string const wrong = readUnit(line, units); !wrong.empty()) {
            return fmt::format("{}:{}: {}", file.string(), number, wrong);
        }
    }
    return {};
}

std::string chooseUnits(std::vector<std::string> const& words, std::string const& selector,
                        std::vector<NamedUnit>& chosen)
{
    bool const needsNames = !selector.empty() || std::ranges::any_of(words, [](std::string const& word) {
        return word.find(':') == std::string::npos;
    });
    std::vector<NamedUnit> units;
    if (std::string wrong = needsNames ? readUnits(units) : ""; !wrong.empty()) {
        return wrong;
    }
    std::vector<std::string> names;
    std::ranges::transform(units, std::back_inserter(names), &NamedUnit::name);
    for (std::string const& word : words) {
        auto const named = std::ranges::find(units, word, &NamedUnit::name);
        if (named != units.end()) {
            add(*named, chosen);
        } else if (word.find(':') != std::string::npos) {
            if (std::string wrong = tools::CommandLine::checkEndpoint(word); !wrong.empty()) {
                return "--unit: " + wrong;
            }
            add({word, word}, chosen);
        } else {
            return fmt::format("--unit: '{}' is neither an endpoint, unix:PATH or tcp:HOST:PORT, nor a unit of {}{}",
                               word, unitsFile().string(), tools::didYouMean(word, names));
        }
    }
    if (selector.empty()) {
        return {};
    }
    std::size_t const before = chosen.size();
    for (NamedUnit const& unit : units) {
        bool hasAll = true;
        for (std::size_t begin = 0; begin <= selector.size();) {
            std::size_t const end = std::min(selector.find(',', begin), selector.size());
            hasAll = hasAll && std::ranges::find(unit.labels, selector.substr(begin, end - begin)) != unit.labels.end();
            begin = end + 1;
        }
        if (hasAll) {
            add(unit, chosen);
        }
    }
    return chosen.size() > before ? "" : "--selector: no unit of " + unitsFile().string() + " has '" + selector + "'";
}

} // namespace trs::ctl
