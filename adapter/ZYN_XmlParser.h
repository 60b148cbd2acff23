// ZYN_XmlParser: the fields of one management message, read from its document.
#pragma once

#include "adapter/expatpp/expatpp.h"

#include <cstddef>
#include <istream>
#include <map>
#include <string>

// Parses a BTSMessage document in its constructor and then tells the text of each element by its path, a slash and a
// name for every element from the root down. Attributes are ignored. Of an element with several pieces of text the last
// counts, pieces being parted by line feeds and by the text of child elements; of several elements with one path too.
//
// A document that is malformed or breaks a bound is logged, once, and not parsed further: elements that ended before
// have their values.
class ZYN_XmlParser : public expatpp {
public:
    // Bounds, in bytes: of a document; of a path; and of what is kept of a document: for each element with a path of
    // its own the path, the text and ENTRY_SIZE.
    static constexpr std::size_t DOCUMENT_SIZE_MAX = 16UL * 1024 * 1024;
    static constexpr std::size_t PATH_SIZE_MAX = 8UL * 1024;
    static constexpr std::size_t VALUES_SIZE_MAX = 16UL * 1024 * 1024;
    static constexpr std::size_t ENTRY_SIZE = 128;

    // Reads `in` up to its end, or as far as it can be read, and rewinds it. Streams do not throw here; one that cannot
    // be rewound is left failed, and throws no more.
    explicit ZYN_XmlParser(std::istream& in);

    // The text of the element at `path`; empty when there is none.
    std::string getValue(std::string const& path) const;
    // The name of the message element, the last child of the root that is not the header; empty when there is none.
    std::string getXohMsgType() const;

    void startElement(char const* name, char const** atts) override;
    void endElement(char const* name) override;
    void charData(char const* s, int len) override;

private:
    void parse(std::istream& in);
    void stop(char const* reason);

    std::string textPath;
    std::string currentPath;
    std::string text;
    std::map<std::string, std::string> values;
    std::string xohMsgType;
    std::size_t valuesSize = 0;
    char const* brokenBound = nullptr; // says which, once one is
};
