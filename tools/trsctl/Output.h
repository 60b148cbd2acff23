// How results are written.
#pragma once

#include "catalogue/Value.h"
#include "tools/trsctl/Selection.h"

#include <string>
#include <utility>
#include <vector>

namespace trs::ctl {

enum class Format { text, json, table };

// As --format takes them.
std::vector<std::pair<std::string, Format>> formatNames();

// What of results is written, and how tables are.
struct View {
    Selection selection = {};
    bool valuesAlone = false;              // without their names
    std::vector<std::string> columns = {}; // those and no others, in this order, in any case of letters
    std::string sort = {};                 // the column to sort by, "-COLUMN" for the greatest first
    bool isNarrow = false;                 // without columns that are the same in all rows
};

// Holds from now on.
void setView(View view);
// Why a table was not written since then: it has no such column. Empty when all were.
std::string const& whyNotShown();

// Writes a value to standard output: as JSON, or its leaves, a line each with path and text, which the table aligns
// under a head; a value that is a list of records, or has one and nothing else, is a table with a row for each record.
// All formats have the same leaves, and all of them; texts are escaped where they are no JSON.
void writeResults(catalogue::Value const& results, Format format);

// Writes rows of a table, its columns aligned; the text format has no head, and JSON an object for each row.
using Row = std::vector<catalogue::Value>;
void writeRows(std::vector<std::string> head, std::vector<Row> rows, Format format);

} // namespace trs::ctl
