// The catalogue of interfaces (tests/data/catalogue.tsv, the golden record) and the checks of a proxy class against it.
#pragma once

#include "rmi/Dispatch.h"
#include "tests/support/Recorder.h"
#include "tests/support/TypeText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace catalogue {

// The lines of every class, under its name.
inline std::map<std::string, std::vector<std::string>, std::less<>> const& lines()
{
    static auto const read = [] {
        std::map<std::string, std::vector<std::string>, std::less<>> classes;
        std::ifstream file(std::filesystem::path(__FILE__).parent_path() / "../data/catalogue.tsv");
        std::string line;
        std::getline(file, line); // the column heads
        while (std::getline(file, line)) {
            classes[line.substr(0, line.find('\t'))].push_back(line);
        }
        return classes;
    }();
    return read;
}

template <class Proxy>
std::string baseText()
{
    if constexpr (requires { typename Proxy::Parent; }) {
        static_assert(std::is_base_of_v<typename Proxy::Parent, Proxy>);
        return std::string(reflect::className<typename Proxy::Parent>);
    } else {
        static_assert(std::is_base_of_v<TipprmiObjectClient, Proxy>);
        return "TipprmiObjectClient";
    }
}

// The lines that the catalogue would have if it were written from the code.
template <class Proxy>
std::vector<std::string> linesOf()
{
    using List = Operations<Proxy>;
    std::string road = "by hand";
    std::string metaParent = "-";
    if constexpr (requires { Proxy::staticMeta(); }) {
        road = "remote";
        List::forEach([&]<class Row>(Row) { road = Row::isLocal ? "local" : "remote"; });
        if (TreflectMetaObject const* const parent = Proxy::staticMeta()->parent()) {
            metaParent = parent->name();
        }
    }
    char identifier[11];
    std::snprintf(identifier, sizeof identifier, "0x%08x", static_cast<unsigned>(List::classId));
    auto const joined = [&](std::initializer_list<std::string> columns) {
        std::string line(List::className);
        for (std::string const& column :
             {std::string(List::interfaceName), std::string(identifier), baseText<Proxy>(), metaParent}) {
            line += '\t' + column;
        }
        for (std::string const& column : columns) {
            line += '\t' + column;
        }
        return line;
    };

    std::vector<std::string> result;
    List::forEach([&]<class Row>(Row) {
        using Signature = typename Row::Signature;
        result.push_back(joined({road, std::to_string(Row::index), std::string(Row::name),
                                 parametersText(std::type_identity<typename Signature::Arguments>{}),
                                 typeText(std::type_identity<typename Signature::Result>{})}));
    });
    if (result.empty()) {
        result.push_back(joined({road, "-", "-", "-", "-"}));
    }
    return result;
}

// A value of any type that travels, no two alike and none like a value that was never set.
template <class T>
struct Sample {
    static T make(int& seed)
    {
        if constexpr (std::is_same_v<T, bool>) {
            return true;
        } else if constexpr (std::is_same_v<T, std::string>) {
            return "text " + std::to_string(++seed);
        } else if constexpr (std::is_base_of_v<TipprmiObjectClient, T>) {
            return T(TipprmiOID("object " + std::to_string(++seed)));
        } else if constexpr (Record<T>) {
            T record{};
            RecordFields<T>::forEach(record, [&seed]<class F>(F& field) { field = Sample<F>::make(seed); });
            return record;
        } else {
            return static_cast<T>(++seed);
        }
    }
};
template <class X>
struct Sample<ResponseInfo<X>> {
    static ResponseInfo<X> make(int& seed)
    {
        ResponseInfo<X> status(X::OK);
        status.subSystemId = static_cast<SubSystemId>(++seed);
        return status;
    }
};
template <class T, unsigned long N>
struct Sample<TipprmiArray<T, N>> {
    static TipprmiArray<T, N> make(int& seed)
    {
        TipprmiArray<T, N> array{};
        for (unsigned long i = 0; i < N; ++i) {
            array[i] = Sample<T>::make(seed);
        }
        return array;
    }
};
template <class T, unsigned long N>
struct Sample<TipprmiSequence<T, N>> {
    static TipprmiSequence<T, N> make(int& seed)
    {
        TipprmiSequence<T, N> sequence;
        sequence.push_back(Sample<T>::make(seed));
        sequence.push_back(Sample<T>::make(seed));
        return sequence;
    }
};

// Calls one operation on an object that answers with sample values. The request must hold exactly the in-arguments;
// the result and the out-arguments must be the ones of the reply, in that order.
template <class Proxy, class Row, class R, class... A>
void callOne(std::type_identity<std::tuple<A...>>)
{
    SCOPED_TRACE(std::string(reflect::className<Proxy>) + "::" + std::string(Row::name));
    constexpr auto isIn = []<class Argument>(std::type_identity<Argument>) {
        return std::is_const_v<std::remove_reference_t<Argument>>;
    };
    int seed = 0;
    TipprmiStream request(100);
    TipprmiStream reply(100);
    std::tuple<std::remove_cvref_t<A>...> arguments{};
    if constexpr (!std::is_void_v<R>) {
        reply << Sample<R>::make(seed);
    }
    [[maybe_unused]] auto const prepare = [&]<class Argument>(std::type_identity<Argument> type, auto& argument) {
        auto const value = Sample<std::remove_cvref_t<Argument>>::make(seed);
        (isIn(type) ? request : reply) << value;
        if (isIn(type)) {
            argument = value;
        }
    };
    std::apply([&](auto&... argument) { (prepare(std::type_identity<A>{}, argument), ...); }, arguments);

    Recorder object;
    object.reply = hex(reply);
    Proxy const proxy(&object);
    TipprmiStream received(100);
    std::apply(
        [&](auto&... argument) {
            if constexpr (std::is_void_v<R>) {
                (proxy.*Row::member)(argument...);
            } else {
                received << (proxy.*Row::member)(argument...);
            }
        },
        arguments);
    [[maybe_unused]] auto const collect = [&]<class Argument>(std::type_identity<Argument> type, auto& argument) {
        if (!isIn(type)) {
            received << argument;
        }
    };
    std::apply([&](auto&... argument) { (collect(std::type_identity<A>{}, argument), ...); }, arguments);

    EXPECT_THAT(object.calls,
                testing::ElementsAre(Recorder::Call{Operations<Proxy>::classId, Row::index, hex(request)}));
    EXPECT_EQ(hex(received), object.reply);
}

// That the class is the catalogue's, column by column and row by row.
template <class Proxy>
void expectListed()
{
    auto const expected = lines().find(reflect::className<Proxy>);
    ASSERT_NE(expected, lines().end()) << "the catalogue has no such class";
    EXPECT_THAT(linesOf<Proxy>(), testing::ElementsAreArray(expected->second));
}

// That the body of every operation calls that operation and no other.
template <class Proxy>
void expectEveryBodyCallsItsOperation()
{
    Operations<Proxy>::forEach([]<class Row>(Row) {
        using Signature = typename Row::Signature;
        callOne<Proxy, Row, typename Signature::Result>(std::type_identity<typename Signature::Arguments>{});
    });
}

} // namespace catalogue
