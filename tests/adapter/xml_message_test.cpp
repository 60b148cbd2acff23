// Management messages: which text is at which path, and which documents are refused.
#include "adapter/ZYN_AdapterConstants.h"
#include "adapter/ZYN_XmlParser.h"
#include "broker/Log.h"
#include "tests/support/Text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace {

using support::repeated;
using Lines = std::vector<std::pair<int, std::string>>;

// A parsed document and what was logged meanwhile.
struct Parsed {
    explicit Parsed(std::string const& document) : in(document), parser(in)
    {
        for (trs::LogEntry const& entry : capture.entries()) {
            log.emplace_back(entry.severity, entry.text);
        }
    }
    std::string operator[](std::string const& path) const { return parser.getValue(path); }

    struct Quiet {
        Quiet() { trs::setLogLevel(0); }
        ~Quiet() { trs::setLogLevel(6); }
    } quiet;
    trs::LogCapture capture;
    std::istringstream in;
    ZYN_XmlParser parser;
    Lines log;
};

TEST(XmlMessage, tellsTheFieldsOfALogin)
{
    Parsed const message(xoh::XML_DECLARATION +
                         "<BTSMessage><BTSMessageHdr><_seqNumber>12</_seqNumber><_btsId>7</_btsId><_to>KEP</_to>"
                         "<_from>DOV</_from></BTSMessageHdr><LoginRequest><_userName>u</_userName>"
                         "<_password>p</_password></LoginRequest></BTSMessage>");
    EXPECT_EQ(message.parser.getXohMsgType(), xoh::ELEMENT_LOGIN_REQUEST);
    EXPECT_EQ(message[xoh::PATH_SEQ_NUMBER], "12");
    EXPECT_EQ(message[xoh::PATH_BTS_ID], "7");
    EXPECT_EQ(message[xoh::PATH_TO], xoh::PARTY_UNIT);
    EXPECT_EQ(message[xoh::PATH_FROM], xoh::PARTY_SITE_MANAGER);
    EXPECT_EQ(message[xoh::PATH_LOGIN_USER_NAME], "u");
    EXPECT_EQ(message[xoh::PATH_LOGIN_PASSWORD], "p");
    for (char const* const path : {"/BTSMessage/LoginRequest", "/BTSMessage", "", "/", "_userName", "/BTSMessage/"}) {
        EXPECT_EQ(message[path], "") << path;
    }
    EXPECT_EQ(message.log, Lines());
}

TEST(XmlMessage, keepsTheTextThatCountsForEachElement)
{
    struct {
        char const* document;
        char const* path;
        char const* value;
    } const cases[] = {
        {"<r><a>one\ntwo</a></r>", "/r/a", "two"},
        {"<r><a>one\r\ntwo</a></r>", "/r/a", "two"},
        {"<r><a>one\n</a></r>", "/r/a", ""},
        {"<r><a>one&#10;two</a></r>", "/r/a", "two"},
        {"<r><a> one two </a></r>", "/r/a", " one two "},
        {"<r><a>1 &lt; 2 &amp; 3</a></r>", "/r/a", "1 < 2 & 3"},
        {"<r><a><![CDATA[<b>]]></a></r>", "/r/a", "<b>"},
        {"<r><a>1<!-- and -->2</a></r>", "/r/a", "12"},
        {"<r><a>1</a><a>2</a></r>", "/r/a", "2"},
        {"<r><a>1</a><a/></r>", "/r/a", ""},
        {"<r><a>x<b/></a></r>", "/r/a/b", "x"},
        {"<r><a>x<b/></a></r>", "/r/a", ""},
        {"<r><a>x<b>y</b>z</a></r>", "/r/a/b", "y"},
        {"<r><a>x<b>y</b>z</a></r>", "/r/a", "z"},
        {"<r><a>x<b>\n</b></a></r>", "/r/a/b", ""},
        {"<r><a kind='k'>v</a></r>", "/r/a", "v"},
        {"<r>\n  <c>\n    <a>v</a>\n \t</c>\n</r>", "/r/c", " \t"},
        {"<r>\n  <c>\n    <a>v</a>\n \t</c>\n</r>", "/r", ""},
        {"<!DOCTYPE r [<!ENTITY e 'x'>]><r><a>1&e;2</a></r>", "/r/a", "12"},
        {"<?xml version='1.0' encoding='ISO-8859-1'?><r><a>\xe4</a></r>", "/r/a", "\xc3\xa4"},
    };
    for (auto const& [document, path, value] : cases) {
        Parsed const message(document);
        EXPECT_EQ(message[path], value) << document;
        EXPECT_EQ(message.log, Lines()) << document;
        EXPECT_EQ(message.parser.getXohMsgType(), "") << document;
    }
}

