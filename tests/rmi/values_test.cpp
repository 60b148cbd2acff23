// The wire form of every kind of value, and what becomes of one that is cut short.
#include "rmi/ApplicationObjectClient.h"
#include "rmi/StreamOperators.h"
#include "rmi/TipprmiAny.h"
#include "tests/support/Bytes.h"

#include <gtest/gtest.h>

#include <memory>
#include <numeric>
#include <thread>

namespace {

enum Colour : int { RED = 0, BLUE = 3, NONE = -1 };

// A record of fixed size, and one that holds a value of every other kind.
struct Fixed {
    unsigned char octet;
    short number;
    Colour colour;
    bool flag;
};
struct Mixed {
    TipprmiArray<short, 4> address;
    TipprmiSequence<Fixed> list;
    std::string name;
    TipprmiArray<std::string, 2> aliases;
    ApplicationObjectClient object;
};
constexpr char const* FIXED = "05 FF FE 00 00 00 03 00 00 00 01";
Fixed const fixedValue{5, -2, BLUE, true};

TipprmiArray<short, 4> address(short a, short b, short c, short d)
{
    TipprmiArray<short, 4> array;
    short const octets[] = {a, b, c, d};
    std::copy(octets, octets + 4, array.data());
    return array;
}

} // namespace

template <>
struct RecordFields<Fixed> : Fields<&Fixed::octet, &Fixed::number, &Fixed::colour, &Fixed::flag> {};
template <>
struct RecordFields<Mixed> : Fields<&Mixed::address, &Mixed::list, &Mixed::name, &Mixed::aliases, &Mixed::object> {};

