// The text operations: by example, against the plainest loop that does the same, and on what must not happen.
#include "adapter/ZYN_StringUtils.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string_view>

using namespace std::string_literals;
using Utils = ZYN_StringUtils;

// These sanitizers would look at the whole rest of the text before every search.
extern "C" char const* __asan_default_options() { return "intercept_memmem=0"; }
extern "C" char const* __tsan_default_options() { return "intercept_memmem=0"; }

namespace {

std::string encode(std::string const& bytes)
{
    return Utils::base64Encode(reinterpret_cast<unsigned char const*>(bytes.data()),
                               static_cast<unsigned int>(bytes.size()));
}

template <auto Function, class... Arguments>
std::string changed(std::string text, Arguments const&... arguments)
{
    Function(text, arguments...);
    return text;
}

// A text of up to `maxLength` of the first letters: short alphabets make occurrences overlap.
std::string randomText(std::mt19937& random, std::size_t minLength, std::size_t maxLength, char const* letters)
{
    std::string text(std::uniform_int_distribution<std::size_t>(minLength, maxLength)(random), '\0');
    std::uniform_int_distribution<std::size_t> letter(0, std::string_view(letters).size() - 1);
    std::generate(text.begin(), text.end(), [&] { return letters[letter(random)]; });
    return text;
}

constexpr std::size_t megabyte = 1 << 20;

TEST(Base64, encodesAndDecodesTheStandardsExamples)
{
    std::pair<std::string, std::string> const cases[] = {{"", ""},
                                                         {"f", "Zg=="},
                                                         {"fo", "Zm8="},
                                                         {"foo", "Zm9v"},
                                                         {"foob", "Zm9vYg=="},
                                                         {"fooba", "Zm9vYmE="},
                                                         {"foobar", "Zm9vYmFy"},
                                                         {"\0\0\0"s, "AAAA"},
                                                         {"\xff\xff\xff", "////"},
                                                         {"\xfb\xef\xbe", "++++"},
                                                         {"\0\x10\x83\x10\x51\x87"s, "ABCDEFGH"}};
    for (auto const& [bytes, text] : cases) {
        EXPECT_EQ(encode(bytes), text);
        EXPECT_EQ(Utils::base64Decode(text), bytes);
    }
    EXPECT_EQ(Utils::base64Encode(nullptr, 0), "");
    EXPECT_EQ(Utils::base64_chars, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
}

TEST(Base64, decodesUpToTheFirstForeignCharacter)
{
    std::string const text = "TWFuTWFu";
    std::string const bytes = "ManMan";
    for (int c = 0; c < 256; ++c) {
        bool const isOurs = Utils::base64_chars.find(static_cast<char>(c)) != std::string::npos;
        EXPECT_EQ(Utils::is_base64(static_cast<unsigned char>(c)), isOurs) << c;
        for (std::size_t at = 0; at <= text.size() && !isOurs; ++at) {
            std::string foreign = text;
            foreign.insert(at, 1, static_cast<char>(c));
            std::size_t const partial = at % 4;
            EXPECT_EQ(Utils::base64Decode(foreign), bytes.substr(0, at / 4 * 3 + (partial != 0 ? partial - 1 : 0)));
        }
    }
}

TEST(Base64, takesBytesOfEveryLengthThereAndBack)
{
    std::mt19937 random(1);
    std::string bytes;
    for (int length = 0; length < 600; ++length, bytes += static_cast<char>(random())) {
        EXPECT_EQ(encode(bytes).size(), (bytes.size() + 2) / 3 * 4);
        EXPECT_EQ(Utils::base64Decode(encode(bytes)), bytes);
    }
}

TEST(Split, appendsEveryPieceEvenEmptyOnes)
{
    struct {
        std::string text;
        std::string delimiter;
        std::vector<std::string> pieces;
    } const cases[] = {
        {"a,,b", ",", {"a", "", "b"}}, {"", ",", {""}},          {"abc", ",", {"abc"}},        {",", ",", {"", ""}},
        {"a::b:", "::", {"a", "b:"}},  {"aaa", "aa", {"", "a"}}, {"a\0b"s, "\0"s, {"a", "b"}}, {"abc", "", {"abc"}}};
    for (auto const& [text, delimiter, pieces] : cases) {
        std::vector<std::string> parts{"x", "y"};
        EXPECT_EQ(Utils::split(text, parts, delimiter), pieces.size() + 2);
        EXPECT_EQ(parts[0] + parts[1], "xy");
        EXPECT_EQ(std::vector<std::string>(parts.begin() + 2, parts.end()), pieces) << text;
    }
}

TEST(Split, maySplitAnElementOfItsResult)
{
    std::vector<std::string> parts{"a,b,c,d,e,f,g,h", ","};
    EXPECT_EQ(Utils::split(parts[0], parts, parts[1]), 10U);
    EXPECT_THAT(parts, testing::ElementsAre("a,b,c,d,e,f,g,h", ",", "a", "b", "c", "d", "e", "f", "g", "h"));
}

TEST(WhiteSpace, isCompressedAndStripped)
{
    struct {
        std::string text;
        std::string zipped;
        std::string bstripped;
        std::string estripped;
        std::string stripped;
    } const cases[] = {{"", "", "", "", ""},
                       {"aa", "aa", "aa", "aa", "aa"},
                       {"\tx", " x", "x", "\tx", "x"},
                       {"a \t b", "a b", "a \t b", "a \t b", "a \t b"},
                       {"a  b  ", "a b ", "a  b  ", "a  b", "a  b"},
                       {" \t x ", " x ", "x ", " \t x", "x"},
                       {"\t ", " ", "", "", ""},
                       {" \t\n\v\f\r", " ", "", "", ""},
                       {"\0 \0"s, "\0 \0"s, "\0 \0"s, "\0 \0"s, "\0 \0"s},
                       {"\x85 \xa0", "\x85 \xa0", "\x85 \xa0", "\x85 \xa0", "\x85 \xa0"}};
    for (auto const& [text, zipped, bstripped, estripped, stripped] : cases) {
        std::string zipping = text;
        EXPECT_EQ(Utils::zip(zipping), text.size() - zipped.size());
        EXPECT_EQ(zipping, zipped);
        EXPECT_EQ(changed<Utils::bstrip>(text), bstripped);
        EXPECT_EQ(changed<Utils::estrip>(text), estripped);
        EXPECT_EQ(changed<Utils::strip>(text), stripped);
    }
}

TEST(LetterCase, isThatOfAsciiAlone)
{
    EXPECT_EQ(changed<Utils::toLower>("@AZ[`az{\0\xc4\xe4"s), "@az[`az{\0\xc4\xe4"s);
    EXPECT_EQ(changed<Utils::toUpper>("@AZ[`az{\0\xc4\xe4"s), "@AZ[`AZ{\0\xc4\xe4"s);
}

TEST(ReplaceAll, alsoReplacesWhatReplacementsCreate)
{
    struct {
        std::string text;
        std::string from;
        std::string to;
        std::string result;
    } const cases[] = {{"a.b.c", ".", "::", "a::b::c"},
                       {"aab", "ab", "b", "b"},
                       {"aaabbb", "ab", "", ""},
                       {"abab", "ab", "ba", "bbaa"},
                       {"xay", "b", "c", "xay"},
                       {"a\0a"s, "\0"s, "bb", "abba"},
                       // Never to be asked for: nothing to search, what is searched within what replaces it.
                       {"abc", "", "x", "abc"},
                       {"", "", "x", ""},
                       {"aba", "a", "aa", "aabaa"},
                       {"aaa", "a", "a", "aaa"}};
    for (auto const& [text, from, to, result] : cases) {
        EXPECT_EQ(changed<Utils::replaceAll>(text, from, to), result);
    }
    std::string itself = "abc";
    Utils::replaceAll(itself, itself, itself);
    EXPECT_EQ(itself, "abc");
}

TEST(ReplaceAll, doesWhatStartingOverAfterEveryReplacementDoes)
{
    std::mt19937 random(2);
    int finished = 0;
    for (int i = 0; i < 20'000; ++i) {
        std::string const text = randomText(random, 0, 24, "ab");
        std::string const from = randomText(random, 1, 5, "ab");
        std::string const to = randomText(random, 0, 5, "ab");
        if (to.find(from) != std::string::npos) {
            continue;
        }
        std::string expected = text;
        int steps = 0;
        for (std::size_t at = 0; steps < 1000 && (at = expected.find(from)) != std::string::npos; ++steps) {
            expected.replace(at, from.size(), to);
        }
        if (steps < 1000) {
            ++finished;
            ASSERT_EQ(changed<Utils::replaceAll>(text, from, to), expected) << text << ' ' << from << ' ' << to;
        }
    }
    EXPECT_GT(finished, 15'000);
}

TEST(ReplaceAll, givesUpWhatWouldGoOnForEver)
{
    std::string const explosive = std::string(64, 'a') + 'b';
    std::string const toBeSorted = std::string(100'000, 'a') + std::string(100'000, 'b');
    EXPECT_EQ(changed<Utils::replaceAll>("bba"s, "ba"s, "aabb"s), "bba");
    EXPECT_EQ(changed<Utils::replaceAll>(explosive, "ab"s, "bba"s), explosive);
    EXPECT_EQ(changed<Utils::replaceAll>(toBeSorted, "ab"s, "ba"s), toBeSorted);
}

TEST(RemoveAll, removesOnceThroughAndNeverEverything)
{
    struct {
        std::string text;
        std::string pattern;
        std::string result;
        std::string fast;
    } const cases[] = {{"xaby", "ab", "xy", "xy"},
                       {"abab", "ab", "abab", "abab"},
                       {"a", "a", "a", "a"},
                       {"abX", "ab", "X", "X"},
                       {"xyz", "ab", "xyz", "xyz"},
                       {"aabbc", "ab", "abc", "abc"},
                       {"aaab", "aa", "ab", "ab"},
                       {"", "a", "", ""},
                       {"abc", "", "abc", "abc"},
                       {"a.b\0c.d"s, ".", "ab\0cd"s, "ab"},
                       {"ab\0c.d"s, ".", "ab\0cd"s, "ab\0c.d"s},
                       {".\0c.d"s, ".", "\0cd"s, ".\0c.d"s},
                       {"a.b", ".\0x"s, "a.b", "ab"},
                       {"a.b", "\0.", "a.b", "a.b"}};
    for (auto const& [text, pattern, result, fast] : cases) {
        EXPECT_EQ(changed<Utils::removeAll>(text, pattern), result);
        EXPECT_EQ(changed<Utils::removeAllFast>(text, pattern), fast);
    }
}

TEST(RemoveAll, fastAndSlowDoTheSame)
{
    std::mt19937 random(3);
    for (int i = 0; i < 20'000; ++i) {
        std::string const text = randomText(random, 0, 24, "ab");
        std::string const pattern = randomText(random, 1, 4, "ab");
        std::string expected;
        for (std::size_t at = 0; at < text.size();) {
            bool const occurs = text.compare(at, pattern.size(), pattern) == 0;
            expected += occurs ? "" : text.substr(at, 1);
            at += occurs ? pattern.size() : 1;
        }
        expected = expected.empty() ? text : expected;
        ASSERT_EQ(changed<Utils::removeAll>(text, pattern), expected) << text << ' ' << pattern;
        ASSERT_EQ(changed<Utils::removeAllFast>(text, pattern), expected) << text << ' ' << pattern;
    }
    for (std::size_t const length : {Utils::maxOnStack - 2, Utils::maxOnStack - 1, Utils::maxOnStack}) {
        std::string const filling(length, '-');
        EXPECT_EQ(changed<Utils::removeAllFast>(filling + "a.b\0c.d"s, "."s), filling + "ab");
        EXPECT_EQ(changed<Utils::removeAllFast>(filling + "ab\0c.d"s, "."s), filling + "ab\0c.d"s);
        EXPECT_EQ(changed<Utils::removeAllFast>(filling + "a", "-"s), "a");
        EXPECT_EQ(changed<Utils::removeAllFast>(filling + "a", ""s), filling + "a");
    }
}

// Minutes of work for anything quadratic, which the time limit of the test run ends; the benchmarks show the growth.
TEST(Megabytes, areNoMoreThanAMomentsWork)
{
    std::string const text(megabyte, 'a');
    std::string const blanks(megabyte, ' ');
    for (std::size_t const length : {std::size_t{3}, std::size_t{200}, megabyte / 2}) {
        SCOPED_TRACE(length);
        std::string const absent = std::string(length - 1, 'a') + 'b'; // all of it compared at every place
        std::string const absentBackwards = 'b' + std::string(length - 1, 'a');
        for (std::string const& pattern : {absent, absentBackwards}) {
            std::vector<std::string> parts;
            EXPECT_EQ(Utils::split(text, parts, pattern), 1U);
            EXPECT_EQ(changed<Utils::removeAll>(text, pattern), text);
            EXPECT_EQ(changed<Utils::removeAllFast>(text, pattern), text);
            EXPECT_EQ(changed<Utils::replaceAll>(text, pattern, "c"s), text);
        }
    }
    std::vector<std::string> parts;
    EXPECT_EQ(Utils::split(text, parts, "a"), megabyte + 1);
    EXPECT_EQ(changed<Utils::removeAll>(text + 'b', "a"s), "b");
    EXPECT_EQ(changed<Utils::removeAllFast>(text + 'b', "a"s), "b");
    EXPECT_EQ(changed<Utils::replaceAll>(text + 'b', "ab"s, "b"s), "b");
    EXPECT_EQ(changed<Utils::replaceAll>(text, "a"s, "bb"s), std::string(2 * megabyte, 'b'));
    EXPECT_EQ(changed<Utils::replaceAll>(text + std::string(megabyte, 'b'), "ab"s, ""s), "");
    EXPECT_EQ(changed<Utils::zip>(blanks), " ");
    EXPECT_EQ(changed<Utils::strip>(blanks), "");
}

TEST(ToHex, writesTwoDigitsForEachByte)
{
    std::pair<std::string, std::string> const cases[] = {
        {"", ""}, {"\x0a", "0a"}, {"\x0a\xff\0"s, "0a ff 00"}, {"\x12\xab", "12 ab"}};
    for (auto const& [bytes, expected] : cases) {
        std::string hex = "before";
        Utils::toHex(bytes, hex);
        EXPECT_EQ(hex, expected);
    }
}

TEST(ToString, writesNumbersAsTheManipulatorSaysInWhateverLocale)
{
    struct Grouping : std::numpunct<char> {
        std::string do_grouping() const override { return "\3"; }
    };
    std::locale const before = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    EXPECT_EQ(Utils::toString(-12, std::dec), "-12");
    EXPECT_EQ(Utils::toString(255, std::hex), "ff");
    EXPECT_EQ(Utils::toString(-2147483647 - 1, std::dec), "-2147483648");
    EXPECT_EQ(Utils::toString(4'000'000'000L, std::dec), "4000000000");
    std::locale::global(before);
}

} // namespace
