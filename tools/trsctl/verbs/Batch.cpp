// trsctl batch: many command lines, one after the other, over one connection.
#include "catalogue/File.h"
#include "catalogue/Text.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Interrupt.h"
#include "tools/trsctl/Program.h"
#include "tools/trsctl/Verbs.h"

#include <cstdio>
#include <fmt/format.h>
#include <iostream>
#include <memory>
#include <sstream>

namespace trs::ctl {

namespace {

constexpr int mostNested = 16;

struct BatchWords {
    std::string file = "-";
    bool goesOn = false;
};

ExitCode runLines(std::istream& lines, std::string const& name, bool goesOn, Program::Options const& defaults)
{
    ExitCode first = ExitCode::good; // that was not good
    unsigned long number = 0;
    for (std::string line; !Interrupt::came() && std::getline(lines, line);) {
        ++number;
        std::vector<std::string> words;
        std::string const wrong = catalogue::splitWords(line, words);
        if (wrong.empty() && words.empty()) {
            continue;
        }
        auto const code = wrong.empty() ? static_cast<ExitCode>(Program(defaults).run(words)) : ExitCode::usage;
        if (code != ExitCode::good) {
            complain(
                fmt::format("{}:{}: {}", name, number,
                            wrong.empty() ? fmt::format("ended with exit code {}", static_cast<int>(code)) : wrong));
            first = first == ExitCode::good ? code : first;
            if (!goesOn) {
                break;
            }
        }
    }
    return first;
}

ExitCode runFile(BatchWords const& words, Program::Options const& options)
{
    if (words.file == "-") {
        ExitCode const code = runLines(std::cin, "standard input", words.goesOn, options);
        if (std::ferror(stdin) == 0) {
            return code;
        }
        std::perror("standard input");
        return ExitCode::usage;
    }
    std::string text;
    if (std::string const why = catalogue::readWholeFile(words.file, text); !why.empty()) {
        return complain(why);
    }
    std::istringstream lines(text);
    return runLines(lines, words.file, words.goesOn, options);
}

// A batch may hold batches, but not without end.
ExitCode batch(BatchWords const& words, Program::Options const& options)
{
    static int nested = 0;
    if (nested == mostNested) {
        return complain(fmt::format("'{}': batches are nested more than {} deep", words.file, mostNested));
    }
    ++nested;
    ExitCode const code = runFile(words, options);
    --nested;
    return code;
}

} // namespace

void addBatchVerbs(Program& program)
{
    auto const words = std::make_shared<BatchWords>();
    program.add({.name = "batch",
                 .help = "Run the command lines of a file, one after the other",
                 .example = "batch setup.trsctl",
                 .options =
                     {
                         {.name = "FILE",
                          .target = &words->file,
                          .help = "A command line a line, quoted as for a shell, # for comments; standard input unless "
                                  "said"},
                         {.name = "--keep-going",
                          .target = &words->goesOn,
                          .help = "Go on behind a line that fails; the exit code is that of the first one"},
                     }},
                [words](Program::Options const& options) { return batch(*words, options); });
}

} // namespace trs::ctl
