#include "broker/transport/Acceptor.h"

#include "broker/machine/Thread.h"
#include "broker/transport/Transport.h"
#include "platform/NmaLogHelper.h"

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>

namespace trs {

struct Acceptor::Parts {
    asio::io_context context{1};
    std::vector<std::unique_ptr<Listener>> listeners;
    Thread thread;
};

Acceptor::Acceptor(Admit admit) : admit_(std::move(admit)) {}

Acceptor::~Acceptor() { stop(); }

std::string Acceptor::listen(Endpoint const& endpoint)
{
    return complaintOf(endpoint, [&] { return listenTo(endpoint); });
}

std::string Acceptor::listenTo(Endpoint const& endpoint)
{
    if (parts_ == nullptr) {
        parts_ = std::make_unique<Parts>();
    }
    Parts& parts = *parts_;
    auto listener = makeListener(parts.context, endpoint);
    if (std::string why = listener->open(); !why.empty()) {
        return why;
    }
    std::string const text = listener->endpoint().text();
    if (!parts.thread.isStarted()) {
        bool const isStarted = parts.thread.start([&parts] {
            auto const keepRunning = asio::make_work_guard(parts.context);
            parts.context.run();
        });
        if (!isStarted) {
            return LogMakeString("endpoint '%s' cannot be served: no thread could be started", text.c_str());
        }
    }
    asio::post(parts.context, [this, text, started = listener.get()] {
        started->start([this, text](std::unique_ptr<Channel> channel) { admit_(std::move(channel), text); });
    });
    parts.listeners.push_back(std::move(listener));
    return {};
}

std::vector<std::string> Acceptor::endpoints() const
{
    std::vector<std::string> texts;
    if (parts_ != nullptr) {
        for (std::unique_ptr<Listener> const& listener : parts_->listeners) {
            texts.push_back(listener->endpoint().text());
        }
    }
    return texts;
}

void Acceptor::after(std::chrono::nanoseconds delay, std::function<void()> act)
{
    asio::post(parts_->context, [this, delay, act = std::move(act)] {
        auto const timer = std::make_shared<asio::steady_timer>(parts_->context, delay);
        timer->async_wait([timer, act](asio::error_code ending) {
            if (!ending) {
                act();
            }
        });
    });
}

// The context stays: others may be about to have something called.
void Acceptor::stop()
{
    if (parts_ != nullptr) {
        parts_->context.stop();
        parts_->thread.join();
        parts_->listeners.clear();
    }
}

} // namespace trs
