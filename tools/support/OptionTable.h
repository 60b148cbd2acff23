// What a program takes on its command line, as data: parsing, --help, manual pages and completion all use it.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace trs::tools {

// An option, such as --count, or an argument that is known by its place, such as OBJECT.
struct Option {
    // Takes a value. Empty, or what is wrong with it.
    using Take = std::function<std::string(std::string const&)>;
    // Where the value goes, which holds the default before: to a bool for an option without a value. A vector takes
    // any number of arguments, or of options with a value each. Nowhere: the command line itself acts on the option.
    using Target = std::variant<std::monostate, bool*, int*, long*, unsigned*, unsigned long*, double*, std::string*,
                                std::vector<std::string>*, Take>;

    std::string name; // "--count", "-o,--output", or of an argument "OBJECT"
    Target target = {};
    std::string help = {};
    std::string type = {};                               // what the help calls the value
    std::vector<std::string> choices = {};               // the only values, if there are any
    std::optional<std::pair<double, double>> range = {}; // of a number, both ends included
    std::function<std::string(std::string)> check = {};  // of a text; empty, or what is wrong with it
    std::string environment = {};                        // a variable that is used without the option
    bool showsDefault = false;                           // in the help
    bool isRequired = false;
    int count = 0; // of a vector's arguments: just so many; 0: any number

    bool isArgument() const { return !name.starts_with('-'); }
    bool takesValue() const { return !std::holds_alternative<bool*>(target) && target.index() != 0; }
    bool takesSeveral() const { return std::holds_alternative<std::vector<std::string>*>(target); }
    // "--output" of "-o,--output".
    std::string_view longName() const { return std::string_view(name).substr(name.rfind(',') + 1); }
    // Whether a word of the command line is this option's name.
    bool isCalled(std::string_view word) const;
    // What the help calls the value.
    std::string valueName() const;
    // The value that the target holds before the command line is read; empty unless the help tells it.
    std::string shownDefault() const;
};

// An option whose value is one of some names, each of which stands for something that `take` is given.
template <class Meaning, class TakeMeaning>
Option choice(std::string name, std::string help, std::vector<std::pair<std::string, Meaning>> meanings,
              TakeMeaning take)
{
    Option option{.name = std::move(name), .help = std::move(help)};
    for (auto const& [word, meaning] : meanings) {
        option.choices.push_back(word);
    }
    option.target = [meanings = std::move(meanings), take = std::move(take)](std::string const& chosen) {
        for (auto const& [word, meaning] : meanings) {
            if (word == chosen) {
                take(meaning);
            }
        }
        return std::string();
    };
    return option;
}

// One of the things that a program does, chosen by its name.
struct Verb {
    std::string name;
    std::string help;
    std::string example = {}; // a command line without the program's name
    std::vector<Option> options = {};
    std::function<void()> chosen = {}; // called when the command line has it
    bool isHidden = false;             // from the help, as it is for scripts
};

struct OptionTable {
    std::string program;
    std::string description;
    std::vector<Option> options = {};
    std::deque<Verb> verbs = {};
    bool needsVerb = false;
    std::string exitCodes = {};
};

} // namespace trs::tools
