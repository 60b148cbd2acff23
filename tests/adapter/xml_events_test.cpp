// Events of XML documents, children that take over elements, and documents made to hurt.
#include "adapter/expatpp/expatpp.h"
#include "tests/support/Text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <dlfcn.h>
#include <string>
#include <vector>

namespace {

bool isMemoryExhausted = false;

} // namespace

// Stands before expat's own.
extern "C" XML_Parser XML_ParserCreate(XML_Char const* encoding)
{
    auto const original = reinterpret_cast<XML_Parser (*)(XML_Char const*)>(dlsym(RTLD_NEXT, "XML_ParserCreate"));
    return isMemoryExhausted ? nullptr : original(encoding);
}

namespace {

using support::repeated;
using testing::ElementsAre;
using Events = std::vector<std::string>;

// The last chunk is empty. Whether all were parsed.
bool feed(expatpp& parser, std::string const& document, std::size_t chunk = 4096)
{
    for (std::size_t begin = 0; begin < document.size(); begin += chunk) {
        auto const length = static_cast<int>(std::min(chunk, document.size() - begin));
        if (parser.XML_Parse(document.data() + begin, length, 0) == 0) {
            return false;
        }
    }
    return parser.XML_Parse("", 0, 1) != 0;
}

// Writes down what happens; text that comes in pieces is joined.
template <class Base>
class Witness : public Base {
public:
    explicit Witness(Events& events) : Base(), events_(events) {}
    Witness(Base* parent, Events& events, std::string who) : Base(parent), events_(events), who_(std::move(who)) {}
    Witness(Events& events, char const* encoding) : Base(true, encoding), events_(events) {}

    void startElement(char const* name, char const** atts) override
    {
        std::string event = who_ + "<" + name;
        for (; *atts != nullptr; atts += 2) {
            event += std::string(" ") + atts[0] + "=" + atts[1];
        }
        events_.push_back(event);
    }
    void endElement(char const* name) override { events_.push_back(who_ + "/" + name); }
    void charData(char const* s, int len) override { add("text ", s, len); }
    void processingInstruction(char const* target, char const* data) override
    {
        events_.push_back(std::string("pi ") + target + ' ' + data);
    }
    void defaultHandler(char const* s, int len) override { add("default ", s, len); }
    void unparsedEntityDecl(char const* name, char const*, char const* systemId, char const* publicId,
                            char const* notation) override
    {
        events_.push_back(std::string("entity ") + name + ' ' + systemId + ' ' +
                          (publicId == nullptr ? "-" : publicId) + ' ' + notation);
    }
    void notationDecl(char const* name, char const*, char const* systemId, char const*) override
    {
        events_.push_back(std::string("notation ") + name + ' ' + systemId);
    }
    void startNamespace(char const*, char const*) override { events_.emplace_back("namespace"); }

protected:
    void add(std::string const& kind, char const* s, int len)
    {
        if (events_.empty() || events_.back().compare(0, kind.size(), kind) != 0) {
            events_.push_back(kind);
        }
        events_.back().append(s, static_cast<std::size_t>(len));
    }

