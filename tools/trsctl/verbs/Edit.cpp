// trsctl edit: the settings of an object in an editor.
#include "catalogue/File.h"
#include "catalogue/Json.h"
#include "catalogue/OperationKind.h"
#include "tools/trsctl/Application.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Confirmation.h"
#include "tools/trsctl/Target.h"
#include "tools/trsctl/UnitDocument.h"
#include "tools/trsctl/Verbs.h"

#include <cstdlib>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>

namespace trs::ctl {

namespace {

using catalogue::Value;

// What can be set of the object, as a document.
Value settingsOf(Value const& document, Target const& target)
{
    Value settings = Value::object();
    Value const& told = document["objects"][target.name.text()];
    for (auto const& [name, value] : told.items()) {
        catalogue::Operation const* const reader = target.type->find(name);
        bool const isSettable = reader != nullptr && isPlainRead(*reader) &&
                                writerOf(*target.type, *reader) != nullptr && !value.contains("error");
        if (isSettable) {
            settings[name] = value;
        }
    }
    return {{"objects", {{target.name.text(), std::move(settings)}}}};
}

// Has the user's editor change a text. Empty, or why it has not.
std::string edit(std::string& text)
{
    char name[] = "/tmp/trsctl-XXXXXX.json";
    int const file = ::mkstemps(name, 5);
    if (file < 0) {
        return std::string(name) + " cannot be made";
    }
    ::close(file);
    std::error_code const error = catalogue::writeWholeFile(name, text);
    std::string why = error ? catalogue::whyNotWritten(name, error) : "";
    char const* const visual = std::getenv("VISUAL");
    char const* const editor = visual != nullptr ? visual : std::getenv("EDITOR");
    std::string const command = std::string(editor != nullptr ? editor : "vi") + " \"$1\"";
    if (why.empty()) {
        pid_t const child = ::fork();
        if (child == 0) {
            ::execl("/bin/sh", "sh", "-c", command.c_str(), "sh", name, nullptr);
            ::_exit(127);
        }
        int status = -1;
        ::waitpid(child, &status, 0);
        why =
            status == 0 ? catalogue::readWholeFile(name, text) : "the editor ended with a failure; nothing is changed";
    }
    ::unlink(name);
    return why;
}

ExitCode editObject(Program::Options const& options, std::string const& object, bool isSure)
{
    Target target;
    if (ExitCode const code = findTarget(options, object, target); code != ExitCode::good) {
        return code;
    }
    Value document;
    if (ExitCode const code = readUnit(options, target.name.text(), document); code != ExitCode::good) {
        return code;
    }
    std::string const before = catalogue::toJson(settingsOf(document, target)) + '\n';
    std::string text = before;
    if (std::string const why = edit(text); !why.empty()) {
        return complain(why);
    }
    if (text == before) {
        note("nothing is changed");
        return ExitCode::good;
    }
    Value wanted;
    if (std::string const wrong = catalogue::parseJson(text, wanted); !wrong.empty()) {
        return complain("what was written is " + wrong + "; nothing is changed");
    }
    return applyDocument(options, std::move(wanted), {.isSure = isSure});
}

} // namespace

void addEditVerbs(Program& program)
{
    struct EditWords {
        std::string object;
        bool isSure = false;
    };
    auto const words = std::make_shared<EditWords>();
    program.add(
        {.name = "edit",
         .help = "Change an object's settings in $VISUAL or $EDITOR",
         .example = "edit EthIfNet:IfNet/Transport",
         .options = {Program::objectArgument(words->object), yesOption(words->isSure)}},
        [words](Program::Options const& options) { return editObject(options, words->object, words->isSure); },
        Program::Units::one);
}

} // namespace trs::ctl
