// trsctl snapshot: all that a unit tells.
#include "catalogue/File.h"
#include "catalogue/Json.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/UnitDocument.h"
#include "tools/trsctl/Verbs.h"

#include <memory>

namespace trs::ctl {

namespace {

using catalogue::Value;

ExitCode write(std::string const& file, Value const& document)
{
    std::error_code const error = catalogue::writeWholeFile(file, catalogue::toJson(document) + '\n');
    if (!error) {
        return ExitCode::good;
    }
    return complain(catalogue::whyNotWritten(file, error),
                    catalogue::isFull(error) ? ExitCode::outputLost : ExitCode::usage);
}

ExitCode snapshot(Program::Options const& options, std::string const& object, std::string const& file)
{
    Value document;
    if (ExitCode const code = readUnit(options, object, document); code != ExitCode::good) {
        return code;
    }
    if (file.empty()) {
        writeResults(document, Format::json);
        return ExitCode::good;
    }
    return write(file, document);
}

} // namespace

void addSnapshotVerbs(Program& program)
{
    struct Taken {
        std::string object;
        std::string file;
    };
    auto const taken = std::make_shared<Taken>();
    tools::Option object = Program::objectArgument(taken->object, false);
    object.help = "Where to begin: Class:identifier, or a well-known identifier; else all well-known ones";
    program.add({.name = "snapshot",
                 .help = "Write all that a unit's objects tell",
                 .example = "snapshot -o before.json",
                 .options =
                     {
                         std::move(object),
                         {.name = "-o,--output",
                          .target = &taken->file,
                          .help = "Where to write, as a whole or not at all; else standard output",
                          .type = "FILE"},
                     }},
                [taken](Program::Options const& options) { return snapshot(options, taken->object, taken->file); });
}

} // namespace trs::ctl