    Events& events_;
    std::string who_;
};

using Parser = Witness<expatpp>;

struct Plain : expatpp {
    explicit Plain(char const* encoding = nullptr) : expatpp(true, encoding) {}
};

TEST(Expatpp, forwardsEachEventHoweverTheDocumentIsCut)
{
    std::string const document =
        "<?go now?><!DOCTYPE a [<!NOTATION gif SYSTEM \"g\"><!ENTITY pic SYSTEM \"p\" NDATA gif>"
        "<!ENTITY own \"x\">]><a xmlns:n=\"urn:n\" b='1&own;2'>t&amp;&own;<n:c/><!--no--></a>";
    for (std::size_t const chunk : {1U, 7U, 4096U}) {
        Events events;
        Parser parser(events, nullptr);
        EXPECT_TRUE(feed(parser, document, chunk)) << parser.XML_GetErrorCode();
        EXPECT_THAT(events, testing::IsSupersetOf({"pi go now", "notation gif g", "entity pic p - gif",
                                                   "<a xmlns:n=urn:n b=1x2", "text t&", "default &own;", "<n:c", "/n:c",
                                                   "default <!--no-->", "/a"}))
            << chunk;
        EXPECT_THAT(events, testing::Not(testing::Contains("namespace")));
    }
}

TEST(Expatpp, refusesDocumentsThatDependOnOthersUnlessToldOtherwise)
{
    std::string const document = "<!DOCTYPE a SYSTEM 'a.dtd'>\n<a/>";
    Plain parser;
    EXPECT_FALSE(feed(parser, document));
    EXPECT_EQ(parser.XML_GetErrorCode(), XML_ERROR_NOT_STANDALONE);
    struct : Plain {
        int notStandaloneHandler() override { return 1; }
    } tolerant;
    EXPECT_TRUE(feed(tolerant, document));
    Plain standalone;
    EXPECT_TRUE(feed(standalone, "<?xml version='1.0' standalone='yes'?>" + document));
}

TEST(Expatpp, countsWhiteSpace)
{
    std::pair<char const*, int> const cases[] = {{" \t\nx", 3}, {"\r\n", 2}, {"\v x", 0},
                                                 {"\f", 0},     {"", 0},     {nullptr, 0}};
    for (auto const& [text, count] : cases) {
        EXPECT_EQ(expatpp::skipWhiteSpace(text), count) << (text != nullptr ? text : "null");
    }
}

TEST(Expatpp, knowsEmptyText)
{
    Plain parser;
    for (std::string const empty : {"", "\n", "\r", "\r\n", "   "}) {
        EXPECT_TRUE(parser.emptyCharData(empty.data(), static_cast<int>(empty.size())))
            << testing::PrintToString(empty);
    }
    for (std::string const full : {"\t", " \n", "\n\r", "\n\n", "\r\n ", "x"}) {
        EXPECT_FALSE(parser.emptyCharData(full.data(), static_cast<int>(full.size()))) << testing::PrintToString(full);
    }
    EXPECT_TRUE(parser.emptyCharData(nullptr, 5));
    EXPECT_TRUE(parser.emptyCharData("x", -1));
}

TEST(Expatpp, failsEveryParseWithoutAParser)
{
    isMemoryExhausted = true;
    Plain parser;
    expatppNesting nesting;
    isMemoryExhausted = false;
    for (expatpp* const each : std::initializer_list<expatpp*>{&parser, &nesting}) {
        EXPECT_EQ(each->XML_Parse("<a/>", 4, 1), 0);
        EXPECT_EQ(each->XML_Parse("<a/>", 4, 0), 0);
        EXPECT_EQ(each->XML_GetErrorCode(), XML_ERROR_NO_MEMORY);
        EXPECT_EQ(each->XML_GetCurrentLineNumber(), 0U);
    }
    EXPECT_DEATH(expatppNesting child(&nesting), "expatpp.cpp:[0-9]+: .*expatppNesting.*`mParser' failed");
}

TEST(Expatpp, staysFailedWithTheFirstError)
{
    Plain parser;
    EXPECT_EQ(parser.XML_Parse("<a>\n</b", 7, 0), 1);
    EXPECT_EQ(parser.XML_Parse(">", 1, 0), 0);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(parser.XML_Parse("</a>", 4, 1), 0);
        EXPECT_EQ(parser.XML_GetErrorCode(), XML_ERROR_TAG_MISMATCH);
        EXPECT_EQ(parser.XML_GetCurrentLineNumber(), 2U);
    }
}

TEST(Expatpp, takesOneDocumentAndNoNonsense)
{
    Plain parser;
    EXPECT_EQ(parser.XML_Parse(nullptr, 3, 0), 0);
    EXPECT_EQ(parser.XML_Parse("<a", -1, 0), 0);
    EXPECT_EQ(parser.XML_GetErrorCode(), XML_ERROR_INVALID_ARGUMENT);
    EXPECT_EQ(parser.XML_Parse(nullptr, 0, 0), 1);
    EXPECT_TRUE(feed(parser, "<a/>")) << "arguments that make no sense are no part of the document";
    EXPECT_FALSE(feed(parser, "<a/>"));
    EXPECT_EQ(parser.XML_GetErrorCode(), XML_ERROR_FINISHED);
}

TEST(Expatpp, cannotBeFedInAnEvent)
{
    struct : Plain {
        void startElement(char const*, char const**) override { result = XML_Parse("<b/>", 4, 0); }
        int result = -1;
    } parser;
    EXPECT_TRUE(feed(parser, "<a></a>"));
    EXPECT_EQ(parser.result, 0);
}

