#define XML_DTD // NOLINT(readability-identifier-naming): expat declares its protection against amplification only then
#include "adapter/expatpp/expatpp.h"

#include <algorithm>
#include <cstring>

#undef NDEBUG
#include <cassert>

namespace {

// Entities in attribute values may grow a document to this many times its length, and always to this many bytes.
// Twice is more than the predefined entities, which expat counts too, can ever need.
constexpr float AMPLIFICATION_MAX = 2;
constexpr unsigned long long UNCHECKED_SIZE = 1024ULL * 1024;

expatpp& objectOf(void* userData) { return *static_cast<expatpp*>(userData); }
expatppNesting* nestingObjectOf(void* userData) { return static_cast<expatppNesting*>(&objectOf(userData)); }

} // namespace

expatpp::expatpp(bool createParser, char const* encoding)
{
    if (createParser) {
        mParser = XML_ParserCreate(encoding);
    }
    if (mParser == nullptr) {
        return;
    }
    XML_SetUserData(mParser, this);
    XML_SetElementHandler(mParser, startElementCallback, endElementCallback);
    XML_SetCharacterDataHandler(mParser, charDataCallback);
    XML_SetProcessingInstructionHandler(mParser, processingInstructionCallback);
    XML_SetDefaultHandler(mParser, defaultHandlerCallback);
    XML_SetUnparsedEntityDeclHandler(mParser, unParsedEntityDeclCallback);
    XML_SetNotationDeclHandler(mParser, notationDeclCallback);
    XML_SetNotStandaloneHandler(mParser, notStandaloneHandlerCallback);
    XML_SetNamespaceDeclHandler(mParser, startNamespaceCallback, endNamespaceCallback);
    XML_SetCommentHandler(mParser, commentCallback);
    XML_SetBillionLaughsAttackProtectionMaximumAmplification(mParser, AMPLIFICATION_MAX);
    XML_SetBillionLaughsAttackProtectionActivationThreshold(mParser, UNCHECKED_SIZE);
}

expatpp::~expatpp()
{
    if (mParser != nullptr) {
        XML_ParserFree(mParser);
    }
}

void expatpp::startElement(char const*, char const**) {}
void expatpp::endElement(char const*) {}
void expatpp::charData(char const*, int) {}
void expatpp::processingInstruction(char const*, char const*) {}
void expatpp::defaultHandler(char const*, int) {}
int expatpp::notStandaloneHandler() { return 0; }
void expatpp::unparsedEntityDecl(char const*, char const*, char const*, char const*, char const*) {}
void expatpp::notationDecl(char const*, char const*, char const*, char const*) {}
void expatpp::startNamespace(char const*, char const*) {}
void expatpp::endNamespace(char const*) {}

int expatpp::XML_Parse(char const* s, int len, int isFinal)
{
    return feed_->parse(mParser, s, len, isFinal) ? XML_STATUS_OK : XML_STATUS_ERROR;
}
XML_Error expatpp::XML_GetErrorCode() const
{
    return mParser != nullptr ? ::XML_GetErrorCode(mParser) : XML_ERROR_NO_MEMORY;
}
XML_Size expatpp::XML_GetCurrentLineNumber() const
{
    return mParser != nullptr ? ::XML_GetCurrentLineNumber(mParser) : 0;
}

