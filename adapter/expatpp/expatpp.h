// expatpp and expatppNesting: XML parsers with a virtual function for each event, over expat.
#pragma once

#include "adapter/expatpp/XmlFeed.h"

#include <expat.h>

// Owns an expat parser and turns its callbacks into virtual functions, which do nothing here: a derived class overrides
// those it wants. Strings are UTF-8, end with a NUL where they have no length, and are valid during the event alone.
// A parser takes one document. Without namespace processing: declarations of namespaces arrive as attributes. Entities
// that the document declares itself are not expanded in content; a reference to one arrives as text at defaultHandler.
// An event may delete neither the parser nor, but for expatppNesting's hand-back, its object.
//
// Time and memory are linear in the length of the document however it is cut into chunks (docs/bounds.md).
class expatpp {
public:
    // How many bytes of a document's prolog may be declarations, everything but comments, processing instructions and
    // white space. expat expands entities by recursion and compares each attribute declaration with all before it; with
    // this bound neither matters. A declaration that goes on behind it fails the parse with XML_ERROR_ABORTED.
    static constexpr XML_Index DECLARATIONS_SIZE_MAX = 4096;

    // With `createParser`, makes an expat parser; a null `encoding` lets the document tell it. When memory does not
    // suffice for one, mParser stays null. Without, the derived class sets mParser, whose user data must be the
    // expatpp.
    expatpp(bool createParser, char const* encoding);
    expatpp(expatpp const&) = delete;
    expatpp& operator=(expatpp const&) = delete;
    virtual ~expatpp();

    // An element begins; `atts` are name, value, name, value, and so on, and null.
    virtual void startElement(char const* name, char const** atts);
    virtual void endElement(char const* name);
    // Text comes in as many pieces as expat likes; a line feed is always a piece of its own.
    virtual void charData(char const* s, int len);
    virtual void processingInstruction(char const* target, char const* data);
    // Whatever has no event of its own, as written in the document: comments, declarations, references to entities.
    virtual void defaultHandler(char const* s, int len);
    // The document depends on declarations outside it. 0 fails the parse with XML_ERROR_NOT_STANDALONE.
    virtual int notStandaloneHandler();
    virtual void unparsedEntityDecl(char const* entityName, char const* base, char const* systemId,
                                    char const* publicId, char const* notationName);
    virtual void notationDecl(char const* notationName, char const* base, char const* systemId, char const* publicId);
    // These two never come, for want of namespace processing.
    virtual void startNamespace(char const* prefix, char const* uri);
    virtual void endNamespace(char const* prefix);

    // Parses one chunk of the document, the last one when `isFinal` is not 0. Non-zero is success. Without a parser, in
    // an event, after a failure and after the last chunk it fails; after a failure the first error code stays. The
    // events of a token longer than XmlFeed::PATIENCE may come with a later chunk.
    int XML_Parse(char const* s, int len, int isFinal);
    // XML_ERROR_NO_MEMORY when there is no parser.
    XML_Error XML_GetErrorCode() const;
    // Counted from 1; 0 when there is no parser.
    XML_Size XML_GetCurrentLineNumber() const;

    // What expat calls: `userData` is the expatpp whose event it is.
    static void startElementCallback(void* userData, char const* name, char const** atts);
    static void endElementCallback(void* userData, char const* name);
    static void charDataCallback(void* userData, char const* s, int len);
    static void processingInstructionCallback(void* userData, char const* target, char const* data);
    static void defaultHandlerCallback(void* userData, char const* s, int len);
    static int notStandaloneHandlerCallback(void* userData);
    static void unParsedEntityDeclCallback(void* userData, char const* entityName, char const* base,
                                           char const* systemId, char const* publicId, char const* notationName);
    static void notationDeclCallback(void* userData, char const* notationName, char const* base, char const* systemId,
                                     char const* publicId);
    static void startNamespaceCallback(void* userData, char const* prefix, char const* uri);
    static void endNamespaceCallback(void* userData, char const* prefix);

    // How many blanks, tabs, line feeds and carriage returns `s` begins with; none when it is null.
    static int skipWhiteSpace(char const* s);
    // Whether a piece of text is empty, one line end, or nothing but blanks. Tabs are content.
    bool emptyCharData(char const* s, int len);

protected:
    XML_Parser mParser = nullptr; // owned
    XmlFeed& feed() { return *feed_; }

private:
    friend class expatppNesting;

    static void commentCallback(void* userData, char const* text);

    XmlFeed ownFeed_;
    XmlFeed* feed_ = &ownFeed_; // of the object that made the parser
};

// A parser that may hand the content of an element to a child: its startElement makes one with `new Child(this)`. The
// child gets all events up to the end of that element, which is its parent's again, and then deletes itself. A parser
// has one child at a time. A child whose element has not ended is deleted with its parent, by when the derived part of
// that one is gone.
//
// A violated requirement stops the process, in every build.
class expatppNesting : public expatpp {
public:
    // A top-level parser, with an expat parser of its own.
    expatppNesting();
    // A child, on the heap. Requires a parent with a parser.
    explicit expatppNesting(expatppNesting* parent);
    // Requires that a child has returned to its parent.
    ~expatppNesting() override;

    // Gives the events back to the parent, which is returned, and deletes this object. No effect, and null, for a
    // top-level parser. Not to be called in an event of this object.
    expatppNesting* returnToParent();

    static void nestedStartElementCallback(void* userData, char const* name, char const** atts);
    static void nestedEndElementCallback(void* userData, char const* name);

protected:
    int mDepth = 0;                    // elements begun and not ended since this object took over the events
    expatppNesting* mParent = nullptr; // null for the top-level parser and after the hand-back

private:
    void deleteChildren();

    expatppNesting* child_ = nullptr;
};
