#include "tools/trsctl/Output.h"

#include "broker/PrintableText.h"
#include "catalogue/Json.h"
#include "catalogue/ValueText.h"
#include "tools/support/Colour.h"
#include "tools/support/Console.h"

#include <algorithm>
#include <cctype>

namespace trs::ctl {

namespace {

std::string upper(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char character) { return static_cast<char>(std::toupper(character)); });
    return text;
}

// The first row is a head, or none.
void writeAligned(std::vector<std::vector<std::string>> rows, bool hasHead)
{
    for (auto& row : rows) {
        std::ranges::transform(row, row.begin(), escaped);
    }
    std::vector<std::size_t> widths;
    for (auto const& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], row[i].size());
        }
    }
    for (auto const& row : rows) {
        bool const isHead = hasHead && &row == &rows.front();
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            std::size_t const padding = i + 1 < row.size() ? widths[i] - row[i].size() + 2 : 0;
            line += (isHead   ? tools::coloured(row[i], tools::Colour::head)
                     : i == 0 ? tools::coloured(row[i], tools::Colour::name)
                              : row[i]) +
                    std::string(padding, ' ');
        }
        tools::say(line);
    }
}

} // namespace

std::vector<std::pair<std::string, Format>> formatNames()
{
    return {{"text", Format::text}, {"json", Format::json}, {"table", Format::table}};
}

void writeRows(std::vector<std::string> const& head, std::vector<std::vector<std::string>> const& rows, Format format)
{
    if (format == Format::json) {
        catalogue::Value list = catalogue::Value::array();
        for (auto const& row : rows) {
            catalogue::Value object = catalogue::Value::object();
            for (std::size_t i = 0; i < row.size(); ++i) {
                object[head[i]] = row[i];
            }
            list.push_back(std::move(object));
        }
        tools::say(catalogue::toJson(list));
        return;
    }
    std::vector<std::vector<std::string>> lines;
    if (format == Format::table) {
        std::vector<std::string> captions;
        std::transform(head.begin(), head.end(), std::back_inserter(captions), upper);
        lines.push_back(std::move(captions));
    }
    lines.insert(lines.end(), rows.begin(), rows.end());
    writeAligned(std::move(lines), format == Format::table);
}

void writeResults(catalogue::Value const& results, Format format)
{
    if (format == Format::json) {
        tools::say(catalogue::toJson(results));
        return;
    }
    std::vector<std::vector<std::string>> rows;
    if (!results.empty()) {
        catalogue::forEachLeaf(results, [&rows](std::string const& path, catalogue::Value const& leaf) {
            rows.push_back({path, catalogue::textOf(leaf)});
        });
    }
    if (format == Format::table) {
        writeRows({"name", "value"}, rows, format);
        return;
    }
    for (auto const& row : rows) {
        tools::say(tools::coloured(escaped(row[0]), tools::Colour::name) + ' ' + escaped(row[1]));
    }
}

} // namespace trs::ctl