void expatpp::startElementCallback(void* userData, char const* name, char const** atts)
{
    objectOf(userData).feed_->prolog().end();
    objectOf(userData).startElement(name, atts);
}
void expatpp::endElementCallback(void* userData, char const* name) { objectOf(userData).endElement(name); }
void expatpp::charDataCallback(void* userData, char const* s, int len) { objectOf(userData).charData(s, len); }
void expatpp::processingInstructionCallback(void* userData, char const* target, char const* data)
{
    expatpp& object = objectOf(userData);
    object.feed_->prolog().leaveOut(object.mParser);
    object.processingInstruction(target, data);
}
// Has the comment reported like whatever has no event of its own.
void expatpp::commentCallback(void* userData, char const*)
{
    expatpp const& object = objectOf(userData);
    XmlProlog& prolog = object.feed_->prolog();
    prolog.setInComment(true);
    XML_DefaultCurrent(object.mParser);
    prolog.setInComment(false);
}
void expatpp::defaultHandlerCallback(void* userData, char const* s, int len)
{
    expatpp& object = objectOf(userData);
    std::string_view const piece(s, static_cast<std::size_t>(len));
    if (object.feed_->prolog().countBefore(piece, object.mParser) >= DECLARATIONS_SIZE_MAX) {
        XML_StopParser(object.mParser, XML_FALSE);
    }
    object.defaultHandler(s, len);
}
int expatpp::notStandaloneHandlerCallback(void* userData) { return objectOf(userData).notStandaloneHandler(); }
void expatpp::unParsedEntityDeclCallback(void* userData, char const* entityName, char const* base, char const* systemId,
                                         char const* publicId, char const* notationName)
{
    objectOf(userData).unparsedEntityDecl(entityName, base, systemId, publicId, notationName);
}
void expatpp::notationDeclCallback(void* userData, char const* notationName, char const* base, char const* systemId,
                                   char const* publicId)
{
    objectOf(userData).notationDecl(notationName, base, systemId, publicId);
}
void expatpp::startNamespaceCallback(void* userData, char const* prefix, char const* uri)
{
    objectOf(userData).startNamespace(prefix, uri);
}
void expatpp::endNamespaceCallback(void* userData, char const* prefix) { objectOf(userData).endNamespace(prefix); }

int expatpp::skipWhiteSpace(char const* s) { return s != nullptr ? static_cast<int>(std::strspn(s, " \t\n\r")) : 0; }

bool expatpp::emptyCharData(char const* s, int len)
{
    if (s == nullptr || len <= 0) {
        return true;
    }
    if (len == 1 && (s[0] == '\n' || s[0] == '\r')) {
        return true;
    }
    if (len == 2 && s[0] == '\r' && s[1] == '\n') {
        return true;
    }
    return std::all_of(s, s + len, [](char c) { return c == ' '; });
}

expatppNesting::expatppNesting() : expatpp(true, nullptr)
{
    if (mParser != nullptr) {
        XML_SetElementHandler(mParser, nestedStartElementCallback, nestedEndElementCallback);
    }
}

expatppNesting::expatppNesting(expatppNesting* parent) : expatpp(false, nullptr), mParent(parent)
{
    if (parent != nullptr) {
        mParser = parent->mParser;
        feed_ = parent->feed_;
        parent->child_ = this;
    }
    assert(mParser);
    XML_SetUserData(mParser, static_cast<expatpp*>(this));
}

expatppNesting::~expatppNesting()
{
    assert(!mParent);
    deleteChildren();
}

// Not by recursion: a document decides how many there are.
void expatppNesting::deleteChildren()
{
    expatppNesting* innermost = this;
    while (innermost->child_ != nullptr) {
        innermost = innermost->child_;
    }
    while (innermost != this) {
        innermost = innermost->returnToParent();
    }
}

expatppNesting* expatppNesting::returnToParent()
{
    expatppNesting* const parent = mParent;
    if (parent != nullptr) {
        deleteChildren();
        parent->child_ = nullptr;
        XML_SetUserData(mParser, static_cast<expatpp*>(parent));
        mParent = nullptr;
        mParser = nullptr;
        delete this;
    }
    return parent;
}

void expatppNesting::nestedStartElementCallback(void* userData, char const* name, char const** atts)
{
    ++nestingObjectOf(userData)->mDepth;
    startElementCallback(userData, name, atts);
}

void expatppNesting::nestedEndElementCallback(void* userData, char const* name)
{
    expatppNesting* object = nestingObjectOf(userData);
    while (object->mDepth == 0 && object->mParent != nullptr) {
        object = object->returnToParent();
    }
    object->endElement(name);
    --object->mDepth;
}
