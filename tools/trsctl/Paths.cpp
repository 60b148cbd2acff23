#include "tools/trsctl/Paths.h"

#include "catalogue/Value.h"
#include "tools/support/Nearest.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace trs::ctl {

namespace {

using catalogue::Type;

void addLeaves(Type const& type, std::string const& path, std::vector<std::string>& leaves)
{
    switch (type.kind) {
    case Type::Kind::record:
        for (catalogue::Field const& field : type.fields) {
            addLeaves(*field.type, path + '.' + std::string(field.name), leaves);
        }
        break;
    case Type::Kind::sequence:
    case Type::Kind::array:
        leaves.push_back(path); // an empty one, or an address
        addLeaves(*type.element, path + "[]", leaves);
        break;
    case Type::Kind::status:
        leaves.push_back(path + ".subSystem");
        leaves.push_back(path + ".failed");
        break;
    default:
        leaves.push_back(path);
    }
}

// With "[]" in the place of each "[7]".
std::string withoutIndexes(std::string const& path)
{
    std::string plain;
    bool isIndex = false;
    for (char const each : path) {
        isIndex = isIndex && std::isdigit(static_cast<unsigned char>(each)) != 0;
        plain += isIndex ? "" : std::string(1, each);
        isIndex = isIndex || each == '[';
    }
    return plain;
}

} // namespace

std::vector<std::string> leafPaths(catalogue::Operation const& operation, bool all)
{
    std::vector<std::string> leaves;
    if (operation.result != nullptr && (all || operation.result->kind != Type::Kind::status)) {
        addLeaves(*operation.result, "result", leaves);
    }
    std::vector<std::string_view> const names = operation.parameterNames();
    for (std::size_t i = 0; i < operation.parameters.size(); ++i) {
        if (all || !operation.parameters[i].isIn) {
            addLeaves(*operation.parameters[i].type, std::string(names[i]), leaves);
        }
    }
    return leaves;
}

std::string whyNoPath(std::string const& path, std::span<catalogue::Operation const* const> operations, bool all)
{
    std::set<std::string> leaves;
    for (catalogue::Operation const* const operation : operations) {
        std::ranges::copy(leafPaths(*operation, all), std::inserter(leaves, leaves.end()));
    }
    std::string const plain = withoutIndexes(path);
    if (leaves.contains(plain)) {
        return {};
    }
    std::vector<std::string> const candidates(leaves.begin(), leaves.end());
    constexpr std::size_t mostNamed = 8;
    std::string text = '\'' + path + "' is nothing that is told";
    if (std::string const meant = tools::didYouMean(plain, candidates); !meant.empty()) {
        return text + meant;
    }
    text += candidates.empty() ? "" : "; there is ";
    for (std::size_t i = 0; i < candidates.size() && i < mostNamed; ++i) {
        text += (i == 0 ? "" : ", ") + candidates[i];
    }
    return text + (candidates.size() > mostNamed ? ", ..." : "");
}

} // namespace trs::ctl
