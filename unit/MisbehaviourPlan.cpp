#include "unit/MisbehaviourPlan.h"

#include "broker/PrintableText.h"
#include "catalogue/Class.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

namespace trs::sim {

namespace {

constexpr std::array<std::string_view, 10> kindNames{"refuse", "delay", "drop", "late",  "twice",
                                                     "cut",    "flip",  "lie",  "close", "trickle"};
constexpr std::size_t mostRules = 1000;
constexpr unsigned long certain = 1000; // per mille
constexpr unsigned long usualDelay = 1000;
constexpr long longestDelay = 3'600'000;
constexpr long mostCalls = 1'000'000'000;

std::string inQuotes(std::string_view text) { return '\'' + printable(std::string(text)) + '\''; }

std::optional<MisbehaviourKind> kindOf(std::string_view name)
{
    auto const* const found = std::ranges::find(kindNames, name);
    return found != kindNames.end() ? std::optional(static_cast<MisbehaviourKind>(found - kindNames.begin()))
                                    : std::nullopt;
}

// A word of the command that gives a number.
struct Number {
    std::string_view name;
    unsigned long MisbehaviourPlan::Misbehaviour::*field;
    long least;
    long most;
};
constexpr std::array<Number, 4> numbers{{{"call", &MisbehaviourPlan::Misbehaviour::call, 1, mostCalls},
                                         {"count", &MisbehaviourPlan::Misbehaviour::count, 1, mostCalls},
                                         {"per-mille", &MisbehaviourPlan::Misbehaviour::perMille, 1, certain},
                                         {"delay", &MisbehaviourPlan::Misbehaviour::delay, 1, longestDelay}}};

} // namespace

std::string_view MisbehaviourPlan::nameOf(MisbehaviourKind kind) { return kindNames[static_cast<std::size_t>(kind)]; }

std::string MisbehaviourPlan::inject(Misbehaviour const& fault, unsigned long& number)
{
    std::optional<MisbehaviourKind> const kind = kindOf(fault.kind);
    if (!kind) {
        std::string all;
        for (std::string_view const name : kindNames) {
            all += (all.empty() ? "" : ", ") + std::string(name);
        }
        return inQuotes(fault.kind) + " is no kind of fault: " + all;
    }
    if (fault.perMille > certain || fault.delay > static_cast<unsigned long>(longestDelay)) {
        return "the probability is at most 1000 per mille, a delay at most 3600000 ms";
    }
    Rule rule{{0, fault, 0, 0}, *kind, std::nullopt, std::nullopt};
    if (!fault.operation.empty()) {
        std::size_t const dot = std::min(fault.operation.find('.'), fault.operation.size());
        catalogue::Class const* const type = catalogue::findClass(fault.operation.substr(0, dot));
        if (type == nullptr) {
            return inQuotes(fault.operation.substr(0, dot)) + " is no class";
        }
        rule.classId = type->id;
        if (dot != fault.operation.size()) {
            catalogue::Operation const* const operation = type->find(fault.operation.substr(dot + 1));
            if (operation == nullptr) {
                return inQuotes(fault.operation.substr(dot + 1)) + " is no operation of " + std::string(type->name);
            }
            rule.classId = operation->classId;
            rule.opIndex = operation->index;
        }
    }
    if (std::string why = engage_ ? engage_() : std::string(); !why.empty()) {
        return why;
    }
    std::lock_guard const lock(mutex_);
    if (rules_.size() == mostRules) {
        return "there are " + std::to_string(mostRules) + " faults already";
    }
    rule.stated.number = number = ++lastNumber_;
    rules_.push_back(std::move(rule));
    return {};
}

bool MisbehaviourPlan::withdraw(unsigned long number)
{
    std::lock_guard const lock(mutex_);
    return std::erase_if(rules_, [number](Rule const& rule) { return number == 0 || rule.stated.number == number; }) !=
               0 ||
           number == 0;
}

TipprmiSequence<SimulatorClient::NumberedMisbehaviour> MisbehaviourPlan::all() const
{
    std::lock_guard const lock(mutex_);
    TipprmiSequence<SimulatorClient::NumberedMisbehaviour> all;
    for (Rule const& rule : rules_) {
        all.push_back(rule.stated);
    }
    return all;
}

std::vector<MisbehaviourPlan::Misbehaviour> MisbehaviourPlan::left() const
{
    std::lock_guard const lock(mutex_);
    std::vector<Misbehaviour> left;
    for (Rule const& rule : rules_) {
        Misbehaviour fault = rule.stated.fault;
        unsigned long const matched = rule.stated.matched;
        unsigned long const before = std::max(fault.call, 1UL) - 1;
        unsigned long const meant = matched - std::min(matched, before); // of the calls that it could strike
        if (fault.count != 0 && meant >= fault.count) {
            continue;
        }
        fault.count -= fault.count != 0 ? meant : 0;
        fault.call -= std::min(fault.call, matched);
        left.push_back(fault);
    }
    return left;
}

bool MisbehaviourPlan::concerns(Rule const& rule, ObjectAddress const& call)
{
    return (!rule.classId || *rule.classId == call.classId) && (!rule.opIndex || *rule.opIndex == call.opIndex) &&
           (rule.stated.fault.object.empty() || rule.stated.fault.object == call.id);
}

// Whether the rule strikes a call that it concerns.
bool MisbehaviourPlan::strikes(Rule& rule)
{
    Misbehaviour const& fault = rule.stated.fault;
    unsigned long const call = ++rule.stated.matched;
    unsigned long const first = std::max(fault.call, 1UL);
    bool const isMeant = call >= first && (fault.count == 0 || call - first < fault.count);
    if (spent_ && (call < first || (isMeant && fault.count != 0))) {
        spent_();
    }
    bool const isStruck =
        isMeant && (fault.perMille == 0 || fault.perMille == certain || random_() % certain < fault.perMille);
    rule.stated.struck += isStruck ? 1 : 0;
    return isStruck;
}

std::optional<MisbehaviourPlan::Strike> MisbehaviourPlan::strike(ObjectAddress const& call)
{
    std::lock_guard const lock(mutex_);
    Rule const* first = nullptr;
    for (Rule& rule : rules_) {
        if (concerns(rule, call) && strikes(rule) && first == nullptr) {
            first = &rule;
        }
    }
    if (first == nullptr) {
        return std::nullopt;
    }
    unsigned long const delay = first->stated.fault.delay;
    return Strike{first->kind, std::chrono::milliseconds(delay == 0 ? usualDelay : delay),
                  static_cast<std::uint32_t>(random_())};
}

std::string MisbehaviourPlan::parse(catalogue::Words const& words, Misbehaviour& fault)
{
    fault = {};
    fault.kind = words.empty() ? "" : words.front();
    for (std::size_t i = 1; i < words.size(); ++i) {
        std::size_t const sign = std::min(words[i].find('='), words[i].size());
        std::string const name = words[i].substr(0, sign);
        std::string const value = sign == words[i].size() ? "" : words[i].substr(sign + 1);
        auto const* const number = std::ranges::find(numbers, name, &Number::name);
        if (name == "operation" && !value.empty()) {
            fault.operation = value;
        } else if (name == "object" && !value.empty()) {
            fault.object = value.substr(value.find(':') + 1); // the class need not be said
        } else if (number == numbers.end()) {
            return inQuotes(words[i]) +
                   " is none of operation=CLASS[.OPERATION], object=OBJECT, call=N, count=N, per-mille=N and delay=MS";
        } else {
            long parsed = 0;
            if (!catalogue::parseNumber(value, number->least, number->most, parsed)) {
                return fmt::format("{}: '{}' is no number from {} to {}", inQuotes(words[i]), printable(value),
                                   number->least, number->most);
            }
            fault.*number->field = static_cast<unsigned long>(parsed);
        }
    }
    return {};
}

std::string MisbehaviourPlan::text(Misbehaviour const& fault)
{
    std::string text = fault.kind;
    text += fault.operation.empty() ? "" : " operation=" + fault.operation;
    text += fault.object.empty() ? "" : " object=" + fault.object;
    for (Number const& number : numbers) {
        unsigned long const value = fault.*number.field;
        text += value == 0 ? "" : fmt::format(" {}={}", number.name, value);
    }
    return text;
}

} // namespace trs::sim
