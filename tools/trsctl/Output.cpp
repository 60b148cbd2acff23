#include "tools/trsctl/Output.h"

#include "broker/PrintableText.h"
#include "catalogue/Json.h"
#include "catalogue/Text.h"
#include "catalogue/ValueText.h"
#include "tools/support/Colour.h"
#include "tools/support/Nearest.h"
#include "tools/support/StandardStreams.h"

#include <algorithm>
#include <cctype>
#include <fmt/format.h>
#include <map>

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

View& currentView()
{
    static View view;
    return view;
}

// What was wrong with it.
std::string& currentWrong()
{
    static std::string wrong;
    return wrong;
}

// Numbers before texts, each by their values.
bool isLess(catalogue::Value const& one, catalogue::Value const& other)
{
    bool const areAlike = (one.is_number() && other.is_number()) || (one.is_string() && other.is_string());
    return areAlike          ? one < other
           : one.is_number() ? !other.is_number()
                             : catalogue::textOf(one) < catalogue::textOf(other);
}

std::size_t placeOf(std::vector<std::string> const& head, std::string const& name)
{
    auto const found =
        std::ranges::find_if(head, [&name](std::string const& each) { return catalogue::isSameWord(each, name); });
    return static_cast<std::size_t>(found - head.begin());
}

// Whether a table has the columns that are named; what is wrong is remembered.
bool hasColumns(std::vector<std::string> const& head)
{
    View const& view = currentView();
    std::vector<std::string> named = view.columns;
    if (!view.sort.empty()) {
        named.push_back(view.sort.substr(view.sort.starts_with('-') ? 1 : 0));
    }
    auto const missing =
        std::ranges::find_if(named, [&](std::string const& each) { return placeOf(head, each) == head.size(); });
    if (missing == named.end()) {
        return true;
    }
    currentWrong() =
        fmt::format("'{}' is no column of {}{}", *missing, fmt::join(head, ", "), tools::didYouMean(*missing, head));
    return false;
}

// Sorts the rows, and leaves the columns that are wanted.
void arrange(std::vector<std::string>& head, std::vector<Row>& rows)
{
    View const& view = currentView();
    bool const isReversed = view.sort.starts_with('-');
    if (std::size_t const by = placeOf(head, view.sort.substr(isReversed ? 1 : 0)); by < head.size()) {
        std::ranges::stable_sort(rows, [by, isReversed](Row const& one, Row const& other) {
            return isReversed ? isLess(other[by], one[by]) : isLess(one[by], other[by]);
        });
    }
    std::vector<std::size_t> kept;
    for (std::string const& name : view.columns) {
        if (std::size_t const place = placeOf(head, name); place < head.size()) {
            kept.push_back(place);
        }
    }
    for (std::size_t i = 0; i < head.size() && view.columns.empty(); ++i) {
        bool const isDull = rows.size() > 1 && i > 0 &&
                            std::ranges::all_of(rows, [&](Row const& row) { return row[i] == rows.front()[i]; });
        if (!isDull || !view.isNarrow) {
            kept.push_back(i);
        }
    }
    auto const keep = [&kept](auto& line) {
        std::remove_cvref_t<decltype(line)> chosen;
        std::ranges::transform(kept, std::back_inserter(chosen), [&line](std::size_t i) { return line[i]; });
        line = std::move(chosen);
    };
    keep(head);
    std::ranges::for_each(rows, keep);
}

// The list of records that a value is or consists of; null when it is neither.
catalogue::Value const* recordsIn(catalogue::Value const& value)
{
    catalogue::Value const& list = value.is_object() && value.size() == 1 ? value.begin().value() : value;
    bool const isList = list.is_array() && !list.empty() &&
                        std::ranges::all_of(list, [](catalogue::Value const& each) { return each.is_object(); });
    return isList ? &list : nullptr;
}

// A row a record, a column a leaf of any of them.
void writeRecords(catalogue::Value const& list, Format format)
{
    std::vector<std::string> head;
    std::vector<std::map<std::string, catalogue::Value>> records;
    for (catalogue::Value const& record : list) {
        auto& leaves = records.emplace_back();
        catalogue::forEachLeaf(record, [&](std::string const& path, catalogue::Value const& leaf) {
            leaves[path] = leaf;
            if (std::ranges::find(head, path) == head.end()) {
                head.push_back(path);
            }
        });
    }
    std::vector<Row> rows;
    for (auto const& leaves : records) {
        Row& row = rows.emplace_back();
        for (std::string const& path : head) {
            auto const leaf = leaves.find(path);
            row.push_back(leaf != leaves.end() ? leaf->second : catalogue::Value("-"));
        }
    }
    writeRows(std::move(head), std::move(rows), format);
}

void writeLeaves(catalogue::Value const& results, Format format)
{
    View const& view = currentView();
    catalogue::Value const* const records = format == Format::table ? recordsIn(results) : nullptr;
    if (records != nullptr) {
        writeRecords(*records, format);
        return;
    }
    std::vector<Row> rows;
    if (!results.is_structured() || !results.empty()) {
        catalogue::forEachLeaf(results, [&](std::string const& path, catalogue::Value const& leaf) {
            rows.push_back({path, catalogue::textOf(leaf)});
        });
    }
    if (format == Format::table && !view.valuesAlone) {
        writeRows({"name", "value"}, std::move(rows), format);
        return;
    }
    for (Row const& row : rows) {
        std::string const name = !view.valuesAlone ? escaped(row[0].get_ref<std::string const&>()) : "";
        tools::say((name.empty() ? "" : tools::coloured(name, tools::Colour::name) + ' ') +
                   escaped(row[1].get_ref<std::string const&>()));
    }
}

} // namespace

std::vector<std::pair<std::string, Format>> formatNames()
{
    return {{"text", Format::text}, {"json", Format::json}, {"table", Format::table}};
}

void setView(View view)
{
    currentView() = std::move(view);
    currentWrong().clear();
}

std::string const& whyNotShown() { return currentWrong(); }

void writeRows(std::vector<std::string> head, std::vector<Row> rows, Format format)
{
    if (!hasColumns(head)) {
        return;
    }
    arrange(head, rows);
    if (format == Format::json) {
        catalogue::Value list = catalogue::Value::array();
        for (Row const& row : rows) {
            catalogue::Value object = catalogue::Value::object();
            for (std::size_t i = 0; i < row.size(); ++i) {
                object[head[i]] = row[i];
            }
            list.push_back(std::move(object));
        }
        writeResults(list, format);
        return;
    }
    std::vector<std::vector<std::string>> lines;
    bool const hasHead = format == Format::table && !currentView().valuesAlone;
    if (hasHead) {
        std::ranges::transform(head, std::back_inserter(lines.emplace_back()), upper);
    }
    for (Row const& row : rows) {
        std::ranges::transform(row, std::back_inserter(lines.emplace_back()), catalogue::textOf);
    }
    writeAligned(std::move(lines), hasHead);
}

void writeResults(catalogue::Value const& results, Format format)
{
    View const& view = currentView();
    if (!view.selection.isWhole()) {
        std::vector<catalogue::Value> const parts = view.selection.of(results);
        if (format == Format::json) {
            tools::say(catalogue::toJson(view.selection.isSingular() && !parts.empty() ? parts.front()
                                                                                       : catalogue::Value(parts)));
            return;
        }
        std::ranges::for_each(parts, [format](catalogue::Value const& part) { writeLeaves(part, format); });
        return;
    }
    if (format == Format::json) {
        tools::say(catalogue::toJson(results));
        return;
    }
    writeLeaves(results, format);
}

} // namespace trs::ctl
