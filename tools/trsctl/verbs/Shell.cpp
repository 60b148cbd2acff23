// trsctl shell: command lines from somebody at a terminal, over one connection.
#include "catalogue/Text.h"
#include "tools/support/StandardStreams.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Completion.h"
#include "tools/trsctl/Interrupt.h"
#include "tools/trsctl/Program.h"
#include "tools/trsctl/Verbs.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <editline/readline.h>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <unistd.h>

namespace trs::ctl {

namespace {

constexpr int mostRemembered = 1000; // lines
constexpr char const* prompt = "trsctl> ";

// A word as a shell takes it for itself.
std::string shellWord(std::string const& word)
{
    constexpr std::string_view plain = "-_./:=@%+,";
    bool const isPlain = !word.empty() && std::all_of(word.begin(), word.end(), [&](unsigned char each) {
        return std::isalnum(each) != 0 || plain.find(static_cast<char>(each)) != std::string_view::npos;
    });
    if (isPlain) {
        return word;
    }
    std::string text = "'";
    for (char const each : word) {
        text += each == '\'' ? "'\\''" : std::string(1, each);
    }
    return text + '\'';
}

// What would do the same outside of the shell.
std::string commandLine(Program::Options const& options, std::vector<std::string> const& words)
{
    std::string text = "trsctl --unit " + shellWord(options.unit);
    Program::Options const usual;
    text += options.timeout != usual.timeout ? " --timeout " + std::to_string(options.timeout) : "";
    for (auto const& [name, format] : formatNames()) {
        text += format == options.format && format != usual.format ? " --format " + name : "";
    }
    for (std::string const& word : words) {
        text += ' ' + shellWord(word);
    }
    return text;
}

// Where lines are remembered; empty when there is no place for them.
std::string historyFile()
{
    char const* const state = std::getenv("XDG_STATE_HOME");
    char const* const home = std::getenv("HOME");
    std::filesystem::path directory;
    if (state != nullptr && *state == '/') {
        directory = state;
    } else if (home != nullptr && *home == '/') {
        directory = std::filesystem::path(home) / ".local/state";
    } else {
        return {};
    }
    directory /= "trsctl";
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    return error ? std::string() : (directory / "history").string();
}

// The terminal's line editor, which is one for the process.
class Editor {
public:
    explicit Editor(Program::Options const& options) : program_(options), history_(historyFile())
    {
        current = this;
        using_history();
        stifle_history(mostRemembered);
        if (!history_.empty()) {
            read_history(history_.c_str());
        }
        rl_attempted_completion_function = complete;
        rl_completer_word_break_characters = breaks.data();
    }
    Editor(Editor const&) = delete;
    Editor& operator=(Editor const&) = delete;
    ~Editor() { current = nullptr; }

    // None at the end.
    std::optional<std::string> take()
    {
        std::unique_ptr<char, decltype(&std::free)> const line(readline(prompt), std::free);
        if (line == nullptr) {
            tools::say("");
            return std::nullopt;
        }
        std::string text = line.get();
        if (!text.empty() && text != last_) {
            add_history(text.c_str());
            if (!history_.empty()) {
                write_history(history_.c_str());
            }
        }
        last_ = text;
        return text;
    }

private:
    static char** complete(char const* word, int begin, int /*end*/)
    {
        std::vector<std::string> words;
        catalogue::splitWords(std::string_view(rl_line_buffer).substr(0, static_cast<std::size_t>(begin)), words);
        words.emplace_back(word);
        current->found_ = completions(current->program_, words);
        current->place_ = 0;
        return current->found_.empty() ? nullptr : rl_completion_matches(word, next);
    }
    // The candidates one by one; null at their end.
    static char* next(char const* /*word*/, int /*isFirst*/)
    {
        return current->place_ < current->found_.size() ? strdup(current->found_[current->place_++].c_str()) : nullptr;
    }

    static inline Editor* current = nullptr;
    static inline std::array<char, 4> breaks{" \t"};

    Program program_;
    std::string const history_;
    std::string last_;
    std::vector<std::string> found_;
    std::size_t place_ = 0;
};

struct ShellWords {
    bool printsCommand = false;
};

// Executes a line. False when it ends the shell.
bool execute(std::string const& line, Program::Options const& options, ShellWords const& shell, ExitCode& code)
{
    std::vector<std::string> words;
    if (std::string const wrong = catalogue::splitWords(line, words); !wrong.empty()) {
        code = complain(wrong);
        return true;
    }
    if (words.empty()) {
        return true;
    }
    if (words.front() == "exit" || words.front() == "quit") {
        return false;
    }
    if (words.front() == "help") {
        words.erase(words.begin());
        words.emplace_back("--help");
    } else if (shell.printsCommand) {
        std::fprintf(stderr, "%s\n", commandLine(options, words).c_str());
    }
    Interrupt const interrupt;
    code = static_cast<ExitCode>(Program(options).run(words));
    return !tools::isOutputGone();
}

// The exit code is the last line's.
ExitCode run(Program::Options const& options, ShellWords const& shell)
{
    ExitCode code = ExitCode::good;
    if (::isatty(STDIN_FILENO) == 0) {
        for (std::string line; std::getline(std::cin, line) && execute(line, options, shell, code);) {
        }
        if (std::ferror(stdin) != 0) {
            std::perror("standard input");
            return ExitCode::usage;
        }
        return code;
    }
    tools::say("A verb and its words a line, such as: tree. Tab completes, help lists the verbs, exit ends.");
    Editor editor(options);
    for (std::optional<std::string> line = editor.take(); line && execute(*line, options, shell, code);
         line = editor.take()) {
    }
    return code;
}

} // namespace

void addShellVerbs(Program& program)
{
    auto const words = std::make_shared<ShellWords>();
    program.add({.name = "shell",
                 .help = "Take command lines from the terminal, with history and completion",
                 .example = "shell --unit tcp:10.0.0.7:4000",
                 .options = {{.name = "--print-command",
                              .target = &words->printsCommand,
                              .help = "Write to standard error what does the same outside of the shell"}}},
                [words](Program::Options const& options) { return run(options, *words); });
}

} // namespace trs::ctl