TEST(Expatpp, tellsWhatIsWrongWithADocument)
{
    using namespace std::string_literals;
    struct {
        std::string document;
        XML_Error error;
        char const* encoding = nullptr;
    } const cases[] = {
        {"", XML_ERROR_NO_ELEMENTS},
        {"<a>\0</a>"s, XML_ERROR_INVALID_TOKEN},
        {"\0\0\0\0"s, XML_ERROR_INVALID_TOKEN},
        {"<a>\xff</a>", XML_ERROR_INVALID_TOKEN},
        {"<a>\xc0\xaf</a>", XML_ERROR_INVALID_TOKEN},
        {"<a>\xed\xa0\x80</a>", XML_ERROR_INVALID_TOKEN},
        {"<a>\xe2\x82", XML_ERROR_PARTIAL_CHAR},
        {"\xff\xfe<\0a\0/\0>"s, XML_ERROR_UNCLOSED_TOKEN},
        {"<?xml version='1.0' encoding='UTF-16'?><a/>", XML_ERROR_INCORRECT_ENCODING},
        {"<?xml version='1.0' encoding='EBCDIC-CP-BE'?><a/>", XML_ERROR_UNKNOWN_ENCODING},
        {"<a/>", XML_ERROR_UNKNOWN_ENCODING, "nonsense"},
        {"<a b='1' b='2'/>", XML_ERROR_DUPLICATE_ATTRIBUTE},
        {"<a>&undeclared;</a>", XML_ERROR_UNDEFINED_ENTITY},
        {"<a><", XML_ERROR_UNCLOSED_TOKEN},
        {"<a/><b/>", XML_ERROR_JUNK_AFTER_DOC_ELEMENT},
    };
    for (auto const& [document, error, encoding] : cases) {
        for (std::size_t const chunk : {1U, 4096U}) {
            Plain parser(encoding);
            EXPECT_FALSE(feed(parser, document, chunk)) << testing::PrintToString(document);
            EXPECT_EQ(parser.XML_GetErrorCode(), error) << testing::PrintToString(document) << ' ' << chunk;
        }
    }
}

// Each of these takes minutes, much memory or the stack when nothing is done about it.
TEST(Expatpp, parsesLongTokensInTimeHoweverTheyCome)
{
    std::string attributes = "<a";
    for (int i = 0; i < 100'000; ++i) {
        attributes += " a" + std::to_string(i) + "=''";
    }
    std::string const documents[] = {
        "<a><!--" + std::string(2'000'000, 'x') + "--></a>", "<a b='" + std::string(2'000'000, 'x') + "'/>",
        "<a>" + std::string(2'000'000, 'x') + "</a>",        "<" + std::string(2'000'000, 'x') + "/>",
        "<a><?x " + std::string(2'000'000, 'x') + "?></a>",  attributes + "/>",
        repeated("<a>", 200'000) + repeated("</a>", 200'000)};
    for (std::string const& document : documents) {
        for (std::size_t const chunk : {1U, 256U}) {
            Plain parser;
            EXPECT_TRUE(feed(parser, document, chunk)) << document.substr(0, 20);
        }
    }
}

