// What trsctl, the catalogue and the simulated unit take each operation for, against a record of all of them.
#include "catalogue/Class.h"
#include "tools/trsctl/Completion.h"
#include "unit/OperationPairs.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

namespace {

using trs::catalogue::Class;

std::vector<std::string> recorded()
{
    std::vector<std::string> lines;
    std::ifstream file(std::filesystem::path(__FILE__).parent_path() / "../data/operation-kinds.tsv");
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    return lines;
}

// Those of the lines that the others have not.
std::vector<std::string> without(std::vector<std::string> lines, std::vector<std::string> const& others)
{
    std::set<std::string> const known(others.begin(), others.end());
    std::erase_if(lines, [&known](std::string const& line) { return known.contains(line); });
    return lines;
}

// What `get` or `set` completes besides the names of operations.
std::vector<std::string> offered(Class const& type, char const* verb)
{
    trs::ctl::Program program({});
    std::vector<std::string> names = trs::ctl::completions(program, {verb, std::string(type.interface) + ":x", ""});
    std::erase_if(names, [&type](std::string const& name) { return type.find(name) != nullptr; });
    return names;
}

std::string nameFor(trs::catalogue::Operation const& operation, Class const& type,
                    std::vector<std::string> const& names, bool isGet)
{
    std::string found;
    for (std::string name : names) {
        trs::ctl::Unit::Target const target{{}, &type, {}};
        std::string setter = name;
        setter.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(setter.front())));
        bool const isMeant =
            isGet ? trs::ctl::Unit::findOperation(target, name) == &operation : operation.name == "set" + setter;
        found += isMeant ? (found.empty() ? "" : ",") + name : "";
    }
    return found.empty() ? "-" : found;
}

std::string nameOf(trs::catalogue::Operation const* operation)
{
    return operation != nullptr ? std::string(operation->name) : "-";
}

TEST(OperationLists, AreAsRecorded)
{
    std::vector<std::string> lines{"class\toperation\treading\treader\tsetter\treads what it sets\tsets what it reads\t"
                                   "get\tset"};
    for (Class const* const each : trs::catalogue::classes()) {
        std::vector<std::string> const get = offered(*each, "get");
        std::vector<std::string> const set = offered(*each, "set");
        for (trs::catalogue::Operation const& operation : each->own) {
            std::ostringstream line;
            line << each->interface << '\t' << operation.name << '\t' << (operation.isReading() ? "reading" : "-")
                 << '\t' << (trs::sim::isReader(operation) ? "reader" : "-") << '\t'
                 << (trs::sim::isSetter(operation) ? "setter" : "-") << '\t'
                 << nameOf(trs::sim::readerOf(*each, operation)) << '\t' << nameOf(trs::sim::setterOf(*each, operation))
                 << '\t' << nameFor(operation, *each, get, true) << '\t' << nameFor(operation, *each, set, false);
            lines.push_back(line.str());
        }
    }
    std::vector<std::string> const record = recorded();
    EXPECT_THAT(without(lines, record), testing::IsEmpty()) << "not in the record";
    EXPECT_THAT(without(record, lines), testing::IsEmpty()) << "only in the record";
}

} // namespace
