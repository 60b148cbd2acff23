// What an object of the simulated unit holds, fact by fact: each can be said, and taken back.
#pragma once

#include "catalogue/Call.h"
#include "rmi/Operations.h"
#include "rmi/Wire.h"

#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

class TipprmiStream;

namespace trs::sim {

// The operation of the catalogue that a member of a proxy class is.
template <auto Member>
catalogue::Operation const& operationOf()
{
    using Proxy = reflect::DeclaringClass<Member>;
    static catalogue::Operation const& operation =
        *catalogue::findClass(Operations<Proxy>::className)->find(reflect::memberName<Member>);
    return operation;
}

// A fact is called by the operation that tells it, and then has the operation's results by name; one that no operation
// tells has a name of its own. What follows from facts, such as an operational state, is none itself.
class Facts {
public:
    using Value = catalogue::Value;

    struct Fact {
        std::string_view name;
        std::function<Value()> say; // null: nothing is held, as at first
        // Holds what a value says from now on, without further effect. Null: as at first, where say() can be null;
        // else nothing. Empty, or what is wrong with the value, and then nothing has changed.
        std::function<std::string(Value const&)> take;
    };
    // Facts that come and go.
    struct Others {
        std::function<void(Value& object)> say;
        std::function<bool(std::string const& name)> knows;
        // Of a name that is known. Empty, or what is wrong.
        std::function<std::string(std::string const& name, Value const&)> take;
        std::function<void()> forget;
    };
    static std::string const unknown;

    // The names outlive the facts. Takes the place of the fact of that name, if there is one.
    void add(Fact fact);
    void add(std::string_view name, bool& variable);
    void add(std::string_view name, std::string& variable);
    void add(Others others) { others_.push_back(std::move(others)); }

    // Takes a value from a document: false when it is refused. None: any is held.
    template <class T>
    using Take = std::function<bool(T const&)>;
    // The variable that `Reader` tells as its only result or out-argument. Its limits are those of the only argument of
    // `setter`, if any.
    template <auto Reader, class T>
    void addTold(T& variable, std::type_identity_t<Take<T>> take = {}, catalogue::Operation const* setter = nullptr)
    {
        addVariable(operationOf<Reader>(), setter, variable, std::move(take));
    }
    // The variable that `Setter` was given last as its only argument; called by that operation, as no other tells it.
    template <auto Setter, class T>
    void addGiven(T& variable, std::type_identity_t<Take<T>> take = {})
    {
        addVariable(operationOf<Setter>(), &operationOf<Setter>(), variable, std::move(take));
    }

    // Another name under which documents may have a fact, with the same values but for the names in them.
    void alias(std::string_view name, std::string_view fact) { aliases_.emplace_back(name, fact); }

    // Whether there is a fact of that name.
    bool knows(std::string const& name) const;
    // All, by name.
    Value say() const;
    // Empty, what is wrong with the value, or unknown.
    std::string take(std::string const& name, Value const& value);
    // Those that are not among the names are as at first.
    void forgetBut(Value const& named);

private:
    using Write = std::function<void(TipprmiStream&)>;
    using Read = std::function<bool(TipprmiStream&)>;
    template <class T>
    void addVariable(catalogue::Operation const& operation, catalogue::Operation const* setter, T& variable,
                     Take<T> take)
    {
        addVariable(
            operation, setter, [&variable](TipprmiStream& stream) { Wire<T>::write(stream, variable); },
            [&variable, take = std::move(take)](TipprmiStream& stream) {
                T value{};
                Wire<T>::read(stream, value);
                if (take) {
                    return take(value);
                }
                variable = value;
                return true;
            });
    }
    void addVariable(catalogue::Operation const& operation, catalogue::Operation const* setter, Write write, Read read);

    std::vector<Fact> facts_;
    std::vector<std::pair<std::string_view, std::string_view>> aliases_;
    std::vector<Others> others_;
};

} // namespace trs::sim
