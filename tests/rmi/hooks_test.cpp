// Call hooks, parameter hooks, and how a signature is split between them.
#include "rmi/ApplicationObjectSkeleton.h"
#include "rmi/Call.h"
#include "rmi/CallHooks.h"
#include "tests/support/GoldenRecord.h"

#include <gtest/gtest.h>

// Every arity, with in- and out-arguments in every place.
class ArityClient : public TreflectObject {
public:
    using TreflectObject::TreflectObject;
    virtual void none() const;
    virtual long one(short& a) const;
    virtual void two(std::string& a, bool const& b) const;
    virtual ResponseInfo<RunClient> three(long const& a, TipprmiSequence<long>& b, std::string const& c) const;
    virtual std::string four(bool& a, unsigned char& b, long const& c, TipprmiArray<short, 4>& d) const;
    virtual TipprmiSequence<short> five(long const& a, long& b, short const& c, std::string& d, bool const& e) const;
};
template <>
struct Operations<ArityClient>
    : OperationList<ArityClient, reflect::crc32("Arity"), Operation<0, &ArityClient::none>,
                    Operation<1, &ArityClient::one>, Operation<2, &ArityClient::two>, Operation<3, &ArityClient::three>,
                    Operation<7, &ArityClient::four>, Operation<0xfedcba98, &ArityClient::five>> {};

void ArityClient::none() const { call<&ArityClient::none>(*this); }
long ArityClient::one(short& a) const { return call<&ArityClient::one>(*this, a); }
void ArityClient::two(std::string& a, bool const& b) const { call<&ArityClient::two>(*this, a, b); }
ResponseInfo<RunClient> ArityClient::three(long const& a, TipprmiSequence<long>& b, std::string const& c) const
{
    return call<&ArityClient::three>(*this, a, b, c);
}
std::string ArityClient::four(bool& a, unsigned char& b, long const& c, TipprmiArray<short, 4>& d) const
{
    return call<&ArityClient::four>(*this, a, b, c, d);
}
TipprmiSequence<short> ArityClient::five(long const& a, long& b, short const& c, std::string& d, bool const& e) const
{
    return call<&ArityClient::five>(*this, a, b, c, d, e);
}

