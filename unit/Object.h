// An object of the simulated unit: what proxies reach under its identifier, and the facts that it holds.
#pragma once

#include "rmi/Servant.h"
#include "unit/Facts.h"
#include "unit/Inventory.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace trs::sim {

// Is in the inventory from construction to destruction. Calls whose arguments are beyond their limits are refused, and
// change nothing.
class Object {
public:
    // Of an object that follows from facts of another one nothing is said or kept.
    enum class Origin { own, derived };
    Object(Inventory& inventory, std::string const& id, std::string_view className, Origin origin = Origin::own);
    Object(Object const&) = delete;
    Object& operator=(Object const&) = delete;
    virtual ~Object() { inventory_.remove(*this); }

    std::string const& id() const { return id_; }
    catalogue::Class const& type() const { return type_; }
    Inventory& inventory() const { return inventory_; }
    Servant& servant() { return servant_; }
    Facts& facts() { return facts_; }
    template <class Proxy>
    Proxy proxy() const
    {
        return Proxy(&servant_);
    }

    // Serves `Get` and `Set`, which report a status, from a variable that outlives the object, and holds it as a fact.
    // `accepts`, if any, decides on a value; `changed` is called when another one was set.
    template <auto Get, auto Set, class T>
    void holds(T& variable, std::function<void()> changed = {}, std::type_identity_t<Facts::Take<T>> accepts = {})
    {
        servant_
            .on<Get>([&variable](T& read) {
                read = variable;
                return GetClient::OK;
            })
            .template on<Set>([&variable, changed = std::move(changed), accepts](T const& written) {
                if (accepts && !accepts(written)) {
                    return SetClient::FAILED;
                }
                variable = written;
                if (changed) {
                    changed();
                }
                return SetClient::OK;
            });
        facts_.addTold<Get>(
            variable,
            [&variable, accepts](T const& value) {
                bool const isAccepted = !accepts || accepts(value);
                if (isAccepted) {
                    variable = value;
                }
                return isAccepted;
            },
            &operationOf<Set>());
    }
    // Serves `Get`, which reports a status, from a variable that outlives the object, and holds it as a fact.
    template <auto Get, class T>
    void tells(T& variable)
    {
        servant_.on<Get>([&variable](T& read) {
            read = variable;
            return GetClient::OK;
        });
        facts_.addTold<Get>(variable);
    }

    // Holds entries that `Reader` tells by its in-arguments and `Setter` sets: a list, whose elements have the
    // arguments and the results. `keys`: the arguments for which there is one; `clear` leaves none.
    using Values = std::vector<catalogue::Value>;
    template <auto Reader, auto Setter>
    void holdsEntries(std::function<std::vector<Values>()> keys, std::function<void()> clear)
    {
        holdsEntries(operationOf<Reader>(), operationOf<Setter>(), std::move(keys), std::move(clear));
    }
    // The keys of a map, each as the only argument.
    template <class Map>
    static std::vector<Values> keysOf(Map const& map)
    {
        std::vector<Values> keys;
        keys.reserve(map.size());
        for (auto const& [key, value] : map) {
            keys.push_back({key});
        }
        return keys;
    }

    bool isDerived() const { return origin_ == Origin::derived; }

    // To be called when a fact changes otherwise than by an operation of this object that is no reading one.
    void changed() { inventory_.tellChange(*this); }
    // Has observers of an operation told, as if it had been executed with these arguments or this result.
    template <auto Member, class T>
    void announce(T const& value)
    {
        TipprmiSequence<TipprmiAny> parameters;
        parameters.push_back(TipprmiAny(value));
        servant_.notifyObservers(operationClassId<Member>, OperationRow<Member>::index, parameters);
    }

    // What follows from facts that were taken back, and has effects: carried out when all objects have theirs.
    // Empty, or what does not go together.
    void onSettle(std::function<std::string()> settle) { settle_ = std::move(settle); }
    std::string settle() { return settle_ ? settle_() : std::string(); }

    // Has an operation without in-arguments tell these results from now on, whatever else the object would tell. Empty,
    // or what is wrong with them.
    std::string force(catalogue::Operation const& reader, catalogue::Value const& results);

private:
    void holdsEntries(catalogue::Operation const& reader, catalogue::Operation const& setter,
                      std::function<std::vector<Values>()> keys, std::function<void()> clear);
    std::string setEntry(catalogue::Operation const& setter, catalogue::Value const& element) const;
    bool answerFirst(unsigned long classId, unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply);
    bool refuse(catalogue::Operation const& operation, TipprmiStream& request, TipprmiStream& reply);
    bool answerForced(catalogue::Operation const& operation, TipprmiStream& request, TipprmiStream& reply) const;

    Inventory& inventory_;
    std::string const id_;
    catalogue::Class const& type_;
    Origin const origin_;
    Facts facts_;
    std::function<std::string()> settle_;
    std::map<catalogue::Operation const*, catalogue::Value> forced_;
    Servant servant_;
};

} // namespace trs::sim
