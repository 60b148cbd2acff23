// XmlFeed: how a document reaches an expat parser, chunk by chunk, in time linear in its length.
#pragma once

#include "adapter/expatpp/XmlProlog.h"

#include <cstddef>
#include <expat.h>
#include <string>

// expat scans a token (a tag, a comment) from its start with every chunk until the end of it has come, which takes
// quadratic time for a long token in short chunks. So once a token is PATIENCE bytes long and has not ended, the feed
// lets expat see no more before as much again has come. Shorter tokens are parsed with the chunk that ends them.
class XmlFeed {
public:
    static constexpr std::size_t PATIENCE = 1024;

    // Parses the next `len` bytes of the document; `isFinal` is not 0 when they are the last. False when expat failed,
    // and from then on; expat sees nothing more then, and its error code stays. Also false in an event of that very
    // parser.
    bool parse(XML_Parser parser, char const* s, int len, int isFinal);

    // Lets expat see no less than `size` bytes at a time but for the last, when nobody waits for the events of each
    // chunk: it works faster then.
    void holdBack(std::size_t size);

    XmlProlog& prolog() { return prolog_; }

private:
    std::string held_;       // came, but was not shown to expat yet
    std::size_t wanted_ = 0; // bytes that must have come before expat sees them
    std::size_t leastSize_ = 0;
    bool isParsing_ = false;
    bool hasFailed_ = false;
    XmlProlog prolog_;
};
