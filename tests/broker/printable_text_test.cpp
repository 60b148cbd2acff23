// Text that came from elsewhere, where people read it.
#include "broker/PrintableText.h"

#include <gtest/gtest.h>

namespace {

TEST(PrintableText, KeepsCharactersWholeAndControlsFromTheTerminal)
{
    std::pair<std::string, std::string> const cases[] = {
        {"eth0 \xc3\xa4\xe2\x82\xac\xf0\x9f\x93\xa1", "eth0 \xc3\xa4\xe2\x82\xac\xf0\x9f\x93\xa1"},
        {std::string("a\0b\n\x1b[2J\x7f\\", 10), "a\\x00b\\x0a\\x1b[2J\\x7f\\x5c"},
        {"\xc2\x9b"
         "2J\xc2\x85\xc2\xa0",
         "\\xc2\\x9b2J\\xc2\\x85\xc2\xa0"}, // C1: CSI and NEL; a no-break space is none
        {"\xc0\xaf\xed\xa0\x80\xf4\x90\x80\x80\xe2\x82", "\\xc0\\xaf\\xed\\xa0\\x80\\xf4\\x90\\x80\\x80\\xe2\\x82"},
    };
    for (auto const& [text, expected] : cases) {
        EXPECT_EQ(trs::escaped(text), expected);
        EXPECT_EQ(trs::printable(text), expected);
    }
}

TEST(PrintableText, IsCutInLogLinesOnlyAndBetweenCharacters)
{
    std::string const text = std::string(119, 'x') + "\xc3\xa4" + "y";
    EXPECT_EQ(trs::escaped(text), text);
    EXPECT_EQ(trs::printable(text), std::string(119, 'x') + "...");
}

} // namespace
