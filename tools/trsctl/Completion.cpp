// trsctl completion: what the shells complete.
#include "tools/trsctl/Completion.h"

#include "rmi/TreflectHandlerState.h"
#include "tools/support/Console.h"
#include "tools/trsctl/References.h"
#include "tools/trsctl/Verbs.h"

#include <algorithm>
#include <deque>
#include <memory>
#include <set>

namespace {

using catalogue::Class;
using catalogue::ObjectName;
using catalogue::Operation;
using catalogue::Outcome;

constexpr int patience = 300; // milliseconds that a call may take
constexpr std::size_t mostObjects = 2000;

constexpr char const* bashScript = R"(# bash completion of trsctl
_trsctl()
{
    local line=${COMP_LINE:0:COMP_POINT} words
    read -ra words <<<"$line"
    [[ $line == *[[:space:]] ]] && words+=("")
    local IFS=$'\n'
    COMPREPLY=($(trsctl complete -- "${words[@]:1}" 2>/dev/null))
    # What stands before the last colon or equals sign is a word of its own to bash.
    local typed=${words[-1]} kept=
    [[ $typed == *[:=]* ]] && kept=${typed%"${typed##*[:=]}"}
    COMPREPLY=("${COMPREPLY[@]#"$kept"}")
}
complete -o default -F _trsctl trsctl
)";

constexpr char const* zshScript = R"(#compdef trsctl
_trsctl()
{
    local -a found
    found=("${(@f)$(trsctl complete -- "${(@)words[2,CURRENT]}" 2>/dev/null)}")
    if (( ${#found[1]} )); then
        compadd -- "${found[@]}"
    else
        _files
    fi
}
compdef _trsctl trsctl
)";

constexpr char const* fishScript = R"(# fish completion of trsctl
complete -c trsctl -a '(trsctl complete -- (commandline -opc)[2..-1] (commandline -ct) 2>/dev/null)'
)";

// The objects that reading operations lead to.
std::vector<std::string> objectsOf(Program::Options options)
{
    options.timeout = std::min(options.timeout, patience);
    options.wait = 0;
    std::vector<std::string> found{"IpNode", "NmiRmiAdapterServer", "Simulator"};
    Unit const unit = options.unitOf();
    Unit::Target target;
    if (unit.connect("IpNode", target) != ExitCode::good) {
        return found;
    }
    TreflectHandlerState const running;
    std::set<std::string> seen{"IpNode"};
    std::deque<Unit::Target> waiting{target};
    for (; !waiting.empty() && found.size() < mostObjects; waiting.pop_front()) {
        for (Operation const* const operation : waiting.front().type->operations()) {
            Outcome const outcome =
                operation->isReading() ? catalogue::call(waiting.front().object, *operation, {}) : Outcome();
            if (outcome.kind == Outcome::Kind::failed &&
                outcome.failure.kind == host::CallFailure::Kind::notConnected) {
                return found;
            }
            if (outcome.kind != Outcome::Kind::done) {
                continue;
            }
            for (std::string const& text : referencesIn(*operation, outcome.results)) {
                ObjectName name;
                ObjectName::parse(text, name);
                Class const* const type = catalogue::findClass(name.className);
                if (type != nullptr && seen.insert(name.id).second) {
                    found.push_back(text);
                    waiting.push_back({name, type, TipprmiObjectClient(TipprmiOID(name.id))});
                }
            }
        }
    }
    return found;
}

std::vector<std::string> classes()
{
    std::vector<std::string> names;
    for (Class const* const each : catalogue::classes()) {
        names.emplace_back(each->interface);
    }
    return names;
}

std::vector<std::string> operationsOf(std::string const& object)
{
    ObjectName name;
    Class const* const type = ObjectName::parse(object, name).empty() ? catalogue::findClass(name.className) : nullptr;
    std::vector<std::string> names;
    for (Operation const* const each : type != nullptr ? type->operations() : std::vector<Operation const*>()) {
        names.emplace_back(each->name);
    }
    return names;
}

// "CLASS", and behind a dot its operations.
std::vector<std::string> classesOrOperations(std::string const& typed)
{
    std::size_t const dot = typed.find('.');
    Class const* const type = dot != std::string::npos ? catalogue::findClass(typed.substr(0, dot)) : nullptr;
    if (type == nullptr) {
        return classes();
    }
    std::vector<std::string> names;
    for (Operation const* const each : type->operations()) {
        names.push_back(typed.substr(0, dot + 1) + std::string(each->name));
    }
    return names;
}

// An option's choices, "text|json|table".
std::vector<std::string> choicesOf(CLI::Option const& option)
{
    std::vector<std::string> choices;
    std::string const type = option.get_type_name();
    for (std::size_t begin = 0; type.find('|') != std::string::npos && begin <= type.size();) {
        std::size_t const end = std::min(type.find('|', begin), type.size());
        choices.push_back(type.substr(begin, end - begin));
        begin = end + 1;
    }
    return choices;
}

CLI::Option const* optionOf(std::vector<CLI::App const*> const& apps, std::string const& word)
{
    for (CLI::App const* const app : apps) {
        if (CLI::Option const* const found = word.starts_with('-') ? app->get_option_no_throw(word) : nullptr) {
            return found;
        }
    }
    return nullptr;
}

// What was typed before the word to be completed.
struct Typed {
    std::vector<CLI::App const*> apps;    // the program, and the verb if there is one
    std::vector<std::string> positionals; // of the verb
    CLI::Option const* open = nullptr;    // an option whose value comes next
};

Typed read(CLI::App const& program, std::vector<std::string> const& words, Program::Options& options)
{
    Typed typed{{&program}, {}, nullptr};
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
        if (typed.open != nullptr) {
            options.unit = typed.open->get_name() == "--unit" ? words[i] : options.unit;
            typed.open = nullptr;
        } else if (CLI::Option const* const option = optionOf(typed.apps, words[i])) {
            typed.open = option->get_type_size() != 0 ? option : nullptr;
        } else if (typed.apps.size() == 1) {
            auto const verbs =
                program.get_subcommands([&](CLI::App const* each) { return each->get_name() == words[i]; });
            typed.apps.insert(typed.apps.end(), verbs.begin(), verbs.end());
        } else {
            typed.positionals.push_back(words[i]);
        }
    }
    return typed;
}

