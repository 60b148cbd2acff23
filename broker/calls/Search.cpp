#include "broker/calls/Search.h"

#include "broker/calls/Peer.h"

#include <algorithm>
#include <utility>

namespace trs {

Search::Question::Question(std::shared_ptr<Search> asking, Peer& asked, TipprmiOID const& oid,
                           std::chrono::milliseconds limit)
    : search(std::move(asking)), peer(asked)
{
    beginAddressed(message, MessageKind::locate, 0, oid, 0, 0);
    answerKind = MessageKind::locateReply;
    time = limit;
}

void Search::Question::takeAnswer(MessageHeader const& header, TipprmiStream&)
{
    answer = header.status() == ReplyStatus::done ? Answer::there : Answer::notThere;
    auto const keeper = std::exchange(search, nullptr);
    keeper->decide();
}

void Search::Question::fail(CallFailure::Kind, CallFailure::CarriedOut, std::string)
{
    answer = Answer::unreachable;
    auto const keeper = std::exchange(search, nullptr);
    keeper->decide();
}

void Search::start(std::vector<Peer*> const& peers, TipprmiOID const& oid, std::chrono::milliseconds time, Found found)
{
    std::shared_ptr<Search> const search(new Search(std::move(found)));
    for (Peer* const peer : peers) {
        search->questions_.emplace_back(search, *peer, oid, std::max(time / 2, std::chrono::milliseconds(1)));
    }
    for (Question& question : search->questions_) {
        question.peer.calls().post(question);
    }
}

void Search::decide()
{
    if (!found_) {
        return;
    }
    bool isSomeoneSilent = false;
    for (Question const& question : questions_) {
        switch (question.answer) {
        case Question::Answer::none:
            return; // what it says counts more than what the others do
        case Question::Answer::there:
            std::exchange(found_, {})(&question.peer, CallFailure::Kind::none, "");
            return;
        case Question::Answer::unreachable:
            isSomeoneSilent = true;
            break;
        case Question::Answer::notThere:
            break;
        }
    }
    std::exchange(found_, {})(nullptr,
                              isSomeoneSilent ? CallFailure::Kind::notConnected : CallFailure::Kind::noSuchObject,
                              isSomeoneSilent ? "no peer that answers has the object" : "no peer has the object");
}

} // namespace trs
