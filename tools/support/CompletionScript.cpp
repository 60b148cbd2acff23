#include "tools/support/CompletionScript.h"

#include <fmt/format.h>

namespace trs::tools {

namespace {

std::string joined(std::vector<std::string> const& words)
{
    std::string text;
    for (std::string const& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

std::string bashScript(OptionTable const& table)
{
    std::string names;
    std::string cases;
    for (Option const& each : table.options) {
        names += each.isArgument() ? "" : ' ' + std::string(each.longName());
        if (!each.choices.empty()) {
            cases += fmt::format("        {}) COMPREPLY=($(compgen -W \"{}\" -- \"$word\")); return ;;\n",
                                 each.longName(), joined(each.choices));
        }
    }
    return fmt::format("# bash completion of {0}\n"
                       "_{0}()\n{{\n"
                       "    local word=${{COMP_WORDS[COMP_CWORD]}}\n"
                       "    case ${{COMP_WORDS[COMP_CWORD-1]}} in\n{1}    esac\n"
                       "    [[ $word == -* ]] && COMPREPLY=($(compgen -W \"{2}\" -- \"$word\"))\n"
                       "}}\n"
                       "complete -o default -F _{0} {0}\n",
                       table.program, cases, names);
}

// In zsh's and fish's words: a text in single quotes.
std::string quoted(std::string const& text)
{
    std::string plain;
    for (char const each : text) {
        plain += each == '\'' || each == '[' || each == ']' || each == ':' || each == '\n' ? ' ' : each;
    }
    return plain;
}

std::string zshScript(OptionTable const& table)
{
    std::string script = "#compdef " + table.program + "\n_arguments";
    for (Option const& each : table.options) {
        if (each.isArgument()) {
            continue;
        }
        std::string const value = !each.takesValue()     ? std::string()
                                  : each.choices.empty() ? std::string(":value:_files")
                                                         : ":value:(" + joined(each.choices) + ')';
        script += fmt::format(" \\\n    '*{}[{}]{}'", each.longName(), quoted(each.help), value);
    }
    return script + '\n';
}

std::string fishScript(OptionTable const& table)
{
    std::string script = "# fish completion of " + table.program + '\n';
    for (Option const& each : table.options) {
        if (!each.isArgument()) {
            std::string const value = !each.takesValue()     ? std::string()
                                      : each.choices.empty() ? std::string(" -r")
                                                             : " -xa '" + joined(each.choices) + '\'';
            script += fmt::format("complete -c {} -l {}{} -d '{}'\n", table.program, each.longName().substr(2), value,
                                  quoted(each.help));
        }
    }
    return script;
}

} // namespace

std::string completionScript(OptionTable const& table, std::string const& shell)
{
    return shell == "bash" ? bashScript(table) : shell == "zsh" ? zshScript(table) : fishScript(table);
}

} // namespace trs::tools
