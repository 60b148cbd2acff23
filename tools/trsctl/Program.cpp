#include "tools/trsctl/Program.h"

#include "catalogue/File.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Confirmation.h"
#include "tools/trsctl/ManyUnits.h"
#include "tools/trsctl/Verbs.h"

#include <algorithm>
#include <cstdlib>
#include <fmt/format.h>
#include <utility>
#include <variant>

namespace trs::ctl {

namespace {

constexpr char const* description =
    "Shows what interfaces a unit's objects have, reads and sets what they keep, and calls any of their operations.\n"
    "An OBJECT is Class:identifier, or a well-known identifier alone: IpNode, NmiRmiAdapterServer.";

constexpr char const* exitCodes =
    "0 done, 1 a difference was found or output was lost, 2 wrong usage, 3 no such object, 4 refused by the unit,\n"
    "5 no reply in time, 6 unit not reached or lost, 7 malformed reply, 8 no such operation there,\n"
    "9 unit has no thread left for the call.";

std::vector<std::string> splitList(std::string const& text)
{
    std::vector<std::string> words;
    for (std::size_t begin = 0; begin <= text.size();) {
        std::size_t const end = std::min(text.find(',', begin), text.size());
        words.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return words;
}

void addOptions(tools::CommandLine& line, Program::Options& options, std::vector<std::string>& units,
                std::string& selector)
{
    tools::Option unit = tools::CommandLine::unitOption(options.unit);
    unit.target = &units;
    unit.check = nullptr;
    unit.type = "UNIT";
    unit.environment.clear(); // which counts where nothing else is said, also in a shell
    unit.help = "Where the unit serves, or its name in ~/.config/trsman/units; may be given several times (default: "
                "$TRS_UNIT, else " +
                std::string(tools::CommandLine::defaultEndpointText) + ")";
    line.add(std::move(unit));
    line.add({.name = "--selector",
              .target = &selector,
              .help = "All units of that file with these labels, joined by commas",
              .type = "LABEL=VALUE"});
    line.add(tools::CommandLine::timeoutOption(options.timeout));
    line.add({.name = "--wait",
              .target = &options.wait,
              .help = "How long to wait for the object to be there, in seconds",
              .type = "S",
              .range = {{0, 3600}}});
    line.add(tools::choice<Format>("--format", "How results are written", formatNames(),
                                   [&options](Format chosen) { options.format = chosen; }));
    line.add(tools::choice<tools::UseOfColour>(
        "--color", "Whether results are coloured; auto: on a terminal, unless NO_COLOR is set",
        {{"auto", tools::UseOfColour::whereItIsSeen},
         {"always", tools::UseOfColour::always},
         {"never", tools::UseOfColour::never}},
        [&options](tools::UseOfColour chosen) { options.colour = chosen; }));
    line.add({.name = "--select",
              .target = tools::Option::Take(
                  [&options](std::string const& text) { return Selection::parse(text, options.view.selection); }),
              .help = "Write the parts of results that a path selects: $.name, [0], ['name'], [*], ..name",
              .type = "PATH"});
    line.add({.name = "--value-only",
              .target = &options.view.valuesAlone,
              .help = "Write values without their names, and tables without a head"});
    line.add({.name = "--columns",
              .target = tools::Option::Take([&options](std::string const& text) {
                  options.view.columns = splitList(text);
                  return std::string();
              }),
              .help = "The columns of tables, joined by commas",
              .type = "NAMES"});
    line.add({.name = "--sort",
              .target = &options.view.sort,
              .help = "The column that tables are sorted by; -NAME: the greatest first",
              .type = "NAME"});
    line.add({.name = "--narrow",
              .target = &options.view.isNarrow,
              .help = "Leave out columns of tables that are the same in all rows"});
    line.table().exitCodes = exitCodes;
    line.table().needsVerb = true;
}

// Whether what is wrong with the words is to be said in JSON, as far as they can be read.
bool asksForJson(std::vector<std::string> const& words, Format usual)
{
    bool isJson = usual == Format::json;
    for (auto word = words.begin(); word != words.end(); ++word) {
        if (*word == "--format" && word + 1 != words.end()) {
            isJson = *(word + 1) == "json";
        } else if (word->starts_with("--format=")) {
            isJson = *word == "--format=json";
        }
    }
    return isJson;
}

// The words but for the options that all verbs share.
std::vector<std::string> withoutShared(std::vector<std::string> const& words, tools::OptionTable const& table)
{
    std::vector<std::string> left;
    for (auto word = words.begin(); word != words.end(); ++word) {
        if (*word == "--") {
            left.insert(left.end(), word, words.end());
            break;
        }
        bool const hasValue = word->find('=') != std::string::npos;
        auto const shared = std::ranges::find_if(table.options, [&word](tools::Option const& each) {
            return each.longName() != "--log-level" && each.isCalled(word->substr(0, word->find('=')));
        });
        if (shared == table.options.end()) {
            left.push_back(*word);
        } else if (shared->takesValue() && !hasValue && word + 1 != words.end()) {
            ++word;
        }
    }
    return left;
}

// Whether arguments say that standard input is to be read: "-" for a file, "@-" for a value.
bool readsInput(tools::Verb const& verb)
{
    return std::ranges::any_of(verb.options, [](tools::Option const& option) {
        auto const* const file = std::get_if<std::string*>(&option.target);
        auto const* const values = std::get_if<std::vector<std::string>*>(&option.target);
        return option.isArgument() && ((file != nullptr && **file == "-") ||
                                       (values != nullptr && std::ranges::any_of(**values, [](std::string const& each) {
                                            return each == "@-" || each.ends_with("=@-");
                                        })));
    });
}

// Whether the verb is one that asks before it destroys, and was not told --yes.
bool mayAsk(tools::Verb const& verb)
{
    return std::ranges::any_of(verb.options, [](tools::Option const& option) {
        auto const* const isSure = std::get_if<bool*>(&option.target);
        return option.name == "--yes" && isSure != nullptr && !**isSure;
    });
}

} // namespace

Program::Program(Options defaults) : options_(std::move(defaults)), line_("trsctl", description, 0)
{
    addOptions(line_, options_, units_, selector_);
#define VERBS_OF(Name) add##Name##Verbs(*this);
#include "tools/trsctl/Verbs.inc"
#undef VERBS_OF
    std::ranges::sort(line_.table().verbs, {}, &tools::Verb::name);
    line_.addCommonOptions();
}

void Program::add(tools::Verb verb, Action action, Units units)
{
    verb.chosen = [this, action = std::move(action), name = verb.name, units] {
        action_ = action;
        verb_ = name;
        asked_ = units;
    };
    line_.table().verbs.push_back(std::move(verb));
}

tools::Option Program::objectArgument(std::string& object, bool isRequired)
{
    return {.name = "OBJECT",
            .target = &object,
            .help = "Class:identifier, or a well-known identifier",
            .isRequired = isRequired};
}

tools::Option Program::valuesArgument(std::vector<std::string>& values)
{
    return {.name = "VALUE",
            .target = &values,
            .help =
                "NAME=VALUE, VALUE in the order of the signature, or NAME.PART=VALUE to change a part; JSON or @FILE "
                "for records, @- for standard input"};
}

std::string Program::usualUnit()
{
    char const* const unit = std::getenv("TRS_UNIT");
    return unit != nullptr && *unit != '\0' ? unit : tools::CommandLine::defaultEndpoint();
}

int Program::run(std::vector<std::string> const& words)
{
    Format const usual = options_.format;
    bool const isJson = asksForJson(words, usual);
    setComplaintFormat(isJson ? Format::json : usual);
    line_.onWrong([](std::string const& what) { complain(what); });
    std::optional<int> const code = line_.parse(words);
    int const end = code ? *code : runVerb(words, isJson);
    setComplaintFormat(usual); // of a batch or a shell that this was a line of
    return end;
}

std::vector<std::string> Program::wordsOf(Options const& options)
{
    Options const usual;
    std::vector<std::string> words;
    auto const add = [&words](bool isSaid, char const* name, std::string const& value) {
        if (isSaid) {
            words.emplace_back(name);
            words.push_back(value);
        }
    };
    add(options.timeout != usual.timeout, "--timeout", std::to_string(options.timeout));
    add(options.wait != usual.wait, "--wait", fmt::format("{}", options.wait));
    for (auto const& [name, format] : formatNames()) {
        add(format == options.format && format != usual.format, "--format", name);
    }
    View const& view = options.view;
    add(!view.selection.isWhole(), "--select", view.selection.text());
    add(!view.columns.empty(), "--columns", fmt::format("{}", fmt::join(view.columns, ",")));
    add(!view.sort.empty(), "--sort", view.sort);
    if (view.valuesAlone) {
        words.emplace_back("--value-only");
    }
    if (view.isNarrow) {
        words.emplace_back("--narrow");
    }
    return words;
}

int Program::runVerb(std::vector<std::string> const& words, bool isJson)
{
    setComplaintFormat(options_.format);
    tools::setUseOfColour(options_.colour);
    setView(options_.view);
    if (!units_.empty() || !selector_.empty()) { // instead of those that a shell was told
        options_.units = units_;
        options_.selector = selector_;
    }
    if (asked_ == Units::none) {
        options_.unit = options_.units.empty() ? options_.unit : options_.units.front();
        return act();
    }
    std::vector<NamedUnit> units;
    bool const isUsual = options_.units.empty() && options_.selector.empty();
    if (std::string const wrong =
            chooseUnits(isUsual ? std::vector{options_.unit} : options_.units, options_.selector, units);
        !wrong.empty()) {
        setComplaintFormat(isJson ? Format::json : options_.format);
        return static_cast<int>(complain(wrong));
    }
    if (units.size() > 1 && asked_ != Units::atOnce) {
        return static_cast<int>(runOnSeveral(units, words));
    }
    if (units.size() == 1) {
        options_.unit = units.front().endpoint;
        options_.units.clear();
        options_.selector.clear();
    }
    return act();
}

int Program::act()
{
    ExitCode const code = action_(options_);
    std::string const& wrong = whyNotShown();
    return static_cast<int>(wrong.empty() || code != ExitCode::good ? code : complain(wrong));
}

ExitCode Program::runOnSeveral(std::vector<NamedUnit> const& units, std::vector<std::string> const& words)
{
    if (asked_ == Units::one) {
        return complain(fmt::format("{} is for one unit, and {} are named", verb_, units.size()));
    }
    if (mayAsk(verb()) && !isConfirmed(fmt::format("{} on {} units", verb_, units.size()), false)) {
        return complain("nothing is done");
    }
    UnitsCommand command{wordsOf(options_), options_.format, {}};
    std::ranges::copy(withoutShared(words, line_.table()), std::back_inserter(command.words));
    if (readsInput(verb())) {
        if (std::string const why = catalogue::readStandardInput(command.input.emplace()); !why.empty()) {
            return complain(why);
        }
    }
    return runOnUnits(units, command);
}

tools::Verb const& Program::verb() const { return *std::ranges::find(line_.table().verbs, verb_, &tools::Verb::name); }

} // namespace trs::ctl