namespace {

struct Server : TipprmiObjectSkeleton {
    virtual long add(long const& a, long& b) { return b = a + b; }
    virtual void clear(std::string& text) { text.clear(); }
    bool dispatch(bool, unsigned long, unsigned long, TipprmiStream&, TipprmiStream&) override { return false; }
};
struct OtherServer : Server {
    long add(long const& a, long& b) override { return a * b; }
};

std::vector<std::string> formsOf(TipprmiSequence<TipprmiAny> const& list)
{
    std::vector<std::string> forms;
    for (TipprmiAny const& any : list) {
        forms.push_back(hex(any));
    }
    return forms;
}

template <class R>
std::string initialResult()
{
    return wireForm(ClientCallHookr0<TipprmiObjectSkeleton, R>(nullptr, nullptr).result());
}

TEST(CallHook, startsWithAFailedUnboundEmptyOrZeroResult)
{
    EXPECT_EQ(initialResult<ResponseInfo<GetClient>>(), "00 00 00 00 00 00 00 01");
    EXPECT_EQ(initialResult<bool>(), "00 00 00 00");
    EXPECT_EQ(initialResult<unsigned short>(), "00 00");
    EXPECT_EQ(initialResult<SubSystemId>(), "00 00 00 00");
    EXPECT_EQ(initialResult<std::string>(), "00 00 00 00");
    EXPECT_EQ(initialResult<TipprmiSequence<long>>(), "00 00 00 00");
    EXPECT_EQ(initialResult<LocationIdClient>(), "00 00 00 01 00 00 00 00");
    EXPECT_EQ((initialResult<TipprmiArray<short, 4>>()), "00 00 00 00 00 00 00 00");
    EXPECT_EQ(initialResult<PerformanceServiceClient::IdentData_t>(), repeated(400, "00"));
}

TEST(CallHook, keepsItsResultUntilAReplyReplacesIt)
{
    ClientCallHookr0<TipprmiObjectSkeleton, ResponseInfo<GetClient>> const hook(nullptr, nullptr);
    hook.call();
    EXPECT_EQ(hook.result(), GetClient::FAILED);
    TipprmiStream reply = streamOf("00 00 00 00 00 00 00 00");
    hook.evaluateResponse(reply);
    EXPECT_EQ(hook.result(), GetClient::OK);
}

TEST(CallHook, runsTheMemberVirtuallyOnTheCallersOwnArguments)
{
    OtherServer server;
    long const a = 5;
    long b = 7;
    ClientCallHookr2<Server, long, long const&, long&> const product(&server, &Server::add, a, b);
    product.call();
    EXPECT_EQ(product.result(), 35);
    Server plain;
    ClientCallHookr2<Server, long, long const&, long&> const sum(&plain, &Server::add, a, b);
    sum.call();
    EXPECT_EQ(b, 12);
    std::string text = "text";
    ClientCallHookv1<Server, std::string&>(&plain, &Server::clear, text).call();
    EXPECT_EQ(text, "");
}

TEST(CallHook, listsTheResultAndThenEveryArgumentInDeclarationOrder)
{
    ApplicationObjectClient const other(TipprmiOID("ab"));
    bool granted = true;
    ClientCallHookr2<ApplicationObjectSkeleton, ResponseInfo<SetClient>, ApplicationObjectClient const&, bool&> const
        hook(nullptr, &ApplicationObjectSkeleton::requestSupportRelease, other, granted);
    TipprmiSequence<TipprmiAny> list;
    hook.insertResult(list);
    EXPECT_THAT(formsOf(list),
                testing::ElementsAre("00 00 00 00 00 00 00 01", "00 00 00 01 00 00 00 02 61 62", "00 00 00 01"));
    hook.generateParams(list);
    EXPECT_EQ(list.getLength(), 5U) << "the arguments alone";

    TipprmiSequence<TipprmiAny> none;
    ClientCallHookv0<ApplicationObjectSkeleton>(nullptr, &ApplicationObjectSkeleton::reset).insertResult(none);
    EXPECT_EQ(none.getLength(), 0U);
}

TEST(CallHook, writesOutArgumentsTooWhenItWritesAllArguments)
{
    long out = 7;
    short const in = -1;
    TipprmiStream stream(100);
    ClientCallHookv2<Server, short const&, long&>(nullptr, nullptr, in, out).generateRequestStream(stream);
    EXPECT_EQ(hex(stream), "FF FF 00 00 00 07");
    stream.clear();
    ClientCallHookr1<Server, long, long&>(nullptr, nullptr, out).generateRequestStream(stream);
    EXPECT_EQ(hex(stream), "00 00 00 07");
    ClientCallHookv0<Server>(nullptr, nullptr).generateRequestStream(stream);
    EXPECT_EQ(stream.size(), 4U);
}

TEST(ParamHooks, writeAndReadInDeclarationOrder)
{
    TipprmiStream stream(100);
    InParamHook0().handleParams(stream);
    EXPECT_EQ(stream.size(), 0U);
    short const a = 1;
    bool const b = true;
    InParamHook2<short const&, bool const&>(a, b).handleParams(stream);
    EXPECT_EQ(hex(stream), "00 01 00 00 00 01");

    OutParamHook0().handleParams(stream);
    EXPECT_EQ(stream.available(), 6U);
    bool first = false;
    short second = 9;
    TipprmiStream reply = streamOf("00 00 00 05 00 06");
    OutParamHook2<bool&, short&>(first, second).handleParams(reply);
    EXPECT_TRUE(first);
    EXPECT_EQ(second, 6);
}

TEST(CallRoad, sendsInArgumentsAndReadsTheResultBeforeOutArguments)
{
    golden::expectEveryBodyCallsItsOperation<ArityClient>();

    Recorder object;
    object.reply = "00 00 00 01 00 09 00 00 00 07 00 00 00 01 64"; // one short; a long; a string
    long b = 99;
    std::string d = "not sent";
    auto const result = ArityClient(&object).five(2, b, 3, d, true);
    EXPECT_EQ(object.calls.at(0).request, "00 00 00 02 00 03 00 00 00 01");
    EXPECT_EQ(object.calls.at(0).index, 0xfedcba98U);
    EXPECT_TRUE(result == sequenceOf<short>({9}));
    EXPECT_EQ(b, 7);
    EXPECT_EQ(d, "d");
}

TEST(CallRoad, returnsWhatCouldBeReadOfAReplyCutShort)
{
    Recorder object;
    object.reply = "00 00 00 01 00 09 00 00 00 07 00 00 00 02 64";
    long b = 99;
    std::string d = "former";
    EXPECT_EQ(ArityClient(&object).five(2, b, 3, d, true)[0], 9);
    EXPECT_EQ(b, 7);
    EXPECT_EQ(d, "former");
    object.reply = "00 00 00 00 00 00 00";
    TipprmiSequence<long> none;
    EXPECT_EQ(ArityClient(&object).three(1, none, ""), RunClient::FAILED);
}

} // namespace
