#include "adapter/expatpp/XmlFeed.h"

#include <algorithm>

namespace {

// The length of what expat has of a token whose end has not come.
std::size_t unfinishedLength(XML_Parser parser)
{
    int offset = 0;
    int size = 0;
    char const* const input = XML_GetInputContext(parser, &offset, &size);
    return input != nullptr && size > offset ? static_cast<std::size_t>(size - offset) : 0;
}

bool hand(XML_Parser parser, char const* s, int len, int isFinal)
{
    return XML_Parse(parser, s, len, isFinal) != XML_STATUS_ERROR;
}

} // namespace

bool XmlFeed::parse(XML_Parser parser, char const* s, int len, int isFinal)
{
    if (hasFailed_ || isParsing_) {
        return false;
    }
    if (len < 0 || (s == nullptr && len > 0)) {
        return hand(parser, s, len, isFinal); // refused, without a consequence for the document
    }
    auto const length = static_cast<std::size_t>(len);
    if (isFinal == 0 && held_.size() + length < wanted_) {
        held_.append(s, length);
        return true;
    }
    isParsing_ = true;
    if (length <= held_.size()) {
        held_.append(s, length);
        hasFailed_ = !hand(parser, held_.data(), static_cast<int>(held_.size()), isFinal);
    } else {
        hasFailed_ = (!held_.empty() && !hand(parser, held_.data(), static_cast<int>(held_.size()), 0)) ||
                     !hand(parser, s, len, isFinal);
    }
    isParsing_ = false;
    held_.clear();
    std::size_t const unfinished = unfinishedLength(parser);
    wanted_ = unfinished < PATIENCE ? leastSize_ : std::max(leastSize_, unfinished);
    return !hasFailed_;
}

void XmlFeed::holdBack(std::size_t size)
{
    leastSize_ = size;
    wanted_ = std::max(wanted_, size);
}
