// The page of trssim says what follows from what; the program does it.
#include "tests/tools/Trsctl.h"

#include "catalogue/SimulatorClient.h"
#include "catalogue/Text.h"
#include "rmi/TreflectHandlerState.h"

#include <fstream>
#include <optional>

namespace {

// A row of the table: causes are there in the first of several rows about the same.
struct Row {
    std::vector<std::string> causes;
    std::string reading;
    std::string told;
};

std::vector<std::string> codeSpans(std::string const& cell)
{
    std::vector<std::string> spans;
    for (std::size_t begin = cell.find('`'); begin != std::string::npos;) {
        std::size_t const end = cell.find('`', begin + 1);
        spans.push_back(cell.substr(begin + 1, end - begin - 1));
        begin = end == std::string::npos ? end : cell.find('`', end + 1);
    }
    return spans;
}

// The cells of a row of a table; a bar behind a backslash is part of one.
std::vector<std::string> cellsOf(std::string const& line)
{
    std::vector<std::string> cells(1);
    for (std::size_t i = 1; i < line.size(); ++i) {
        bool const isBar = line.compare(i, 2, "\\|") == 0;
        if (line[i] == '|') {
            cells.emplace_back();
        } else {
            i += isBar ? 1 : 0;
            cells.back() += line[i];
        }
    }
    return cells;
}

std::vector<Row> rowsOf(std::string const& page)
{
    std::ifstream file(page);
    std::vector<Row> rows;
    std::string line;
    while (std::getline(file, line) && line != "## What follows from what") {
    }
    while (std::getline(file, line) && !line.starts_with("## ")) {
        if (line.starts_with("| `") || line.starts_with("|  |")) {
            std::vector<std::string> const cells = cellsOf(line);
            rows.push_back({codeSpans(cells.at(0)), codeSpans(cells.at(1)).at(0), codeSpans(cells.at(2)).at(0)});
        }
    }
    return rows;
}

class TrssimCauses : public TrsctlTest {
protected:
    // A call as a command of the table says it, which a blank separates.
    Result call(std::string const& text)
    {
        trs::catalogue::Words words;
        std::size_t begin = 0;
        for (std::size_t end = 0; end != std::string::npos; begin = end + 1) {
            end = text.find(' ', begin);
            words.push_back(text.substr(begin, end - begin));
        }
        words.insert(words.begin(), "call");
        return run(words);
    }
    void cause(std::string const& text)
    {
        if (text.starts_with("call ")) {
            call(text.substr(5));
            return;
        }
        TreflectHandlerState const running;
        std::string output;
        std::string wrong;
        SimulatorClient(TipprmiOID(SimulatorClient::SIMULATOR_OID)).execute(text, output, wrong);
        EXPECT_EQ(wrong, "") << text;
    }
};

TEST_F(TrssimCauses, HaveTheEffectsThatThePageTells)
{
    std::vector<Row> const rows = rowsOf(source("docs/trssim.md"));
    EXPECT_GE(rows.size(), 60U);
    std::optional<Unit> sim;
    peerAt(endpoint);
    std::string causes;
    for (Row const& row : rows) {
        if (!row.causes.empty()) {
            sim.reset();
            sim.emplace(endpoint, Arguments{"--clock", "stepped", "--address", "10.0.0.7"});
            causes.clear();
            for (std::string const& each : row.causes) {
                cause(each);
                causes += each + "; ";
            }
        }
        Result const told = call(row.reading);
        std::string const all = told.code == 0 ? '\n' + told.output : told.error;
        std::string const sought = told.code == 0 ? '\n' + row.told + '\n' : row.told;
        EXPECT_THAT(all, testing::HasSubstr(sought)) << causes << row.reading;
    }
}

} // namespace
