#include "broker/serving/TappedExchange.h"

#include "broker/serving/Request.h"

namespace trs {

namespace {

// For which an answer waits while another one goes out in parts.
constexpr std::chrono::milliseconds turnTime{2};

} // namespace

TappedExchange::TappedExchange(Host& host, MessageHeader const& header, TipprmiStream const& request)
    : host_(host), header_(header), request_(request)
{
    request_.rewind(messageHeaderSize);
    beginMessage(reply_, MessageKind::reply);
}

bool TappedExchange::begin(ServerTap& tap)
{
    if (!readAddress(request_, address_)) {
        return false;
    }
    call_ = tap.begin(address_, request_);
    return true;
}

bool TappedExchange::hasToWait()
{
    if (hasWaited_) {
        hasWaited_ = false;
        return false;
    }
    std::chrono::milliseconds const time = call_->delay();
    if (time.count() <= 0 || host_.isInAHurry()) {
        return false;
    }
    hasWaited_ = true;
    waitFor(time);
    return true;
}

// Somebody else has it when this returns.
void TappedExchange::waitFor(std::chrono::milliseconds time)
{
    if (kept_ == nullptr) {
        number_ = host_.poller().add(shared_from_this());
        kept_ = host_.keep(shared_from_this());
    }
    std::shared_ptr<Host> const kept = kept_;
    Poller::Number const number = number_;
    isWaiting_ = true;
    kept->poller().setTimer(number, Poller::Clock::now() + time);
    if (kept->isInAHurry()) {
        kept->poller().tell(number);
    }
}

void TappedExchange::ready(Poller::Events)
{
    if (isWaiting_.exchange(false) && !host_.workers().submit(shared_from_this())) {
        refuse();
    }
}

void TappedExchange::refuse()
{
    if (!isExecuted_) {
        finish(ReplyStatus::busy);
    }
    hasWaited_ = true;
    goOn();
}

bool TappedExchange::goOn()
{
    if (!isExecuted_) {
        if (hasToWait()) {
            return true;
        }
        execute();
    }
    for (;;) {
        if (hasToWait()) {
            return true;
        }
        if (!host_.outlet().beginTurn(this)) {
            hasWaited_ = true;
            waitFor(turnTime);
            return true;
        }
        if (!sendAnswer()) {
            host_.outlet().abandon(); // perhaps in the middle of the answer
            return end(false);
        }
        if (call_->isAnswered()) {
            return end(true);
        }
    }
}

void TappedExchange::execute()
{
    ReplyStatus status = ReplyStatus::done;
    if (call_->isExecuted(reply_, status)) {
        UntappedCalls const byTheObject;
        TreflectStubRef stub = StubTable::unbound();
        status = executeRequest(stub, header_.detail != 0, address_, request_, reply_);
    }
    finish(status);
}

void TappedExchange::finish(ReplyStatus status)
{
    isExecuted_ = true;
    Tally tally;
    tally.count(finishReply(reply_, status, header_.number));
    tally.countOut(reply_.size());
    host_.total().add(tally);
}

bool TappedExchange::sendAnswer()
{
    return call_->answer(reply_, [this](unsigned char const* bytes, std::size_t length) {
        return host_.outlet().sendPart(bytes, length);
    });
}

bool TappedExchange::end(bool isAnswered)
{
    host_.outlet().endTurn();
    if (std::shared_ptr<Host> const kept = std::move(kept_)) {
        kept->poller().remove(number_);
        kept->release(*this);
    }
    return isAnswered;
}

} // namespace trs
