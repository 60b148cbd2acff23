// ZYN_StringUtils: what the site management adapter does with texts: base64, splitting, stripping, replacing, dumping.
#pragma once

#include <cstddef>
#include <ios>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

// Texts are bytes, NUL bytes among them. Letters, digits and white space are those of ASCII, whatever the locale of the
// process: white space is blank, tab, line feed, vertical tab, form feed and carriage return.
//
// An empty text to search for occurs nowhere. Each function takes time in proportion to what it reads and writes;
// docs/bounds.md has the figures.
class ZYN_StringUtils {
public:
    // The base64 alphabet of RFC 4648; the position of a character is its 6-bit value.
    static std::string const base64_chars;

    // Whether a character is of the alphabet; the padding "=" is not.
    static bool is_base64(unsigned char c);
    // Base64 text of `length` bytes, padded with "=" and without line breaks.
    static std::string base64Encode(unsigned char const* bytes, unsigned int length);
    // The bytes of a base64 text. Whatever follows the first character outside the alphabet, be it "=" or a line break,
    // is ignored. Of 2 or 3 characters after the last full group of 4 come 1 or 2 bytes, of a single one none.
    static std::string base64Decode(std::string const& encoded);

    // Appends the pieces between delimiters to `parts`, empty ones too. How many elements `parts` then has.
    static std::size_t split(std::string const& text, std::vector<std::string>& parts, std::string const& delimiter);
    // Makes one blank of every run of white space, also at either end. How many characters that removed.
    static std::size_t zip(std::string& text);
    // Removes white space at the beginning, at the end, and at both.
    static void bstrip(std::string& text);
    static void estrip(std::string& text);
    static void strip(std::string& text);
    // Would cut a text into lines of at most 80 characters for a trace that nobody writes any more: does nothing.
    static void bigStringToTrace(std::string const&) {}
    static void toLower(std::string& text);
    static void toUpper(std::string& text);

    // Replaces the first occurrence of `from` by `to`, and again, until none is left: what a replacement creates
    // together with its surroundings is replaced as well ("ab" by "b" makes "b" of "aab").
    //
    // Where `to` contains `from`, which would never end, the occurrences in the original text are replaced, from left
    // to right, and nothing else. Other pairs take very long ("ab" by "ba" sorts the text), make the text explode ("ab"
    // by "bba") or never end either ("ba" by "aabb"): when replacements have inserted maxReinserted bytes more than
    // replacing every occurrence once can, the call gives up and leaves `text` as it was.
    static void replaceAll(std::string& text, std::string const& from, std::string const& to);
    static constexpr std::size_t maxReinserted = std::size_t{16} << 20;
    // Removes the occurrences of `pattern`, from left to right, those that a removal creates not among them. A text
    // that nothing would be left of stays as it is.
    static void removeAll(std::string& text, std::string const& pattern);
    // The same without allocating memory for it, and for C strings: text and pattern end at their first NUL byte, so
    // that a text from which something is removed loses what follows it. A text above maxOnStack bytes takes the way
    // of removeAll(), because the stacks of threads are small.
    static void removeAllFast(std::string& text, std::string const& pattern);
    static constexpr std::size_t maxOnStack = std::size_t{16} << 10;

    // Sets `hex` to two lower-case digits for each byte, with a blank between bytes.
    static void toHex(std::string const& bytes, std::string& hex);
    // The text of a value as a stream writes it after the manipulator, without the marks of any locale.
    template <class T>
    static std::string toString(T value, std::ios_base& (*manipulator)(std::ios_base&))
    {
        std::ostringstream stream;
        stream.imbue(std::locale::classic());
        stream << manipulator << value;
        return stream.str();
    }
};

extern template std::string ZYN_StringUtils::toString<int>(int, std::ios_base& (*)(std::ios_base&));
