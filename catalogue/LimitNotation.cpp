#include "catalogue/LimitNotation.h"

#include "catalogue/Constants.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>

namespace trs::catalogue {

namespace {

constexpr std::string_view rangeSign = "..";

// Without the punctuation around it; "setMtu()" keeps its parentheses.
std::string_view bare(std::string_view word)
{
    constexpr std::string_view punctuation = ",;:.`";
    while (!word.empty() && (punctuation.find(word.front()) != std::string_view::npos || word.front() == '(')) {
        word.remove_prefix(1);
    }
    auto const isClosed = [&word] { return std::ranges::count(word, ')') > std::ranges::count(word, '('); };
    while (!word.empty() && (punctuation.find(word.back()) != std::string_view::npos || isClosed())) {
        word.remove_suffix(1);
    }
    return word;
}

std::vector<std::string_view> wordsOf(std::string_view comment)
{
    std::vector<std::string_view> words;
    while (!comment.empty()) {
        std::size_t const length = std::min(comment.find(' '), comment.size());
        if (std::string_view const word = bare(comment.substr(0, length)); !word.empty()) {
            words.push_back(word);
        }
        comment.remove_prefix(std::min(length + 1, comment.size()));
    }
    return words;
}

// "FIRST..LAST"
std::pair<std::string_view, std::string_view> endsOf(std::string_view range)
{
    std::size_t const sign = range.find(rangeSign);
    return {range.substr(0, sign), range.substr(sign + rangeSign.size())};
}

class LimitReader {
public:
    LimitReader(std::string_view comment, Class const* scope) : words_(wordsOf(comment)), scope_(scope) {}

    StatedLimits read()
    {
        for (at_ = 0; at_ < words_.size(); ++at_) {
            std::string_view const word = words_[at_];
            if (word.find(rangeSign) != std::string_view::npos) {
                isPreceded(1, "of") && isPreceded(2, "one") ? readNamed(word) : readRanges();
            } else if (word == "contiguous" && next() == "netmask") {
                add(at_, {.kind = Limit::Kind::netmask});
            } else if (word.ends_with('_') && (next() == "constant" || next() == "bits")) {
                readFamily(word);
            } else if (word == "as" && next().ends_with("()")) {
                std::string_view const name = next();
                stated_.limits.push_back({subjectOf(at_), name.substr(0, name.size() - 2), {}});
            }
        }
        return std::move(stated_);
    }

private:
    std::string_view next(std::size_t distance = 1) const
    {
        return at_ + distance < words_.size() ? words_[at_ + distance] : std::string_view();
    }
    // The word before those of the limit.
    std::string_view subjectOf(std::size_t begin) const { return begin > 0 ? words_[begin - 1] : std::string_view(); }
    bool isPreceded(std::size_t distance, std::string_view word) const
    {
        return at_ >= distance && words_[at_ - distance] == word;
    }
    void add(std::size_t begin, Limit limit) { stated_.limits.push_back({subjectOf(begin), {}, std::move(limit)}); }
    void complain(std::string_view word, std::string const& what)
    {
        stated_.wrong.push_back('\'' + std::string(word) + "': " + what);
    }

    // Null when the class and its bases publish none of that name.
    Constant const* constant(std::string_view name) const
    {
        for (Class const* publisher = splitScope(name, scope_); publisher != nullptr; publisher = publisher->base()) {
            for (Constant const* const each : constantsOf(*publisher)) {
                if (each->name == name) {
                    return each;
                }
            }
        }
        return nullptr;
    }
    std::optional<std::int64_t> number(std::string_view text) const
    {
        std::int64_t value = 0;
        auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error == std::errc() && end == text.data() + text.size()) {
            return value;
        }
        Constant const* const found = constant(text);
        return found != nullptr && found->value.is_number() ? std::optional(found->value.get<std::int64_t>())
                                                            : std::nullopt;
    }

