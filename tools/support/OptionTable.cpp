#include "tools/support/OptionTable.h"

#include <type_traits>

namespace trs::tools {

bool Option::isCalled(std::string_view word) const
{
    return word.starts_with('-') && !isArgument() &&
           (word == longName() || word == std::string_view(name).substr(0, name.find(',')));
}

std::string Option::valueName() const
{
    std::string joined = choices.empty() ? type : std::string();
    for (std::string const& choice : choices) {
        joined += (joined.empty() ? "" : "|") + choice;
    }
    return joined;
}

std::string Option::shownDefault() const
{
    return !showsDefault ? std::string()
                         : std::visit(
                               [](auto const& held) -> std::string {
                                   using Held = std::remove_cvref_t<decltype(held)>;
                                   if constexpr (std::is_same_v<Held, std::string*>) {
                                       return *held;
                                   } else if constexpr (std::is_pointer_v<Held>) {
                                       if constexpr (std::is_arithmetic_v<std::remove_pointer_t<Held>>) {
                                           return std::to_string(*held);
                                       }
                                   }
                                   return {};
                               },
                               target);
}

} // namespace trs::tools
