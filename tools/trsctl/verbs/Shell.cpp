// trsctl shell: command lines from somebody at a terminal, over one connection.
#include "catalogue/Text.h"
#include "tools/support/SignalWatch.h"
#include "tools/support/StandardStreams.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Completion.h"
#include "tools/trsctl/Interrupt.h"
#include "tools/trsctl/Program.h"
#include "tools/trsctl/StateDirectory.h"
#include "tools/trsctl/Verbs.h"
#include "tools/trsctl/Words.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <editline/readline.h>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace trs::ctl {

namespace {

constexpr int mostRemembered = 1000; // lines
constexpr char const* prompt = "trsctl> ";

// The units, or the one.
std::string unitWords(Program::Options const& options)
{
    std::string text;
    bool const isOne = options.units.empty() && options.selector.empty();
    for (std::string const& each : isOne ? std::vector{options.unit} : options.units) {
        text += " --unit " + shellWord(each);
    }
    return text + (options.selector.empty() ? "" : " --selector " + shellWord(options.selector));
}

// What would do the same outside of the shell.
std::string commandLine(Program::Options const& options, std::vector<std::string> const& words)
{
    bool const namesUnits = std::ranges::any_of(
        words, [](std::string const& each) { return each.starts_with("--unit") || each.starts_with("--selector"); });
    std::string text = "trsctl" + (namesUnits ? std::string() : unitWords(options));
    for (std::vector<std::string> const& part : {Program::wordsOf(options), words}) {
        for (std::string const& word : part) {
            text += ' ' + shellWord(word);
        }
    }
    return text;
}

// Where lines are remembered; empty when there is no place for them.
std::string historyFile()
{
    std::filesystem::path const directory = stateDirectory();
    return directory.empty() ? std::string() : (directory / "history").string();
}

// The keys of a terminal, and interrupts as keys: they discard the line.
class Keys {
public:
    Keys() : came_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), watch_({SIGINT}, [this] { ::eventfd_write(came_, 1); }) {}
    Keys(Keys const&) = delete;
    Keys& operator=(Keys const&) = delete;
    ~Keys() { ::close(came_); }

    // A character; -1 at the end.
    int take()
    {
        constexpr std::string_view discard = "\x05\x15\n"; // to the end of the line, kill it, end it
        while (pending_.empty()) {
            std::array<pollfd, 2> waiting{{{STDIN_FILENO, POLLIN, 0}, {came_, POLLIN, 0}}};
            ::poll(waiting.data(), waiting.size(), -1);
            eventfd_t count = 0;
            if (::eventfd_read(came_, &count) == 0) {
                pending_ = discard;
            } else if (waiting[0].revents != 0) {
                return readCharacter();
            }
        }
        int const key = static_cast<unsigned char>(pending_.front());
        pending_.remove_prefix(1);
        return key;
    }

private:
    // UTF-8 (RFC 3629); a byte that begins none stands for itself.
    static int readCharacter()
    {
        unsigned char byte = 0;
        if (::read(STDIN_FILENO, &byte, 1) != 1) {
            return -1;
        }
        int const more = byte >= 0xf0 ? 3 : byte >= 0xe0 ? 2 : byte >= 0xc0 ? 1 : 0;
        int character = more == 0 ? byte : byte & (0x3f >> more);
        for (int i = 0; i < more && ::read(STDIN_FILENO, &byte, 1) == 1; ++i) {
            character = (character << 6) | (byte & 0x3f);
        }
        return character;
    }

    int const came_;
    std::string_view pending_;
    tools::SignalWatch watch_;
};

// The terminal's line editor, which is one for the process.
class Editor {
public:
    // Completion follows the options as they change.
    explicit Editor(Program::Options const& options) : options_(options), history_(historyFile())
    {
        current = this;
        std::setlocale(LC_CTYPE, "C.UTF-8"); // keys are read as such
        rl_getc_function = [](FILE*) { return current->keys_ != nullptr ? current->keys_->take() : -1; };
        using_history(); // which initialises the editor with all that was set before
        // An interrupt flushes what is written otherwise, and at times that is the next prompt.
        std::string noFlush = "setty -d +noflsh";
        rl_parse_and_bind(noFlush.data());
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
        Keys keys;
        keys_ = &keys;
        std::unique_ptr<char, decltype(&std::free)> const line(readline(prompt), std::free);
        keys_ = nullptr;
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
        Program program(current->options_);
        current->found_ = completions(program, words);
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

    Program::Options const& options_;
    Keys* keys_ = nullptr;
    std::string const history_;
    std::string last_;
    std::vector<std::string> found_;
    std::size_t place_ = 0;
};

struct ShellWords {
    bool printsCommand = false;
};

// Whether a line has options and no verb: they hold for the lines that follow.
bool isSetting(std::vector<std::string> const& words, Program& program)
{
    return words.front().starts_with('-') && words.front() != "-h" && words.front() != "--help" &&
           words.front() != "--version" && std::ranges::none_of(words, [&program](std::string const& word) {
               return std::ranges::find(program.table().verbs, word, &tools::Verb::name) != program.table().verbs.end();
           });
}

// Executes a line. False when it ends the shell.
bool execute(std::string const& line, Program::Options& options, ShellWords const& shell, ExitCode& code)
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
    Program program(options);
    if (isSetting(words, program)) {
        program.add(
            {.name = "keep", .help = "Have the options hold for lines that follow", .isHidden = true},
            [&options](Program::Options const& said) {
                options = said;
                return ExitCode::good;
            },
            Program::Units::atOnce);
        words.emplace_back("keep");
        code = static_cast<ExitCode>(program.run(words));
        return true;
    }
    if (shell.printsCommand && words.front() != "help") {
        std::fprintf(stderr, "%s\n", commandLine(options, words).c_str());
    }
    Interrupt const interrupt;
    code = static_cast<ExitCode>(program.run(words));
    return !tools::isOutputGone();
}

// The exit code is the last line's.
ExitCode run(Program::Options options, ShellWords const& shell)
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
    tools::say("A verb and its words a line, such as: tree. Options alone, such as --format json, hold from then on.\n"
               "Tab completes, help lists the verbs, Ctrl-C ends one or discards the line, exit ends the shell.");
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
    program.add(
        {.name = "shell",
         .help = "Take command lines from the terminal, with history and completion",
         .example = "shell --unit tcp:10.0.0.7:4000",
         .options = {{.name = "--print-command",
                      .target = &words->printsCommand,
                      .help = "Write to standard error what does the same outside of the shell"}}},
        [words](Program::Options const& options) { return run(options, *words); }, Program::Units::atOnce);
}

} // namespace trs::ctl