    // "68..65535", "CIR_MIN..CIR_MAX step CIR_STEP", "0 or 2..10 or 500..5000 step 500", "0..20 characters".
    void readRanges()
    {
        std::string_view const word = words_[at_];
        Limit limit;
        std::size_t begin = at_;
        if (at_ >= 2 && isPreceded(1, "or")) {
            if (std::optional<std::int64_t> const single = number(words_[at_ - 2])) {
                limit.ranges.push_back({*single, *single});
                begin -= 2;
            }
        }
        for (;;) {
            std::optional<NumberRange> const range = readRange();
            if (!range) {
                complain(word, "no numbers or constants from one to a greater one, or a step that is none");
                return;
            }
            limit.ranges.push_back(*range);
            if (next() != "or" || next(2).find(rangeSign) == std::string_view::npos) {
                break;
            }
            at_ += 2;
        }
        limit.kind = next() == "characters" ? Limit::Kind::characters
                     : next() == "entries"  ? Limit::Kind::entries
                                            : Limit::Kind::ranges;
        add(begin, std::move(limit));
    }

    // The range at this word, and the step behind it.
    std::optional<NumberRange> readRange()
    {
        auto const [first, last] = endsOf(words_[at_]);
        std::optional<std::int64_t> const least = number(first);
        std::optional<std::int64_t> const most = number(last);
        bool const hasStep = next() == "step";
        std::optional<std::int64_t> const step = hasStep ? number(next(2)) : 1;
        at_ += hasStep ? 2 : 0;
        return least && most && step && *least <= *most && *step >= 1 ? std::optional(NumberRange{*least, *most, *step})
                                                                      : std::nullopt;
    }

    // The constants from the one to the other, in the order in which their class declares them.
    void readNamed(std::string_view word)
    {
        auto const [first, last] = endsOf(word);
        Limit limit{.kind = Limit::Kind::named};
        Constant const* const begin = constant(first);
        Class const* const publisher = begin != nullptr ? findClass(begin->className) : nullptr;
        for (Constant const* const each :
             publisher != nullptr ? constantsOf(*publisher) : std::vector<Constant const*>()) {
            if ((each == begin || !limit.names.empty()) && each->value.type() == begin->value.type()) {
                limit.names.push_back({each->name, each->value});
            }
            if (each->name == last && !limit.names.empty()) {
                add(at_ - 2, std::move(limit));
                return;
            }
        }
        complain(word, "no two constants of one class, the one that is declared first in front");
    }

    // "a TRANSPORT_MODE_ constant", "IFF__ bits": the constants of which each begins so.
    void readFamily(std::string_view word)
    {
        bool const areBits = next() == "bits";
        Limit limit{.kind = areBits ? Limit::Kind::bits : Limit::Kind::named};
        std::string_view prefix = word;
        std::int64_t all = 0;
        for (Class const* publisher = splitScope(prefix, scope_); publisher != nullptr; publisher = publisher->base()) {
            for (Constant const* const each : constantsOf(*publisher)) {
                if (each->name.starts_with(prefix) && each->value.is_number()) {
                    limit.names.push_back({each->name, each->value});
                    all |= each->value.get<std::int64_t>();
                }
            }
        }
        if (limit.names.empty()) {
            complain(word, "no constant begins so");
            return;
        }
        limit.orOthers = areBits && (all & (all + 1)) != 0; // there are bits between them that have no name
        bool const hasArticle = isPreceded(1, "a") || isPreceded(1, "an");
        add(at_ - (hasArticle ? 1 : 0), std::move(limit));
    }

    std::vector<std::string_view> words_;
    Class const* scope_;
    std::size_t at_ = 0;
    StatedLimits stated_;
};

} // namespace

Class const* splitScope(std::string_view& name, Class const* scope)
{
    std::size_t const sign = name.rfind("::");
    if (sign == std::string_view::npos) {
        return scope;
    }
    Class const* const publisher = findClass(name.substr(0, sign));
    name.remove_prefix(sign + 2);
    return publisher;
}

StatedLimits readLimits(std::string_view comment, Class const* scope) { return LimitReader(comment, scope).read(); }

} // namespace trs::catalogue