namespace {

// `value` has this wire form and no other, reads back over `former`, and a stream that ends too early fails.
template <class T>
void expectTravels(T const& value, T const& former, std::string const& form)
{
    SCOPED_TRACE(form);
    EXPECT_EQ(wireForm(value), form);
    EXPECT_EQ(hex(TipprmiAny(value)), form);

    TipprmiStream stream = streamOf(form);
    T received(former);
    stream >> received;
    EXPECT_EQ(wireForm(received), form);
    EXPECT_FALSE(stream.hasUnmarshallingFailed());
    EXPECT_EQ(stream.available(), 0U);

    for (std::size_t cut = 0; cut < stream.size(); ++cut) {
        TipprmiStream shorter(stream);
        shorter.truncate(cut);
        T destination(former);
        shorter >> destination;
        EXPECT_TRUE(shorter.hasUnmarshallingFailed()) << "cut at " << cut;
        if constexpr (std::is_same_v<T, bool>) {
            EXPECT_FALSE(destination);
        } else if constexpr (!Record<T> && !isContainer<T>) {
            EXPECT_EQ(wireForm(destination), wireForm(former)) << "cut at " << cut;
        }
        unsigned char next = 77;
        shorter >> next;
        EXPECT_EQ(next, 77) << "a failed stream stays failed";
    }
}

TEST(Wire, carriesScalarsBigEndian)
{
    expectTravels<unsigned char>(0xfe, 1, "FE");
    expectTravels<short>(-2, 1, "FF FE");
    expectTravels<unsigned short>(0xfedc, 1, "FE DC");
    expectTravels<int>(-2, 1, "FF FF FF FE");
    expectTravels<long>(-2147483647L - 1, 1, "80 00 00 00");
    expectTravels<long>(-2, 1, "FF FF FF FE");
    expectTravels<unsigned long>(0xfedcba98, 1, "FE DC BA 98");
    expectTravels<bool>(true, true, "00 00 00 01");
    expectTravels<bool>(false, true, "00 00 00 00");
    expectTravels<Colour>(BLUE, RED, "00 00 00 03");
    expectTravels<Colour>(NONE, RED, "FF FF FF FF");
    expectTravels<std::string>("", "x", "00 00 00 00");
    expectTravels<std::string>(std::string("a\0\xff", 3), "x", "00 00 00 03 61 00 FF");
}

TEST(Wire, readsAnyBoolButZeroAsTrueAndAnyNumberAsAnEnumeration)
{
    EXPECT_TRUE(readFrom<bool>("00 00 00 07"));
    EXPECT_TRUE(readFrom<bool>("01 00 00 00"));
    EXPECT_EQ(static_cast<int>(readFrom<Colour>("00 00 00 63")), 99);
}

TEST(Wire, carriesContainers)
{
    expectTravels(TipprmiSequence<unsigned short>{}, sequenceOf<unsigned short>({1}), "00 00 00 00");
    expectTravels(sequenceOf<unsigned short>({1, 2}), {}, "00 00 00 02 00 01 00 02");
    expectTravels(sequenceOf<std::string>({"a", ""}), {}, "00 00 00 02 00 00 00 01 61 00 00 00 00");
    expectTravels(address(10, 0, 0, 1), address(1, 2, 3, 4), "00 0A 00 00 00 00 00 01");
    expectTravels(sequenceOf({address(10, 0, 0, 1), address(-1, 2, 3, 4)}), {},
                  "00 00 00 02 00 0A 00 00 00 00 00 01 FF FF 00 02 00 03 00 04");
    expectTravels(sequenceOf({sequenceOf<long>({-1}), {}}), {}, "00 00 00 02 00 00 00 01 FF FF FF FF 00 00 00 00");
}

template <unsigned long N>
void expectArrayTravels()
{
    TipprmiArray<short, N> numbers;
    TipprmiArray<unsigned short, N> others{};
    std::string form;
    for (unsigned long i = 0; i < N; ++i) {
        numbers[i] = static_cast<short>(0x1080 + i);
        others[i] = static_cast<unsigned short>(0x1080 + i);
        form += (i == 0 ? "10 8" : " 10 8") + std::string(1, "0123456789ABCDEF"[i]);
    }
    expectTravels(numbers, TipprmiArray<short, N>{}, form);
    expectTravels(others, TipprmiArray<unsigned short, N>{}, form);
}

TEST(Wire, carriesArraysOfEveryLength)
{
    [&]<std::size_t... I>(std::index_sequence<I...>) {
        (expectArrayTravels<I + 1>(), ...);
    }(std::make_index_sequence<16>{});
}

TEST(Wire, carriesRecordsFieldByField)
{
    expectTravels(fixedValue, Fixed{}, FIXED);
    Mixed mixed{address(1, 2, 3, 4), sequenceOf({fixedValue}), "n", {}, ApplicationObjectClient(TipprmiOID("ab"))};
    mixed.aliases[1] = "z";
    expectTravels(mixed, Mixed{},
                  std::string("00 01 00 02 00 03 00 04 00 00 00 01 ") + FIXED +
                      " 00 00 00 01 6E 00 00 00 00 00 00 00 01 7A 00 00 00 01 00 00 00 02 61 62");
}

TEST(Wire, carriesStatuses)
{
    struct {
        ResponseInfo<GetClient> status;
        char const* form;
    } const cases[] = {{GetClient::FAILED, "00 00 00 00 00 00 00 01"},
                       {GetClient::OK, "00 00 00 00 00 00 00 00"},
                       {static_cast<GetClient::State>(5), "00 00 00 00 00 00 00 01"}};
    for (auto const& [status, form] : cases) {
        expectTravels(status, ResponseInfo<GetClient>(GetClient::OK), form);
    }
    auto const received = readFrom<ResponseInfo<GetClient>>("00 00 00 07 00 00 00 09", GetClient::OK);
    EXPECT_EQ(static_cast<int>(received.subSystemId), 7);
    EXPECT_TRUE(received == GetClient::FAILED && GetClient::FAILED == received && received != GetClient::OK);
}

TEST(Wire, carriesObjectReferencesAndRebindsTheReadingProxy)
{
    expectTravels(ApplicationObjectClient(TipprmiOID("ab")), ApplicationObjectClient(TipprmiOID("former")),
                  "00 00 00 01 00 00 00 02 61 62");
    expectTravels(ApplicationObjectClient(TipprmiOID("c", NamespaceId(0xfedcba98))), ApplicationObjectClient(),
                  "FE DC BA 98 00 00 00 01 63");
    expectTravels(LocationIdClient(), LocationIdClient(TipprmiOID("former")), "00 00 00 01 00 00 00 00");
    expectTravels(sequenceOf({LocationIdClient(TipprmiOID("a"))}), {}, "00 00 00 01 00 00 00 01 00 00 00 01 61");
}

TEST(Wire, dropsTheUpperHalfOfAWideLong)
{
    if constexpr (sizeof(long) == 8) {
        EXPECT_EQ(wireForm(static_cast<long>(0x7700000005)), "00 00 00 05");
        EXPECT_EQ(wireForm(static_cast<unsigned long>(0x77ffffffff)), "FF FF FF FF");
    }
    EXPECT_EQ(readFrom<unsigned long>("FF FF FF FF"), 0xffffffffUL);
}

TEST(Wire, keepsWhatWasReadBeforeTheCut)
{
    std::size_t const ends[] = {1, 3, 7, 11};
    for (std::size_t cut = 0; cut <= 11; ++cut) {
        TipprmiStream stream = streamOf(FIXED);
        stream.truncate(cut);
        Fixed record{99, 99, RED, true};
        stream >> record;
        EXPECT_EQ(record.octet, cut >= ends[0] ? 5 : 99) << cut;
        EXPECT_EQ(record.number, cut >= ends[1] ? -2 : 99) << cut;
        EXPECT_EQ(record.colour, cut >= ends[2] ? BLUE : RED) << cut;
        EXPECT_EQ(record.flag, cut >= ends[3]) << cut;
    }
    for (std::size_t cut = 0; cut <= 8; ++cut) {
        TipprmiStream stream = streamOf("00 0A 00 0B 00 0C 00 0D");
        stream.truncate(cut);
        TipprmiArray<short, 4> array = address(1, 2, 3, 4);
        stream >> array;
        for (short i = 0; i < 4; ++i) {
            EXPECT_EQ(array[static_cast<unsigned long>(i)], cut >= 2 * static_cast<std::size_t>(i + 1) ? 10 + i : 1 + i)
                << cut;
        }
    }
}

TEST(Wire, sizesASequenceByItsCount)
{
    TipprmiSequence<unsigned short> sequence;
    sequence.setLength(8);
    sequence = readFrom("00 00 00 05 00 01 00 02 00 03 00 04 00 05", sequence);
    EXPECT_TRUE(sequence == sequenceOf<unsigned short>({1, 2, 3, 4, 5}));

    TipprmiStream wrong = streamOf("00 00 00 05 00 08 00 09");
    wrong >> sequence;
    EXPECT_TRUE(wrong.hasUnmarshallingFailed());
    EXPECT_TRUE(sequence == sequenceOf<unsigned short>({8, 9, 0, 0, 0}));

    TipprmiStream absent = streamOf("00 00 00");
    absent >> sequence;
    EXPECT_TRUE(absent.hasUnmarshallingFailed());
    EXPECT_EQ(sequence.getLength(), 0U);
}

template <class T>
void expectCountLimit(std::size_t leastSize)
{
    for (unsigned long const count : {0xffffffffUL, static_cast<unsigned long>(TIPPRMI_MAX_MESSAGE / leastSize) + 1}) {
        TipprmiStream stream(100);
        stream << count;
        T element{};
        TipprmiSequence<T> sequence = sequenceOf({element});
        stream >> sequence;
        EXPECT_TRUE(stream.hasUnmarshallingFailed());
        EXPECT_EQ(sequence.getLength(), 0U) << count;
    }
}

TEST(Wire, refusesACountThatNoMessageCouldHold)
{
    expectCountLimit<unsigned char>(1);
    expectCountLimit<unsigned short>(2);
    expectCountLimit<std::string>(4);
    expectCountLimit<LocationIdClient>(8);
    expectCountLimit<Fixed>(11);
    expectCountLimit<TipprmiArray<std::string, 3>>(12);
}

TEST(Containers, answerWithElementZeroWhenThereIsNoneOfThatIndex)
{
    TipprmiArray<short, 4> array = address(7, 8, 9, 10);
    TipprmiSequence<short> sequence = sequenceOf<short>({7, 8});
    for (unsigned long const index : {4UL, 96UL, 0xffffffffUL}) {
        EXPECT_EQ(&array[index], &array[0]);
        EXPECT_EQ(&std::as_const(array)[index], &array[0]);
        EXPECT_EQ(&sequence[index], &sequence[0]);
        EXPECT_EQ(&std::as_const(sequence)[index], &sequence[0]);
    }
    EXPECT_EQ(array[3], 10);
    EXPECT_EQ(&sequence[2], &sequence[0]);

    TipprmiSequence<std::string> empty;
    empty[0] = "written to nothing";
    EXPECT_EQ(empty[0], "");
    EXPECT_EQ(std::as_const(empty)[5], "");
    EXPECT_EQ(empty.getLength(), 0U);
}

TEST(Containers, areCopiedDeeplyAndSurviveAssignmentToThemselves)
{
    TipprmiArray<std::string, 2> array;
    array[1] = "one";
    TipprmiSequence<std::string> sequence = sequenceOf<std::string>({"two", "three"});
    auto const arrayCopy = array;
    auto const sequenceCopy = sequence;
    array = *&array;
    sequence = *&sequence;
    EXPECT_TRUE(array == arrayCopy && sequence == sequenceCopy);
    array[1] = sequence[0] = "changed";
    EXPECT_EQ(arrayCopy[1], "one");
    EXPECT_EQ(sequenceCopy[0], "two");
}

TEST(Any, outlivesItsSourceAndGivesOnlyAWholeValueOfItsType)
{
    for (std::size_t const length : {std::size_t{5}, std::size_t{70000}}) {
        std::string const text(length, 'x');
        auto source = std::make_unique<TipprmiAny>(text);
        TipprmiAny const copy(*source);
        TipprmiAny assigned(1L);
        assigned = *source;
        assigned = *&assigned;
        source.reset();
        for (TipprmiAny const& any : {copy, assigned}) {
            std::string received;
            EXPECT_TRUE(any.extract(received) && any.extract(received)) << "as often as wanted";
            EXPECT_EQ(received, text);
            long number = 7;
            bool flag = true;
            EXPECT_FALSE(any.extract(number) || any.extract(flag)) << "bytes left over";
            EXPECT_EQ(number, 7);
            EXPECT_TRUE(flag);
        }
    }
    std::string received = "former";
    EXPECT_FALSE(TipprmiAny().extract(received) || TipprmiAny(true).extract(received));
    EXPECT_EQ(received, "former");
}

TEST(Stream, growsFromInlineStorageToAnyLength)
{
    for (std::size_t const length :
         {std::size_t{135}, std::size_t{136}, std::size_t{137}, std::size_t{70000}, std::size_t{300000}}) {
        std::vector<unsigned char> bytes(length);
        std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(length));
        TipprmiStream stream(100);
        for (unsigned char const byte : bytes) {
            stream.marshall(&byte, 1);
        }
        TipprmiStream copy(stream);
        std::vector<unsigned char> received(length + 1);
        copy.unmarshall(received.data(), static_cast<int>(length) + 1);
        EXPECT_EQ(received, std::vector<unsigned char>(length + 1)) << "one byte too many is asked for";
        EXPECT_TRUE(copy.hasUnmarshallingFailed());
        copy.rewind();
        received.resize(length);
        copy.unmarshall(received.data(), static_cast<int>(length));
        EXPECT_EQ(received, bytes);
        EXPECT_FALSE(copy.hasUnmarshallingFailed());
    }
}

