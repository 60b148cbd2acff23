// What is decided about the calls that share a connection.
#include "broker/calls/Multiplexer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <random>

struct trs::Multiplexer::Call {
    std::size_t size = 0;
    Ticket ticket = 0;
    std::uint32_t number = 0; // the last that it went out under
    bool isExecuted = false;  // the peer has the whole message
    unsigned ends = 0;
};

namespace {

using namespace std::chrono_literals;
using trs::Multiplexer;
using Call = Multiplexer::Call;
using Why = Multiplexer::Why;
using Answers = Multiplexer::Answers;

constexpr Multiplexer::Time never = Multiplexer::Time::max();

std::vector<Call*> callsOf(std::deque<Multiplexer::Outgoing> const& outgoing)
{
    std::vector<Call*> calls;
    std::ranges::transform(outgoing, std::back_inserter(calls), &Multiplexer::Outgoing::call);
    return calls;
}

TEST(Multiplexers, GiveEachCallerItsTurn)
{
    Multiplexer decisions({.calls = 3});
    std::array<Call, 9> calls;
    for (std::size_t i = 0; i < 7; ++i) {
        decisions.add(calls[i], 10, never, 1);
    }
    decisions.add(calls[7], 10, never, 2);
    decisions.add(calls[8], 10, never, 3);
    EXPECT_TRUE(decisions.needsWay());
    EXPECT_TRUE(decisions.outgoing().empty());
    decisions.open();
    EXPECT_EQ(callsOf(decisions.outgoing()), (std::vector{&calls[0], &calls[7], &calls[8]}));
    decisions.sent(30);
    EXPECT_TRUE(decisions.outgoing().empty()) << "the window is full";
    Call* answered = nullptr;
    EXPECT_EQ(decisions.answer(3, answered), Answers::call) << "in whatever order";
    EXPECT_EQ(answered, &calls[8]);
    EXPECT_EQ(callsOf(decisions.outgoing()), (std::vector{&calls[1]}));
}

TEST(Multiplexers, SendOneLargeMessageButNotTwo)
{
    Multiplexer decisions({.bytes = 100});
    std::array<Call, 2> calls;
    decisions.open();
    decisions.add(calls[0], 200, never, 1);
    decisions.add(calls[1], 1, never, 1);
    EXPECT_EQ(callsOf(decisions.outgoing()), (std::vector{&calls[0]}));
}

TEST(Multiplexers, TellNobodysAnswersFromNonsense)
{
    Multiplexer decisions;
    std::array<Call, 3> calls;
    decisions.open();
    for (Call& call : calls) {
        call.ticket = decisions.add(call, 10, never, 1);
    }
    decisions.sent(25);
    Call* answered = nullptr;
    EXPECT_EQ(decisions.answer(1, answered), Answers::call);
    EXPECT_EQ(decisions.answer(1, answered), Answers::nobody) << "twice";
    EXPECT_EQ(decisions.answer(3, answered), Answers::nothing) << "it has not got the whole message";
    EXPECT_EQ(decisions.answer(0, answered), Answers::nothing);
    EXPECT_EQ(decisions.answer(4, answered), Answers::nothing);
    auto const cancelled = decisions.cancel(calls[1].ticket);
    ASSERT_TRUE(cancelled);
    EXPECT_TRUE(cancelled->mayBeCarriedOut);
    EXPECT_FALSE(decisions.cancel(calls[1].ticket)) << "it ends once";
    EXPECT_EQ(decisions.answer(2, answered), Answers::nobody) << "it is abandoned";
    EXPECT_EQ(answered, nullptr);
    decisions.lose();
    decisions.open();
    EXPECT_EQ(decisions.answer(2, answered), Answers::nothing) << "that was another connection's";
}

TEST(Multiplexers, FinishMessagesThatHaveBegun)
{
    Multiplexer decisions;
    std::array<Call, 2> calls;
    decisions.open();
    calls[0].ticket = decisions.add(calls[0], 10, never, 1);
    calls[1].ticket = decisions.add(calls[1], 10, never, 1);
    decisions.sent(4);
    auto const half = decisions.cancel(calls[0].ticket);
    ASSERT_TRUE(half && half->isHalfSent && half->mayBeCarriedOut);
    auto const unsent = decisions.cancel(calls[1].ticket);
    ASSERT_TRUE(unsent && !unsent->isHalfSent && !unsent->mayBeCarriedOut);
    ASSERT_EQ(decisions.outgoing().size(), 1U);
    EXPECT_EQ(decisions.outgoing().front().call, nullptr);
    EXPECT_EQ(decisions.sentOfFirst(), 4U);
    decisions.sent(6);
    EXPECT_TRUE(decisions.outgoing().empty());
    EXPECT_TRUE(decisions.isIdle());
}

TEST(Multiplexers, GiveUpAPeerThatLeavesTooManyUnanswered)
{
    Multiplexer decisions({.abandoned = 2});
    std::array<Call, 3> calls;
    decisions.open();
    for (Call& call : calls) {
        EXPECT_FALSE(decisions.isOverburdened());
        decisions.add(call, 10, Multiplexer::Time(1s), 1);
        decisions.outgoing();
        decisions.sent(10);
        ASSERT_EQ(decisions.pass(Multiplexer::Time(1s)).size(), 1U);
        EXPECT_EQ(decisions.inFlight(), 0U) << "others may go on meanwhile";
    }
    EXPECT_TRUE(decisions.isOverburdened());
    EXPECT_TRUE(decisions.lose().empty());
    EXPECT_FALSE(decisions.isOverburdened());
}

// Anything at any time, beside a peer that executes what it has got whole.
class World {
public:
    explicit World(unsigned seed) : random_(seed) {}

