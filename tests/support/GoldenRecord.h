// The catalogue of interfaces (tests/data/catalogue.tsv, the golden record) and the checks of a proxy class against it.
#pragma once

#include "rmi/Dispatch.h"
#include "tests/support/Exchange.h"
#include "tests/support/TypeText.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <span>
#include <string>
#include <tuple>
#include <vector>

namespace golden {

// The lines of every class, under its name.
inline std::map<std::string, std::vector<std::string>, std::less<>> const& lines()
{
    static auto const read = [] {
        std::map<std::string, std::vector<std::string>, std::less<>> classes;
        std::ifstream file(std::filesystem::path(TRSMAN_SOURCE_DIR) / "tests/data/catalogue.tsv");
        std::string line;
        std::getline(file, line); // the column heads
        while (std::getline(file, line)) {
            classes[line.substr(0, line.find('\t'))].push_back(line);
        }
        return classes;
    }();
    return read;
}

// Without the lines of classes that have none.
inline std::size_t operationCount()
{
    std::size_t count = 0;
    for (auto const& [name, rows] : lines()) {
        count += static_cast<std::size_t>(
            std::ranges::count_if(rows, [](std::string const& row) { return !row.ends_with("\t-\t-\t-\t-"); }));
    }
    return count;
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

template <class T>
[[gnu::noinline]] T writeSample(TipprmiStream& stream, int& seed)
{
    T value = Sample<T>::make(seed);
    stream << value;
    return value;
}

// Calls an operation with sample values on an object that answers with others. What must be in the request, the
// in-arguments, is added to `expected`; the result and the out-arguments must be those of the reply, in that order.
template <class R, class... A>
[[gnu::noinline]] void expectReply(TipprmiObjectClient const& proxy, Recorder& object, Recorder::Call& expected,
                                   R (TipprmiObjectClient::*operation)(A...) const)
{
    int seed = 0;
    TipprmiStream request(100);
    TipprmiStream reply(100);
    if constexpr (!std::is_void_v<R>) {
        writeSample<R>(reply, seed);
    }
    [[maybe_unused]] auto const prepare = [&]<class Argument>(std::type_identity<Argument&>, auto& argument) {
        if constexpr (std::is_const_v<Argument>) {
            argument = writeSample<std::remove_const_t<Argument>>(request, seed);
        } else {
            writeSample<Argument>(reply, seed);
        }
    };
    std::tuple<std::remove_cvref_t<A>...> arguments{};
    std::apply([&](auto&... argument) { (prepare(std::type_identity<A>{}, argument), ...); }, arguments);

    object.reply = hex(reply);
    expected.request = hex(request);
    EXPECT_EQ(golden::received(proxy, operation, arguments), object.reply);
}

template <class Function>
struct SignatureOf;
template <class R, class... A>
struct SignatureOf<R(A...)> {
    // "in long; out bool\tvoid": the catalogue's last two columns.
    static std::string text()
    {
        return parametersText(std::type_identity<std::tuple<A...>>{}) + '\t' + typeText(std::type_identity<R>{});
    }
    // Members are called as the root's, so that operations of one signature share expectReply().
    template <auto Member>
    static void call(TipprmiObjectClient const& proxy, Recorder& object, Recorder::Call& expected)
    {
        expectReply(proxy, object, expected, static_cast<R (TipprmiObjectClient::*)(A...) const>(Member));
    }
};

struct OperationCheck {
    std::string_view name;
    unsigned long index;
    bool isLocal;
    std::string (*signature)();
    void (*call)(TipprmiObjectClient const& proxy, Recorder& object, Recorder::Call& expected);
};

template <class Rows>
inline constexpr int operationChecks = 0;
template <class... Row>
inline constexpr std::array<OperationCheck, sizeof...(Row)> operationChecks<RowList<Row...>>{
    OperationCheck{Row::name, Row::index, Row::isLocal, &SignatureOf<typename Row::Signature::Function>::text,
                   &SignatureOf<typename Row::Signature::Function>::template call<Row::member>}...};

inline void expectLines(std::string_view className, std::string const& classColumns, std::string const& byHand,
                        std::span<OperationCheck const> operations)
{
    // The lines that the catalogue would have if it were written from the code.
    std::vector<std::string> result;
    for (OperationCheck const& row : operations) {
        result.push_back(classColumns +
                         (!byHand.empty() ? byHand
                          : row.isLocal   ? "local"
                                          : "remote") +
                         '\t' + std::to_string(row.index) + '\t' + std::string(row.name) + '\t' + row.signature());
    }
    if (result.empty()) {
        result.push_back(classColumns + "remote\t-\t-\t-\t-");
    }
    auto const expected = lines().find(className);
    ASSERT_NE(expected, lines().end()) << "the catalogue has no such class";
    EXPECT_THAT(result, testing::ElementsAreArray(expected->second));
}

// That the class is the catalogue's, column by column and row by row.
template <class Proxy>
void expectListed()
{
    using List = Operations<Proxy>;
    std::string byHand = "by hand";
    std::string metaParent = "-";
    if constexpr (requires { Proxy::staticMeta(); }) {
        byHand.clear();
        if (TreflectMetaObject const* const parent = Proxy::staticMeta()->parent()) {
            metaParent = parent->name();
        }
    }
    char columns[200];
    std::snprintf(columns, sizeof columns, "%s\t%s\t0x%08x\t%s\t%s\t", std::string(List::className).c_str(),
                  std::string(List::interfaceName).c_str(), static_cast<unsigned>(List::classId),
                  baseText<Proxy>().c_str(), metaParent.c_str());
    expectLines(List::className, columns, byHand, operationChecks<typename List::Rows>);
}

inline void expectCalls(TipprmiObjectClient const& proxy, Recorder& object, std::string_view declaring,
                        unsigned long classId, std::span<OperationCheck const> operations)
{
    for (OperationCheck const& operation : operations) {
        SCOPED_TRACE(std::string(declaring) + "::" + std::string(operation.name));
        Recorder::Call expected{classId, operation.index, ""};
        object.calls.clear();
        operation.call(proxy, object, expected);
        EXPECT_THAT(object.calls, testing::ElementsAre(expected));
    }
}

// That every operation of the class, inherited ones too, calls that operation of the class that declares it.
template <class Proxy, class Declaring = Proxy>
void expectEveryBodyCallsItsOperation()
{
    using List = Operations<Declaring>;
    Recorder object;
    expectCalls(Proxy(&object), object, List::className, List::classId, operationChecks<typename List::Rows>);
    if constexpr (requires { Operations<typename Declaring::Parent>::classId; }) {
        expectEveryBodyCallsItsOperation<Proxy, typename Declaring::Parent>();
    }
}

} // namespace golden
