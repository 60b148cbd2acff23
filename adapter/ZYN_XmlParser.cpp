#include "adapter/ZYN_XmlParser.h"

#include "adapter/ZYN_ParserWords.h"
#include "platform/NmaLogHelper.h"

#include <array>

namespace {

// Nobody sees the events of the chunks that are read, so expat may have several of them together.
constexpr std::size_t PARSED_AT_ONCE = 16384;

} // namespace

ZYN_XmlParser::ZYN_XmlParser(std::istream& in) : expatpp(true, nullptr)
{
    std::ios_base::iostate const thrown = in.exceptions();
    in.exceptions(std::ios_base::goodbit);
    feed().holdBack(PARSED_AT_ONCE);
    parse(in);
    in.clear();
    in.seekg(0);
    if ((in.rdstate() & thrown) == 0) {
        in.exceptions(thrown);
    }
}

void ZYN_XmlParser::parse(std::istream& in)
{
    std::size_t size = 0;
    bool isFinal = in.eof();
    while (!isFinal) {
        std::array<char, 256> buffer;
        in.read(buffer.data(), buffer.size());
        auto const count = static_cast<std::size_t>(in.gcount());
        isFinal = !in.good(); // a stream that failed has no more to give, either
        size += count;
        bool const isTooLong = size > DOCUMENT_SIZE_MAX;
        if (isTooLong) {
            stop("document too long");
        }
        if (isTooLong || XML_Parse(buffer.data(), static_cast<int>(count), isFinal ? 1 : 0) == XML_STATUS_ERROR) {
            NmaLogHelper(3, __FILE__, __func__, __LINE__)
                .message("%s at line %d", brokenBound != nullptr ? brokenBound : XML_ErrorString(XML_GetErrorCode()),
                         static_cast<int>(XML_GetCurrentLineNumber()));
            return;
        }
    }
}

void ZYN_XmlParser::stop(char const* reason)
{
    brokenBound = reason;
    XML_StopParser(mParser, XML_FALSE);
}

void ZYN_XmlParser::startElement(char const* name, char const**)
{
    if (currentPath == xoh::ROOT_PATH && name != xoh::HEADER_ELEMENT) {
        xohMsgType = name;
    }
    currentPath += xoh::PATH_SEPARATOR;
    currentPath += name;
    if (currentPath.size() > PATH_SIZE_MAX) {
        stop("elements nested too deep");
    }
}

void ZYN_XmlParser::charData(char const* s, int len)
{
    if (s == nullptr || len < 1 || *s == '\n') {
        text.clear();
        return;
    }
    if (text.empty() || currentPath != textPath) {
        text.clear();
        textPath = currentPath;
    }
    text.append(s, static_cast<std::size_t>(len));
}

void ZYN_XmlParser::endElement(char const*)
{
    auto const [entry, isNew] = values.try_emplace(currentPath);
    valuesSize += isNew ? currentPath.size() + ENTRY_SIZE : 0;
    valuesSize += text.size() - entry->second.size();
    entry->second = text;
    text.clear();
    std::size_t const parentSize = currentPath.rfind(xoh::PATH_SEPARATOR);
    currentPath.resize(parentSize == std::string::npos ? 0 : parentSize);
    if (valuesSize > VALUES_SIZE_MAX) {
        stop("message too long");
    }
}

std::string ZYN_XmlParser::getValue(std::string const& path) const
{
    auto const entry = values.find(path);
    return entry != values.end() ? entry->second : std::string();
}

std::string ZYN_XmlParser::getXohMsgType() const { return xohMsgType; }