    void run(int steps)
    {
        for (int i = 0; i < steps; ++i) {
            step();
            check();
        }
        isOpen_ = false;
        end(decisions_.lose());
        end(decisions_.fail());
        EXPECT_TRUE(decisions_.isIdle());
        for (auto const& call : calls_) {
            EXPECT_EQ(call->ends, 1U);
        }
    }
    unsigned answered = 0;
    unsigned late = 0;
    unsigned moved = 0; // to another connection

private:
    static constexpr Multiplexer::Limits limits{.calls = 4, .bytes = 60, .abandoned = 5};

    std::size_t upTo(std::size_t most) { return std::uniform_int_distribution<std::size_t>(0, most)(random_); }

    void step()
    {
        switch (upTo(9)) {
        case 0:
        case 1:
        case 2:
            add();
            break;
        case 3:
            if (!calls_.empty()) {
                if (auto const ended = decisions_.cancel(calls_[upTo(calls_.size() - 1)]->ticket)) {
                    EXPECT_EQ(ended->why, Why::cancelled);
                    end({*ended});
                }
            }
            break;
        case 4:
            now_ += std::chrono::milliseconds(upTo(5));
            end(decisions_.pass(now_));
            break;
        case 5:
            if (!isOpen_) {
                isOpen_ = upTo(3) != 0;
                isOpen_ ? decisions_.open() : end(decisions_.fail());
            } else if (decisions_.isOverburdened() || upTo(9) == 0) {
                isOpen_ = false;
                had_.clear();
                partOfFirst_ = 0;
                end(decisions_.lose());
            }
            break;
        case 6:
        case 7:
            send();
            break;
        default:
            answer();
        }
    }
    void add()
    {
        Call& call = *calls_.emplace_back(std::make_unique<Call>());
        call.size = 12 + upTo(30);
        call.ticket = decisions_.add(call, call.size, now_ + std::chrono::milliseconds(upTo(20)), upTo(2));
    }
    void send()
    {
        auto const& outgoing = decisions_.outgoing();
        if (outgoing.empty()) {
            return;
        }
        Multiplexer::Outgoing const first = outgoing.front();
        if (decisions_.sentOfFirst() == 0) {
            ASSERT_NE(first.call, nullptr);
            EXPECT_EQ(first.call->number, first.number);
            partOfFirst_ = 0;
            first_ = first.call;
        }
        ASSERT_EQ(decisions_.sentOfFirst(), partOfFirst_);
        std::size_t const count = 1 + upTo(first_->size - partOfFirst_ - 1);
        partOfFirst_ += count;
        if (partOfFirst_ == first_->size) {
            partOfFirst_ = 0;
            first_->isExecuted = true;
            had_.push_back(first_);
        }
        decisions_.sent(count);
    }
    void answer()
    {
        if (had_.empty()) {
            return;
        }
        auto const place = had_.begin() + static_cast<std::ptrdiff_t>(upTo(had_.size() - 1));
        Call* const asked = *place;
        had_.erase(place);
        Call* call = nullptr;
        bool const isWaitedFor = asked->ends == 0;
        EXPECT_EQ(decisions_.answer(asked->number, call), isWaitedFor ? Answers::call : Answers::nobody);
        EXPECT_EQ(call, isWaitedFor ? asked : nullptr);
        asked->ends += isWaitedFor ? 1 : 0;
        (isWaitedFor ? answered : late) += 1;
        if (upTo(4) == 0) {
            EXPECT_EQ(decisions_.answer(asked->number, call), Answers::nobody) << "a second time";
        }
    }
    void end(Multiplexer::AllEnded const& all)
    {
        for (auto const& ended : all) {
            ++ended.call->ends;
            if (!ended.mayBeCarriedOut) {
                EXPECT_FALSE(ended.call->isExecuted);
            }
            EXPECT_EQ(ended.isHalfSent, isOpen_ && ended.call == first_ && partOfFirst_ != 0);
        }
    }
    void check()
    {
        auto const& outgoing = decisions_.outgoing();
        EXPECT_TRUE(isOpen_ || outgoing.empty());
        for (Multiplexer::Outgoing const& each : outgoing) {
            if (each.call != nullptr && each.call->number != each.number) {
                EXPECT_FALSE(each.call->isExecuted);
                moved += each.call->number != 0 ? 1 : 0;
                each.call->number = each.number;
            }
        }
        EXPECT_LE(decisions_.inFlight(), limits.calls);
        EXPECT_EQ(decisions_.needsWay(),
                  !isOpen_ && std::ranges::any_of(calls_, [](auto const& call) { return call->ends == 0; }));
        bool const isWaiting = std::ranges::any_of(calls_, [](auto const& call) { return call->ends == 0; });
        EXPECT_EQ(decisions_.isIdle(), !isWaiting);
        for (auto const& call : calls_) {
            EXPECT_LE(call->ends, 1U);
        }
    }

    std::mt19937 random_;
    Multiplexer decisions_{limits};
    Multiplexer::Time now_{1s};
    bool isOpen_ = false;
    std::vector<std::unique_ptr<Call>> calls_;
    std::vector<Call*> had_; // by the peer
    Call* first_ = nullptr;
    std::size_t partOfFirst_ = 0;
};

TEST(Multiplexers, EndEachCallOnceWhateverHappens)
{
    unsigned answered = 0;
    unsigned late = 0;
    unsigned moved = 0;
    for (unsigned seed = 1; seed <= 400; ++seed) {
        SCOPED_TRACE(seed);
        World world(seed);
        world.run(150);
        answered += world.answered;
        late += world.late;
        moved += world.moved;
        if (testing::Test::HasFailure()) {
            break;
        }
    }
    EXPECT_GT(answered, 1000U);
    EXPECT_GT(late, 100U) << "the rare ways were taken";
    EXPECT_GT(moved, 50U);
}

} // namespace
