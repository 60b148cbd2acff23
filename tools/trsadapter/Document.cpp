#include "tools/trsadapter/Document.h"

#include "adapter/ZYN_AdapterConstants.h"
#include "adapter/ZYN_ParserWords.h"
#include "tools/trsadapter/XmlText.h"

#include <string_view>

namespace trs::adapter {

namespace {

// Writes end tags until only `depth` of the open elements are left.
void closeTo(std::size_t depth, std::vector<std::string_view>& open, std::string& document)
{
    while (open.size() > depth) {
        ((document += "</") += open.back()) += '>';
        open.pop_back();
    }
}

std::vector<std::string_view> namesOf(std::string_view path)
{
    std::vector<std::string_view> names;
    while (!path.empty()) {
        path.remove_prefix(1); // the separator
        std::string_view const name = path.substr(0, path.find(xoh::PATH_SEPARATOR));
        names.push_back(name);
        path.remove_prefix(name.size());
    }
    return names;
}

} // namespace

std::string writeDocument(std::vector<Field> const& fields)
{
    std::string document = xoh::XML_DECLARATION;
    std::vector<std::string_view> open;
    for (auto const& [path, value] : fields) {
        std::vector<std::string_view> const names = namesOf(path);
        std::size_t common = 0;
        while (common < names.size() && common < open.size() && names[common] == open[common]) {
            ++common;
        }
        closeTo(common, open, document);
        for (; open.size() < names.size(); open.push_back(names[open.size()])) {
            ((document += '<') += names[open.size()]) += '>';
        }
        document += xmlText(value);
    }
    closeTo(0, open, document);
    return document;
}

} // namespace trs::adapter
