// A request on its way through a tap, and its answer.
#pragma once

#include "broker/ServerTap.h"
#include "broker/objects/Workers.h"
#include "broker/serving/Outlet.h"
#include "broker/serving/Tally.h"
#include "broker/transport/Poller.h"

#include <atomic>
#include <chrono>
#include <memory>

namespace trs {

// Goes on until the tap has it wait. Then it has left the thread, waits in the poller, and goes on with a worker; its
// connection's next requests are answered meanwhile.
class TappedExchange final : public Poller::Watcher,
                             public Workers::Task,
                             public std::enable_shared_from_this<TappedExchange> {
public:
    // What it needs of its connection.
    class Host {
    public:
        // It waits for the first time: the host keeps it, and itself, until it is done. On the thread that serves the
        // connection.
        virtual std::shared_ptr<Host> keep(std::shared_ptr<TappedExchange> exchange) = 0;
        virtual void release(TappedExchange& exchange) = 0;
        // Nobody waits any more: serving ends.
        virtual bool isInAHurry() const = 0;
        virtual Poller& poller() = 0;
        virtual Workers& workers() = 0;
        virtual Total& total() = 0;
        virtual Outlet& outlet() = 0;

    protected:
        Host() = default;
        ~Host() = default;
    };

    // `request` is at the address, and is copied.
    TappedExchange(Host& host, MessageHeader const& header, TipprmiStream const& request);

    // Whether the request is well-formed. If so, it has passed the tap.
    bool begin(ServerTap& tap);
    // False when the connection is of no use any more.
    bool goOn();
    // Its time has come, whatever it waits for.
    void hurry() { host_.poller().tell(number_); }

    void ready(Poller::Events events) override;
    void run() override { goOn(); }
    void refuse() override;

private:
    bool hasToWait();
    void waitFor(std::chrono::milliseconds time);
    void execute();
    void finish(ReplyStatus status);
    bool sendAnswer();
    bool end(bool isAnswered);

    Host& host_;
    std::shared_ptr<Host> kept_;
    MessageHeader const header_;
    TipprmiStream request_;
    TipprmiStream reply_{100};
    ObjectAddress address_{};
    std::unique_ptr<TappedCall> call_;
    bool isExecuted_ = false;
    bool hasWaited_ = false; // for what comes next
    std::atomic<bool> isWaiting_ = false;
    Poller::Number number_ = 0;
};

} // namespace trs
