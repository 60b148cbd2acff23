// trsctl units: the units that have names.
#include "tools/trsctl/Units.h"

#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/Program.h"
#include "tools/trsctl/Verbs.h"

namespace trs::ctl {

void addUnitsVerbs(Program& program)
{
    program.add(
        {.name = "units", .help = "List the units that have names", .example = "units"},
        [](Program::Options const& options) {
            std::vector<NamedUnit> units;
            if (std::string const wrong = readUnits(units); !wrong.empty()) {
                return complain(wrong);
            }
            std::vector<Row> rows;
            for (NamedUnit const& each : units) {
                std::string labels;
                for (std::string const& label : each.labels) {
                    labels += (labels.empty() ? "" : " ") + label;
                }
                rows.push_back({each.name, each.endpoint, labels});
            }
            writeRows({"unit", "endpoint", "labels"}, std::move(rows), options.format);
            return ExitCode::good;
        },
        Program::Units::none);
}

} // namespace trs::ctl
