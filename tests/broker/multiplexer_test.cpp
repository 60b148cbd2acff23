// What is decided about the calls that share a connection.
#include "broker/calls/CallLink.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <random>

namespace {

using namespace std::chrono_literals;
using trs::Multiplexer;
using Why = Multiplexer::Why;
using Answers = Multiplexer::Answers;

struct Asked final : Multiplexer::Call {
    void takeAnswer(trs::MessageHeader const&, TipprmiStream&) override {}
    void fail(trs::CallFailure::Kind, trs::CallFailure::CarriedOut, std::string) override {}

    std::size_t size = 0;
    Multiplexer::Ticket ticket = 0;
    bool isExecuted = false; // the peer has the whole message
    unsigned ends = 0;
};

Asked& own(Multiplexer::Call* call) { return static_cast<Asked&>(*call); }

constexpr Multiplexer::Time never = Multiplexer::Time::max();

std::vector<Asked*> callsOf(std::deque<Multiplexer::Outgoing> const& outgoing)
{
    std::vector<Asked*> calls;
    std::ranges::transform(outgoing, std::back_inserter(calls),
                           [](auto const& each) { return static_cast<Asked*>(each.call); });
    return calls;
}

TEST(Multiplexers, GiveEachCallerItsTurn)
{
    Multiplexer decisions({.calls = 3});
    std::array<Asked, 9> calls;
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
    Multiplexer::Call* answered = nullptr;
    EXPECT_EQ(decisions.answer(3, answered), Answers::call) << "in whatever order";
    EXPECT_EQ(answered, &calls[8]);
    EXPECT_EQ(callsOf(decisions.outgoing()), (std::vector{&calls[1]}));
}

TEST(Multiplexers, SendOneLargeMessageButNotTwo)
{
    Multiplexer decisions({.bytes = 100});
    std::array<Asked, 2> calls;
    decisions.open();
    decisions.add(calls[0], 200, never, 1);
    decisions.add(calls[1], 1, never, 1);
    EXPECT_EQ(callsOf(decisions.outgoing()), (std::vector{&calls[0]}));
}

TEST(Multiplexers, TellNobodysAnswersFromNonsense)
{
    Multiplexer decisions;
    std::array<Asked, 3> calls;
    decisions.open();
    for (Asked& call : calls) {
        call.ticket = decisions.add(call, 10, never, 1);
    }
    decisions.sent(25);
    Multiplexer::Call* answered = nullptr;
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

TEST(Multiplexers, LeaveTheNumbersAloneThatAreInUseWhenTheyBeginAnew)
{
    Multiplexer decisions({.numbers = 4});
    std::array<Asked, 6> calls;
    Multiplexer::Call* answered = nullptr;
    auto const numberOf = [&decisions](Asked& call) {
        call.ticket = decisions.add(call, 10, never, 1);
        std::uint32_t const number = decisions.outgoing().front().number;
        decisions.sent(10);
        return number;
    };
    decisions.open();
    EXPECT_EQ(numberOf(calls[0]), 1U);
    EXPECT_TRUE(decisions.cancel(calls[0].ticket)) << "it is not answered, and keeps its number";
    EXPECT_EQ(numberOf(calls[1]), 2U);
    EXPECT_EQ(numberOf(calls[2]), 3U);
    EXPECT_EQ(decisions.answer(2, answered), Answers::call);
    EXPECT_EQ(numberOf(calls[3]), 4U);
    EXPECT_EQ(numberOf(calls[4]), 2U);
    EXPECT_EQ(decisions.answer(1, answered), Answers::nobody);
    EXPECT_EQ(decisions.answer(2, answered), Answers::call);
    EXPECT_EQ(answered, &calls[4]);
    EXPECT_EQ(decisions.answer(1, answered), Answers::nobody) << "all numbers were asked once";
    EXPECT_EQ(decisions.answer(5, answered), Answers::nothing);
    EXPECT_EQ(numberOf(calls[5]), 1U) << "3 and 4 are in use";
}

TEST(Multiplexers, FinishMessagesThatHaveBegun)
{
    Multiplexer decisions;
    std::array<Asked, 2> calls;
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
    std::array<Asked, 3> calls;
    decisions.open();
    for (Asked& call : calls) {
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
        Asked& call = *calls_.emplace_back(std::make_unique<Asked>());
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
            first_ = &own(first.call);
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
        Asked* const asked = *place;
        had_.erase(place);
        Multiplexer::Call* call = nullptr;
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
            ++own(ended.call).ends;
            if (!ended.mayBeCarriedOut) {
                EXPECT_FALSE(own(ended.call).isExecuted);
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
                EXPECT_FALSE(own(each.call).isExecuted);
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
    std::vector<std::unique_ptr<Asked>> calls_;
    std::vector<Asked*> had_; // by the peer
    Asked* first_ = nullptr;
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