TEST(Expatpp, boundsWhatDeclarationsCanDo)
{
    std::string chain = "<!DOCTYPE a [<!ENTITY e0 'x'>";
    std::string attributes = "<!DOCTYPE a [<!ATTLIST a";
    for (int i = 1; i < 120'000; ++i) {
        chain += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";'>";
        attributes += " a" + std::to_string(i) + " CDATA ''";
    }
    std::string bomb = "<!DOCTYPE a [<!ENTITY e0 'xxxxxxxxxx'>";
    for (int i = 1; i < 12; ++i) {
        bomb += "<!ENTITY e" + std::to_string(i) + " '" + repeated("&e" + std::to_string(i - 1) + ";", 10) + "'>";
    }
    struct {
        std::string document;
        XML_Error error;
    } const cases[] = {
        {chain + "]><a b='&e119999;'/>", XML_ERROR_ABORTED},
        {chain + "<!ATTLIST a b CDATA '&e119999;'>]><a/>", XML_ERROR_ABORTED},
        {attributes + ">]><a/>", XML_ERROR_ABORTED},
        {std::string(10'000'000, ' ') + "<a/>", XML_ERROR_NONE},
        {bomb + "]><a b='&e11;'/>", XML_ERROR_AMPLIFICATION_LIMIT_BREACH},
        {bomb + "]><a>" + std::string(4'000'000, 'x') + "<b c='&e11;'/></a>", XML_ERROR_AMPLIFICATION_LIMIT_BREACH},
        {bomb + "]><a>&e11;</a>", XML_ERROR_NONE},
        {"<!DOCTYPE a [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><a c='&a;'/>", XML_ERROR_RECURSIVE_ENTITY_REF},
        {"<a>" + repeated("<!--c--> &lt;&#10;", 200'000) + "</a>", XML_ERROR_NONE},
    };
    for (auto const& [document, error] : cases) {
        Plain parser;
        EXPECT_EQ(feed(parser, document, 100'000), error == XML_ERROR_NONE);
        EXPECT_EQ(parser.XML_GetErrorCode(), error) << document.substr(0, 40) << document.substr(document.size() - 20);
    }
}

// In any encoding, whose pieces are other ones.
TEST(Expatpp, countsOnlyTheDeclarationsOfAProlog)
{
    std::string const spaces(30'000, ' ');
    std::string const comment = "<!-- licence" + std::string(30'000, 'x') + "-->";
    std::string const instruction = "<?x " + std::string(30'000, 'x') + "?>";
    std::string const others = comment + spaces + instruction + repeated("<!---->\n<?y?>", 3000);
    std::string const notations = repeated("<!NOTATION n SYSTEM 'x'>", 200);
    std::string const text = " '" + std::string(1023, 'x') + "<!--" + std::string(3500, 'x') + "-->' ";
    std::pair<std::string, bool> const cases[] = {
        {others + "<a/>" + others, true},
        {others + "<!DOCTYPE" + spaces + "a [" + others + "<!ENTITY b 'c'>" + others + "]>" + others + "<a/>", true},
        {others + "<!DOCTYPE a [<!ENTITY b" + text + ">]><a/>", false},
        {others + "<!DOCTYPE a [<!ENTITY b 'c'>" + notations + others + "]><a/>", false},
        {"<!DOCTYPE a [" + repeated("<!--x-->  <!ENTITY b 'c'>", 400) + "]><a/>", false},
    };
    for (auto const& [document, isTaken] : cases) {
        std::string wide("\xff\xfe", 2);
        for (char const byte : document) {
            wide += {byte, '\0'};
        }
        for (std::string const& encoded : {document, wide}) {
            Plain parser;
            EXPECT_EQ(feed(parser, encoded), isTaken) << document.substr(document.size() - 100);
            EXPECT_EQ(parser.XML_GetErrorCode(), isTaken ? XML_ERROR_NONE : XML_ERROR_ABORTED);
        }
    }
}

// Delegates the content of every element b and, in that, of every c.
class Delegating : public Witness<expatppNesting> {
public:
    explicit Delegating(Events& events) : Witness(events) {}
    Delegating(expatppNesting* parent, Events& events, std::string const& who) : Witness(parent, events, who + ".") {}
    ~Delegating() override { events_.push_back(who_ + "gone"); }
    void startElement(char const* name, char const** atts) override
    {
        Witness::startElement(name, atts);
        if (std::string("b") == name || std::string("c") == name) {
            new Delegating(this, events_, who_ + name);
        }
    }
    int depth() const { return mDepth; }
};

TEST(ExpatppNesting, givesTheContentOfAnElementToAChild)
{
    Events events;
    Delegating parser(events);
    EXPECT_EQ(parser.XML_Parse("<a><b>", 6, 0), 1);
    EXPECT_EQ(parser.depth(), 2);
    EXPECT_EQ(parser.XML_Parse("x<d/></b>", 9, 0), 1);
    EXPECT_EQ(parser.depth(), 1);
    EXPECT_TRUE(feed(parser, "<d></d></a>"));
    EXPECT_EQ(parser.depth(), 0);
    EXPECT_THAT(events, ElementsAre("<a", "<b", "text x", "b.<d", "b./d", "b.gone", "/b", "<d", "/d", "/a"));
}

TEST(ExpatppNesting, unwindsChildrenOfChildren)
{
    Events events;
    Delegating parser(events);
    EXPECT_TRUE(feed(parser, "<a><b><c/><c>t</c></b></a>", 1));
    EXPECT_THAT(events, ElementsAre("<a", "<b", "b.<c", "b.c.gone", "b./c", "b.<c", "text t", "b.c.gone", "b./c",
                                    "b.gone", "/b", "/a"));
    EXPECT_EQ(parser.returnToParent(), nullptr) << "has none";
}

TEST(ExpatppNesting, deletesTheChildrenOfADocumentThatBreaksOff)
{
    Events events;
    {
        Delegating parser(events);
        EXPECT_FALSE(feed(parser, "<a><b><c>"));
        events.clear();
    }
    EXPECT_THAT(events, ElementsAre("gone", "b.c.gone", "b.gone"));
    events.clear();
    Delegating deep(events);
    EXPECT_FALSE(feed(deep, repeated("<c>", 2000)));
}

TEST(ExpatppNesting, isFedThroughAnyOfItsParsers)
{
    Events events;
    Delegating parser(events);
    auto* const child = new Delegating(&parser, events, "child");
    EXPECT_EQ(child->XML_Parse("<a><!--", 7, 0), 1);
    EXPECT_EQ(parser.XML_Parse(std::string(3000, 'x').c_str(), 3000, 0), 1);
    EXPECT_EQ(child->XML_Parse(std::string(100, 'x').c_str(), 100, 0), 1);
    EXPECT_TRUE(feed(parser, "--></a>"));
    EXPECT_EQ(child->returnToParent(), &parser);
    EXPECT_THAT(events,
                ElementsAre("child.<a", "default <!--" + std::string(3100, 'x') + "-->", "child./a", "child.gone"));
}

TEST(ExpatppNesting, stopsTheProcessWhenAChildGoesBeforeItsElement)
{
    expatppNesting parser;
    EXPECT_DEATH(expatppNesting child(&parser), "expatpp.cpp:[0-9]+: .*~expatppNesting.*`!mParent' failed");
    EXPECT_DEATH(expatppNesting(static_cast<expatppNesting*>(nullptr)), "`mParser' failed");
}

} // namespace