TEST(XmlMessage, takesItsKindFromTheLastChildThatIsNotTheHeader)
{
    std::pair<char const*, char const*> const cases[] = {
        {"<BTSMessage><BTSMessageHdr/></BTSMessage>", ""}, {"<BTSMessage><A/><BTSMessageHdr/></BTSMessage>", "A"},
        {"<BTSMessage><A/><B><C/></B></BTSMessage>", "B"}, {"<Other><A/></Other>", ""},
        {"<BTSMessageHdr><A/></BTSMessageHdr>", ""},
    };
    for (auto const& [document, kind] : cases) {
        EXPECT_EQ(Parsed(document).parser.getXohMsgType(), kind) << document;
    }
}

TEST(XmlMessage, doesNotDependOnWhereItIsCut)
{
    for (std::size_t const size : {255U, 256U, 257U, 511U, 512U, 4095U, 4096U, 4097U, 4352U, 100'000U}) {
        std::string const begin = "<BTSMessage>";
        std::string const end = "</A><B>last</B></BTSMessage>";
        std::string const text(size - begin.size() - 3 - end.size(), 'x');
        Parsed const message(begin + "<A>" + text + end);
        EXPECT_EQ(message["/BTSMessage/A"], text);
        EXPECT_EQ(message["/BTSMessage/B"], "last") << size;
        EXPECT_EQ(message.log, Lines()) << size;
    }
}

TEST(XmlMessage, logsAMalformedDocumentOnceAndKeepsWhatEndedBefore)
{
    std::pair<std::string, std::string> const cases[] = {
        {"<BTSMessage>\n<A>1</A>", "no element found at line 2"},
        {"<BTSMessage>\n<A>1</A></BTSMessage></BTSMessage>", "not well-formed (invalid token) at line 2"},
        {"<BTSMessage><A>1</A>\n\n</B>" + std::string(10'000, '\n'), "mismatched tag at line 3"},
        {std::string("<BTSMessage><A>1</A>\0</BTSMessage>", 34), "not well-formed (invalid token) at line 1"},
    };
    for (auto const& [document, line] : cases) {
        Parsed message(document);
        EXPECT_EQ(message.log, (Lines{{3, line}}));
        EXPECT_EQ(message["/BTSMessage/A"], "1");
        EXPECT_EQ(message.parser.getXohMsgType(), "A");
        EXPECT_EQ(message.in.get(), '<') << "the stream is rewound";
    }
    EXPECT_EQ(Parsed("").log, (Lines{{3, "no element found at line 1"}}));
}

TEST(XmlMessage, canBeReadAgainFromItsStream)
{
    std::string const document = "<BTSMessage/>\n";
    Parsed message(document);
    EXPECT_TRUE(message.in.good());
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(message.in), {}), document);
}

// Gives a few bytes and then fails, and cannot be rewound.
class Broken : public std::streambuf {
protected:
    int_type underflow() override
    {
        static char text[] = "<BTSMessage><A>1</A>";
        if (eback() != nullptr) {
            throw 1; // as a read error reaches a stream
        }
        setg(text, text, text + sizeof text - 1);
        return traits_type::to_int_type(*text);
    }
};

TEST(XmlMessage, endsWithAStreamThatFails)
{
    trs::setLogLevel(0);
    trs::LogCapture const capture;
    std::ifstream missing("/nonexistent/file");
    EXPECT_EQ(ZYN_XmlParser(missing).getXohMsgType(), "");
    std::istream none(nullptr);
    EXPECT_EQ(ZYN_XmlParser(none).getXohMsgType(), "");
    Broken buffer;
    std::istream broken(&buffer);
    broken.exceptions(std::ios_base::badbit | std::ios_base::failbit | std::ios_base::eofbit);
    EXPECT_NO_THROW(ZYN_XmlParser{broken});
    std::istringstream throwing("<BTSMessage><A>1</A></BTSMessage>");
    throwing.exceptions(std::ios_base::failbit);
    EXPECT_EQ(ZYN_XmlParser(throwing).getValue("/BTSMessage/A"), "1");
    EXPECT_EQ(throwing.exceptions(), std::ios_base::failbit);
    ASSERT_EQ(capture.entries().size(), 3U);
    for (trs::LogEntry const& entry : capture.entries()) {
        EXPECT_EQ(entry.text, "no element found at line 1");
    }
    trs::setLogLevel(6);
}

TEST(XmlMessage, refusesWhatBreaksABound)
{
    std::string const begin = "<BTSMessage><A>1</A>";
    std::string many = begin;
    for (int i = 0; i < 200'000; ++i) {
        many += "<e" + std::to_string(i) + "/>";
    }
    std::pair<std::string, std::string> const cases[] = {
        {begin + repeated("<a>", 1'000'000), "elements nested too deep at line 1"},
        {begin + repeated("<abcdefgh>", 900) + repeated("x<a/>", 1'000'000), "no element found at line 1"},
        {begin + "<" + std::string(9000, 'x') + "/>", "elements nested too deep at line 1"},
        {begin + repeated("<a>", 4080) + repeated("</a>", 4080), "message too long at line 1"},
        {many, "message too long at line 1"},
        {begin + std::string(20'000'000, 'x'), "document too long at line 1"},
        {begin + "<!--" + std::string(20'000'000, 'x'), "document too long at line 1"},
        {begin + repeated("\n", 20'000'000), "document too long at line 16777197"},
    };
    for (auto const& [document, line] : cases) {
        Parsed message(document);
        EXPECT_EQ(message.log, (Lines{{3, line}}));
        EXPECT_EQ(message["/BTSMessage/A"], "1");
        EXPECT_EQ(message.in.get(), '<');
        EXPECT_EQ(message.parser.XML_Parse("</a>", 4, 1), 0) << "there is no going on";
    }
}

TEST(XmlMessage, takesWhatIsWithinTheBounds)
{
    std::string const payload(12'000'000, 'x');
    EXPECT_EQ(Parsed("<BTSMessage><P>" + payload + "</P></BTSMessage>")["/BTSMessage/P"], payload);
    Parsed const same("<BTSMessage>" + repeated("<A>1</A>", 1'000'000) + "<A>2</A></BTSMessage>");
    EXPECT_EQ(same["/BTSMessage/A"], "2");
    Parsed const deep(repeated("<a>", 1000) + "x" + repeated("</a>", 1000));
    EXPECT_EQ(deep[repeated("/a", 1000)], "x");
    EXPECT_EQ(same.log, Lines());
    EXPECT_EQ(deep.log, Lines());
}

TEST(XmlMessage, cannotBeMadeToFailByEventsFromOutside)
{
    Parsed message("<BTSMessage/>");
    message.parser.endElement("a");
    message.parser.charData(nullptr, 5);
    message.parser.charData("x", 0);
    EXPECT_EQ(message[""], "");
}

} // namespace