TEST(Stream, isReplacedByACopyThatIsReadFromItsStart)
{
    std::string const forms[] = {"01 02 03", repeated(200, "0A"), repeated(70000, "0B"), ""};
    for (std::string const& from : forms) {
        for (std::string const& to : forms) {
            TipprmiStream const source = [&from] {
                TipprmiStream half = streamOf(from);
                half.take(half.size() / 2);
                return half;
            }();
            TipprmiStream stream = streamOf(to);
            stream.take(stream.size() + 1);
            stream = source;
            stream = *&stream;
            EXPECT_EQ(hex(stream), from);
            EXPECT_EQ(stream.available(), source.size());
            EXPECT_FALSE(stream.hasUnmarshallingFailed());
            stream.marshall("A", 1);
            EXPECT_EQ(hex(source), from) << "the copy is one of its own";
        }
    }
}

TEST(Stream, mayDieInAnotherThreadThanItGrewIn)
{
    auto stream = std::make_unique<TipprmiStream>(streamOf(repeated(5000, "0A")));
    std::thread([&stream] {
        TipprmiStream const own = streamOf(repeated(5000, "0B"));
        stream.reset();
        EXPECT_EQ(hex(own), repeated(5000, "0B"));
    }).join();
    EXPECT_EQ(hex(streamOf(repeated(300, "0C"))), repeated(300, "0C"));
}

} // namespace
