// trsctl completion: what the shells complete.
#include "tools/trsctl/Completion.h"

#include "tools/support/StandardStreams.h"
#include "tools/trsctl/Verbs.h"

#include <algorithm>
#include <memory>

namespace trs::ctl {

namespace {

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
complete -c trsctl -f -a '(trsctl complete -- (commandline -opc)[2..-1] (commandline -ct) 2>/dev/null)'
complete -c trsctl -F -n '__fish_seen_subcommand_from VERBS'
)";

bool takesFiles(tools::Verb const& verb)
{
    return std::any_of(verb.options.begin(), verb.options.end(), [](tools::Option const& each) {
        return each.name == "FILE" || each.name == "SIDE" || each.type == "FILE";
    });
}

ExitCode writeScript(std::string const& shell, tools::OptionTable const& table)
{
    std::string script = shell == "bash" ? bashScript : shell == "zsh" ? zshScript : fishScript;
    std::string verbs;
    for (tools::Verb const& verb : table.verbs) {
        verbs += takesFiles(verb) ? (verbs.empty() ? "" : " ") + verb.name : "";
    }
    if (std::size_t const place = script.find("VERBS"); place != std::string::npos) {
        script.replace(place, std::string_view("VERBS").size(), verbs);
    }
    tools::say(script);
    return ExitCode::good;
}

} // namespace

void addCompletionVerbs(Program& program)
{
    auto const shell = std::make_shared<std::string>();
    program.add(
        {.name = "completion",
         .help = "Write a shell's completion of trsctl",
         .example = "completion bash >~/.trsctl && . ~/.trsctl",
         .options = {{.name = "SHELL",
                      .target = shell.get(),
                      .help = "For which shell",
                      .choices = {"bash", "zsh", "fish"},
                      .isRequired = true}}},
        [&program, shell](Program::Options const&) { return writeScript(*shell, program.table()); },
        Program::Units::none);

    auto const words = std::make_shared<std::vector<std::string>>();
    program.add(
        {.name = "complete", // for the scripts
         .help = "Write what goes on with the last word",
         .example = "complete -- get Ip",
         .options = {{.name = "WORD", .target = words.get(), .help = "The words that are typed"}},
         .isHidden = true},
        [&program, words](Program::Options const&) {
            for (std::string const& each : completions(program, *words)) {
                tools::say(each);
            }
            return ExitCode::good;
        },
        Program::Units::none);
}

} // namespace trs::ctl
