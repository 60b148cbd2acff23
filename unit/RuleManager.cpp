#include "unit/RuleManager.h"

#include "unit/Status.h"

#include <algorithm>

namespace trs::sim {

namespace {

constexpr std::size_t mostRulesets = 64;
constexpr unsigned long mostExceptions = 256; // of a rule set

} // namespace

RuleManager::RuleManager(Inventory& inventory, std::string const& id)
    : object_(inventory, id, reflect::className<RmAccessClient>)
{
    for (char const* const name : {"input", "output"}) {
        rulesets_[name].name = name;
    }
    object_.holdsEntries<&RmAccessClient::getRuleset, &RmAccessClient::setRuleset>(
        [this] { return Object::keysOf(rulesets_); }, [this] { rulesets_.clear(); });
    serveRulesets();
    serveExceptions();
}

void RuleManager::serveRulesets()
{
    object_.servant()
        .on<&RmAccessClient::setRuleset>([this](Ruleset const& ruleset) {
            bool const isTaken = !ruleset.name.empty() && ruleset.exceptions.getLength() <= mostExceptions &&
                                 (rulesets_.size() < mostRulesets || rulesets_.contains(ruleset.name));
            if (isTaken) {
                rulesets_[ruleset.name] = ruleset;
            }
            return statusOf<SetClient>(isTaken);
        })
        .on<&RmAccessClient::getRuleset>([this](std::string const& name, Ruleset& ruleset) {
            Ruleset const* const found = find(name);
            if (found == nullptr) {
                return GetClient::FAILED;
            }
            ruleset = *found;
            return GetClient::OK;
        })
        .on<&RmAccessClient::deleteRuleset>(
            [this](std::string const& name) { return statusOf<SetClient>(rulesets_.erase(name) != 0); })
        .on<&RmAccessClient::clearRuleset>([this](std::string const& name) {
            Ruleset* const found = find(name);
            if (found != nullptr) {
                found->exceptions.setLength(0);
            }
            return statusOf<SetClient>(found != nullptr);
        })
        .on<&RmAccessClient::switchRuleset>([this](std::string const& name, RmAccessClient::RulesetState const& state) {
            Ruleset* const found = find(name);
            if (found != nullptr) {
                found->state = state;
            }
            return statusOf<SetClient>(found != nullptr);
        });
}

void RuleManager::serveExceptions()
{
    object_.servant()
        .on<&RmAccessClient::createException>([this](std::string const& ruleset, Exception const& exception) {
            Ruleset* const owner = find(ruleset);
            bool const isTaken = owner != nullptr && find(ruleset, exception.name) == nullptr &&
                                 owner->exceptions.getLength() < mostExceptions;
            if (isTaken) {
                owner->exceptions.push_back(exception);
            }
            return statusOf<SetClient>(isTaken);
        })
        .on<&RmAccessClient::deleteException>([this](std::string const& ruleset, std::string const& name) {
            Exception* const doomed = find(ruleset, name);
            if (doomed != nullptr) {
                TipprmiSequence<Exception>& all = find(ruleset)->exceptions;
                all.setLength(static_cast<unsigned long>(
                    std::remove_if(all.begin(), all.end(),
                                   [&name](Exception const& each) { return each.name == name; }) -
                    all.begin()));
            }
            return statusOf<SetClient>(doomed != nullptr);
        })
        .on<&RmAccessClient::switchException>(
            [this](std::string const& ruleset, std::string const& name, RmAccessClient::ExceptionState const& state) {
                Exception* const found = find(ruleset, name);
                if (found != nullptr) {
                    found->state = state;
                }
                return statusOf<SetClient>(found != nullptr);
            })
        .on<&RmAccessClient::getApplicableExceptions>([this](TipprmiSequence<Exception>& all) {
            all = exceptions();
            return GetClient::OK;
        })
        .on<&RmAccessClient::getSource>([this](std::string const& text, RmAccessClient::Source& source) {
            for (Exception const& exception : exceptions()) {
                for (unsigned long i = 0; i < 2; ++i) {
                    if (exception.endpoints[i].text == text) {
                        source = exception.endpoints[i];
                        return GetClient::OK;
                    }
                }
            }
            return GetClient::FAILED;
        });
}

RuleManager::Ruleset* RuleManager::find(std::string const& name)
{
    auto const found = rulesets_.find(name);
    return found != rulesets_.end() ? &found->second : nullptr;
}

RuleManager::Exception* RuleManager::find(std::string const& ruleset, std::string const& name)
{
    Ruleset* const owner = find(ruleset);
    if (owner == nullptr) {
        return nullptr;
    }
    auto const found = std::find_if(owner->exceptions.begin(), owner->exceptions.end(),
                                    [&name](Exception const& exception) { return exception.name == name; });
    return found != owner->exceptions.end() ? &*found : nullptr;
}

TipprmiSequence<RmAccessClient::Exception> RuleManager::exceptions() const
{
    TipprmiSequence<Exception> all;
    for (auto const& [name, ruleset] : rulesets_) {
        for (Exception const& exception : ruleset.exceptions) {
            all.push_back(exception);
        }
    }
    return all;
}

} // namespace trs::sim
