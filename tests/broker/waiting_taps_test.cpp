// Taps that have calls wait, and what goes on meanwhile.
#include "broker/ServerTap.h"
#include "broker/framework/QelOperations.h"
#include "broker/serving/Server.h"
#include "rmi/Servant.h"
#include "tests/support/Requests.h"

#include <algorithm>
#include <atomic>

namespace {

using std::chrono::milliseconds;
using support::answered;
using support::connectTo;
using support::Descriptor;
using support::isDone;
using support::numberedSetting;
using support::Octets;
using support::operator+;

// Has calls wait by the value that they set: 1 before it, 2 after it, 3 between the bytes of the answer.
class WaitingTap final : public trs::ServerTap {
public:
    static constexpr long answersSlowly = 3;

    std::unique_ptr<trs::TappedCall> begin(trs::ObjectAddress const&, TipprmiStream const& request) override
    {
        TipprmiStream arguments = request;
        arguments.rewind(request.size() - 4);
        long value = 0;
        for (int octet = 0; octet < 4; ++octet) {
            value = value << 8 | *arguments.take(1);
        }
        ++begun;
        begun.notify_all();
        return std::make_unique<Call>(value, time);
    }

    std::atomic<milliseconds> time{milliseconds(30)};
    std::atomic<unsigned> begun = 0;

private:
    class Call final : public trs::TappedCall {
    public:
        Call(long value, milliseconds time) : value_(value), time_(time) {}
        milliseconds delay() override
        {
            long const step = ++asked_;
            bool const waits = value_ == step || (value_ == answersSlowly && step > 2);
            return waits ? time_ : milliseconds();
        }
        bool isExecuted(TipprmiStream&, trs::ReplyStatus&) override { return true; }
        bool answer(TipprmiStream const& reply, Send const& send) override
        {
            std::size_t const count =
                value_ == answersSlowly ? std::min<std::size_t>(6, reply.size() - sent_) : reply.size();
            bool const isSent = send(reply.data() + sent_, count);
            sent_ += count;
            isWhole_ = sent_ == reply.size();
            return isSent;
        }
        bool isAnswered() override { return isWhole_; }

    private:
        long const value_;
        milliseconds const time_;
        long asked_ = 0;
        std::size_t sent_ = 0;
        bool isWhole_ = false;
    };
};

class WaitingTaps : public support::BrokerTest {
protected:
    WaitingTaps()
    {
        service.on<&QelLongClient::set>([this](long const& value) {
            last = value;
            return true;
        });
        trs::Endpoint endpoint;
        EXPECT_EQ(trs::Endpoint::parse("unix:" + path, endpoint), "");
        EXPECT_EQ(server->listen(endpoint), "");
    }
    ~WaitingTaps() override { server.reset(); }

    Servant service{"S"};
    std::atomic<long> last = 0;
    WaitingTap tap;
    std::unique_ptr<trs::Server> server = std::make_unique<trs::Server>(
        &tap, 100, trs::TimeAndChance(), trs::Workers::Limits{.executing = 1, .threads = 1, .staying = 0});
};

TEST_F(WaitingTaps, HoldNoThreadAndNoOtherRequest)
{
    Descriptor const client = connectTo(path);
    tap.time = milliseconds(100);
    client.write(numberedSetting(1, 1) + numberedSetting(2, 2) + numberedSetting(3, 9));
    EXPECT_EQ(client.readMessage(), answered(3)) << "which waits for nothing";
    Descriptor const other = connectTo(path);
    other.write(numberedSetting(1, 8));
    EXPECT_EQ(other.readMessage(), answered(1));
    Octets const two = client.readMessage() + client.readMessage();
    EXPECT_TRUE(two == answered(1) + answered(2) || two == answered(2) + answered(1));
    EXPECT_EQ(last, 1) << "it was executed late";
}

TEST_F(WaitingTaps, SendAnAnswerInPiecesThatNothingComesBetween)
{
    Descriptor const client = connectTo(path);
    client.write(numberedSetting(1, 3) + numberedSetting(2, 9) + numberedSetting(3, 3) + numberedSetting(4, 9));
    std::vector<unsigned> numbers;
    for (int each = 0; each < 4; ++each) {
        Octets const answer = client.readMessage();
        ASSERT_EQ(answer.size(), isDone.size());
        EXPECT_EQ(answer, answered(answer[11]));
        numbers.push_back(answer[11]);
    }
    EXPECT_EQ(numbers.front(), 1U) << "it had begun";
    std::sort(numbers.begin(), numbers.end());
    EXPECT_EQ(numbers, (std::vector<unsigned>{1, 2, 3, 4}));
}

TEST_F(WaitingTaps, WaitNoLongerWhenServingEnds)
{
    tap.time = std::chrono::hours(1);
    Descriptor const late = connectTo(path);
    late.write(numberedSetting(1, 1));
    Descriptor const later = connectTo(path);
    later.write(numberedSetting(2, 2));
    Descriptor const slow = connectTo(path);
    slow.write(numberedSetting(3, 3));
    EXPECT_EQ(slow.read(6).size(), 6U); // so all are under way
    server.reset();
    EXPECT_EQ(late.readMessage(), answered(1));
    EXPECT_EQ(later.readMessage(), answered(2));
    EXPECT_EQ(slow.read(100).size(), isDone.size() - 6);
}

TEST_F(WaitingTaps, AreBoundedInWhatTheyKeepWaiting)
{
    tap.time = std::chrono::hours(1);
    Descriptor const client = connectTo(path);
    Octets requests;
    for (unsigned char each = 0; each < 100; ++each) {
        requests = requests + numberedSetting(each, 1);
    }
    client.write(requests);
    for (unsigned begun = tap.begun; begun < 64; begun = tap.begun) {
        tap.begun.wait(begun);
    }
    Descriptor const other = connectTo(path);
    other.write(numberedSetting(1, 8));
    EXPECT_EQ(other.readMessage(), answered(1));
    server.reset();
    std::size_t answers = 0;
    while (!client.readMessage().empty()) {
        ++answers;
    }
    EXPECT_EQ(answers, 64U);
}

TEST_F(WaitingTaps, LetAClientGo)
{
    tap.time = milliseconds(20);
    {
        Descriptor const client = connectTo(path);
        client.write(numberedSetting(1, 1));
    }
    auto const end = std::chrono::steady_clock::now() + support::patience;
    while (last != 1 || server->counters().connections != 0) {
        ASSERT_LT(std::chrono::steady_clock::now(), end) << "what was asked for is done, and its connection ends";
        std::this_thread::yield();
    }
}

} // namespace
