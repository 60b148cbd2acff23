#include "clients/ip/RmAccessClient.h"

#include "rmi/Call.h"

RmAccessClient::ClientSpecificMetaObject RmAccessClient::oMeta;
TreflectMetaObject* RmAccessClient::staticMeta() { return oMeta.completed(); }

std::string const RmAccessClient::DOMAIN_LMP = "LMP";
std::string const RmAccessClient::DOMAIN_TRS = "TRS";
std::string const RmAccessClient::DOMAIN_BTS = "BTS";
std::string const RmAccessClient::DOMAIN_INTERNAL = "INTERNAL";

ResponseInfo<GetClient> RmAccessClient::getSource(std::string const& text, Source& source) const
{
    return call<&RmAccessClient::getSource>(*this, text, source);
}
ResponseInfo<SetClient> RmAccessClient::createException(std::string const& ruleset, Exception const& exception) const
{
    return call<&RmAccessClient::createException>(*this, ruleset, exception);
}
ResponseInfo<SetClient> RmAccessClient::deleteException(std::string const& ruleset, std::string const& exception) const
{
    return call<&RmAccessClient::deleteException>(*this, ruleset, exception);
}
ResponseInfo<SetClient> RmAccessClient::setRuleset(Ruleset const& ruleset) const
{
    return call<&RmAccessClient::setRuleset>(*this, ruleset);
}
ResponseInfo<GetClient> RmAccessClient::getRuleset(std::string const& name, Ruleset& ruleset) const
{
    return call<&RmAccessClient::getRuleset>(*this, name, ruleset);
}
ResponseInfo<SetClient> RmAccessClient::deleteRuleset(std::string const& name) const
{
    return call<&RmAccessClient::deleteRuleset>(*this, name);
}
ResponseInfo<SetClient> RmAccessClient::clearRuleset(std::string const& name) const
{
    return call<&RmAccessClient::clearRuleset>(*this, name);
}
ResponseInfo<SetClient> RmAccessClient::switchRuleset(std::string const& name, RulesetState const& state) const
{
    return call<&RmAccessClient::switchRuleset>(*this, name, state);
}
ResponseInfo<SetClient> RmAccessClient::switchException(std::string const& ruleset, std::string const& exception,
                                                        ExceptionState const& state) const
{
    return call<&RmAccessClient::switchException>(*this, ruleset, exception, state);
}
ResponseInfo<SetClient> RmAccessClient::setRestrictedMode(RestrictedModeState const& state) const
{
    return call<&RmAccessClient::setRestrictedMode>(*this, state);
}
ResponseInfo<GetClient> RmAccessClient::getRestrictedMode(RestrictedModeState& state) const
{
    return call<&RmAccessClient::getRestrictedMode>(*this, state);
}
void RmAccessClient::changeTrigger() const { call<&RmAccessClient::changeTrigger>(*this); }
ResponseInfo<GetClient> RmAccessClient::getApplicableExceptions(TipprmiSequence<Exception>& exceptions) const
{
    return call<&RmAccessClient::getApplicableExceptions>(*this, exceptions);
}
