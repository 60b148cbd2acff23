// Tells a feed what happens to an object.
#pragma once

#include "broker/calls/Observation.h"
#include "catalogue/ConstantNames.h"
#include "catalogue/MessageText.h"
#include "catalogue/Text.h"
#include "platform/TreflectObserver.h"
#include "rmi/TipprmiAny.h"
#include "tools/trsctl/Feed.h"
#include "tools/trsctl/Target.h"

namespace trs::ctl {

// Of the executions of one operation, from observe() on.
class Listener final : public TreflectObserver {
public:
    using Value = catalogue::Value;

    Listener(Target const& target, catalogue::Operation const& operation, Feed& feed)
        : TreflectObserver(target.object.getOID(), nullptr, "trsctl"), name_(target.name.text()), type_(*target.type),
          operation_(operation), feed_(feed)
    {
    }
    ~Listener() override { withdraw(); }

    bool detected() override { return true; }
    bool notify(TipprmiSequence<TipprmiAny> const& parameters) override
    {
        Value values = catalogue::unpackParameters(operation_, parameters);
        catalogue::nameConstants(type_, operation_, values);
        feed_.put({{"time", catalogue::timestamp(std::chrono::system_clock::now())},
                   {"object", name_},
                   {"operation", operation_.name},
                   {"parameters", std::move(values)}});
        return true;
    }

private:
    std::string const name_;
    catalogue::Class const& type_;
    catalogue::Operation const& operation_;
    Feed& feed_;
};

} // namespace trs::ctl
