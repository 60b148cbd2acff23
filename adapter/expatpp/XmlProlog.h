// XmlProlog: how much of what a document begins with are declarations.
#pragma once

#include <expat.h>
#include <string_view>

// Whatever is not known to be a comment, a processing instruction or white space counts, whether it is reported or not.
class XmlProlog {
public:
    // The prolog is over: nothing but elements and their content is still to come; expat knows, but does not tell.
    void end() { isOver_ = true; }
    bool isOver() const { return isOver_; }

    // The parser's present event is no declaration.
    void leaveOut(XML_Parser parser) { others_ += XML_GetCurrentByteCount(parser); }
    // What is reported from now on belongs to a comment, or no more.
    void setInComment(bool isInComment) { isInComment_ = isInComment; }
    // `piece` of the document is being reported. How many bytes of declarations came before it; 0 when it is none.
    XML_Index countBefore(std::string_view piece, XML_Parser parser)
    {
        if (isOver_) {
            return 0;
        }
        if (isInComment_ || piece.find_first_not_of(" \t\r\n") == std::string_view::npos) {
            leaveOut(parser);
            return 0;
        }
        return XML_GetCurrentByteIndex(parser) - others_;
    }

private:
    XML_Index others_ = 0; // bytes that are no declarations
    bool isInComment_ = false;
    bool isOver_ = false;
};
