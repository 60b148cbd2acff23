// Which of several peers has an object.
#pragma once

#include "broker/calls/CallLink.h"

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

namespace trs {

// Asks all at once; of those that say they have it the first one counts, in the order that they are given in. One that
// does not answer within half of the time counts as one that cannot be reached.
class Search : public std::enable_shared_from_this<Search> {
public:
    // Null and why: when somebody could not be reached, notConnected.
    using Found = std::function<void(Peer* peer, CallFailure::Kind kind, char const* reason)>;

    // From any thread; `found` is called on the engine's, once.
    static void start(std::vector<Peer*> const& peers, TipprmiOID const& oid, std::chrono::milliseconds time,
                      Found found);

private:
    struct Question final : Multiplexer::Call {
        Question(std::shared_ptr<Search> asking, Peer& asked, TipprmiOID const& oid, std::chrono::milliseconds limit);
        void takeAnswer(MessageHeader const& header, TipprmiStream& answer) override;
        void fail(CallFailure::Kind kind, CallFailure::CarriedOut carriedOut, std::string reason) override;

        enum class Answer { none, there, notThere, unreachable };
        std::shared_ptr<Search> search;
        Peer& peer;
        Answer answer = Answer::none;
    };

    explicit Search(Found found) : found_(std::move(found)) {}
    void decide();

    std::deque<Question> questions_;
    Found found_; // empty once it was called
};

} // namespace trs
