// How results are written.
#pragma once

#include "catalogue/Value.h"

#include <string>
#include <utility>
#include <vector>

namespace trs::ctl {

enum class Format { text, json, table };

// As --format takes them.
std::vector<std::pair<std::string, Format>> formatNames();

// Writes a value to standard output: as JSON, or its leaves, a line each with path and text, which the table aligns
// under a head. All formats have the same leaves, and all of them; texts are escaped where they are no JSON.
void writeResults(catalogue::Value const& results, Format format);

// Writes rows of a table, its columns aligned; the text format has no head.
void writeRows(std::vector<std::string> const& head, std::vector<std::vector<std::string>> const& rows, Format format);

} // namespace trs::ctl
