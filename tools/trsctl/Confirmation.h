// Whether somebody is sure, before something is destroyed.
#pragma once

#include "catalogue/Class.h"
#include "catalogue/Value.h"
#include "tools/support/OptionTable.h"

#include <string>
#include <vector>

namespace trs::ctl {

// Whether a call on an object of that class takes something away for good, or an interface down or out of service,
// which the session may go over. The arguments are as the unit takes them.
bool destroys(catalogue::Class const& type, catalogue::Operation const& operation,
              std::vector<catalogue::Value> const& in);

// Whether there is a terminal to ask somebody at.
bool canAsk();
// Asks at the terminal; where there is none, or the answer was given before, it is yes.
bool isConfirmed(std::string const& what, bool isSure);

// --yes, which answers.
tools::Option yesOption(bool& isSure);

} // namespace trs::ctl