std::vector<std::string> optionNames(std::vector<CLI::App const*> const& apps)
{
    std::vector<std::string> names;
    for (CLI::App const* const app : apps) {
        for (CLI::Option const* const option : app->get_options()) {
            if (!option->get_group().empty() && option->nonpositional()) {
                names.push_back("--" + option->get_lnames().front());
            }
        }
    }
    return names;
}

std::vector<std::string> candidates(Typed const& typed, std::string const& word, Program::Options const& options)
{
    std::vector<std::string> found;
    if (typed.open != nullptr) {
        return choicesOf(*typed.open);
    }
    if (word.starts_with('-')) {
        return optionNames(typed.apps);
    }
    if (typed.apps.size() == 1) {
        for (CLI::App const* const verb : typed.apps.front()->get_subcommands({})) {
            found.push_back(verb->get_group().empty() ? "" : verb->get_name());
        }
        return found;
    }
    std::vector<CLI::Option const*> places =
        typed.apps.back()->get_options([](CLI::Option const* each) { return each->get_positional(); });
    if (places.empty()) {
        return found;
    }
    std::size_t const place = std::min(typed.positionals.size(), places.size() - 1);
    std::string const kind = places[place]->get_name();
    if (kind == "OBJECT") {
        return objectsOf(options);
    }
    if (kind == "OPERATION" || kind == "NAME") {
        return operationsOf(typed.positionals.empty() ? "" : typed.positionals.front());
    }
    return kind == "CLASS"               ? classes()
           : kind == "CLASS[.OPERATION]" ? classesOrOperations(word)
                                         : choicesOf(*places[place]);
}

ExitCode writeScript(std::string const& shell)
{
    tools::say(shell == "bash" ? bashScript : shell == "zsh" ? zshScript : fishScript);
    return ExitCode::good;
}

} // namespace

std::vector<std::string> completions(Program& program, std::vector<std::string> const& words)
{
    std::string const word = words.empty() ? "" : words.back();
    Program::Options options = program.shared();
    Typed const typed = read(program.options(), words, options);
    std::vector<std::string> found = candidates(typed, word, options);
    std::set<std::string> seen;
    std::erase_if(found, [&](std::string const& each) {
        return each.empty() || !each.starts_with(word) || !seen.insert(each).second;
    });
    return found;
}

void addCompletionVerbs(Program& program)
{
    auto const shell = std::make_shared<std::string>();
    program
        .add("completion", "Write a shell's completion of trsctl", "completion bash >~/.trsctl && . ~/.trsctl",
             [shell](Program::Options const&) { return writeScript(*shell); })
        .add_option("SHELL", *shell, "bash, zsh or fish")
        ->required()
        ->type_name("bash|zsh|fish")
        ->check(CLI::IsMember({"bash", "zsh", "fish"}).description(""));

    auto const words = std::make_shared<std::vector<std::string>>();
    CLI::App& complete = program.add("complete", "Write what goes on with the last word", "complete -- get Ip",
                                     [&program, words](Program::Options const&) {
                                         for (std::string const& each : completions(program, *words)) {
                                             tools::say(each);
                                         }
                                         return ExitCode::good;
                                     });
    complete.group(""); // for the scripts
    complete.add_option("WORD", *words, "The words that are typed");
}
