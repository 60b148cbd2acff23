#include "broker/NotificationGap.h"

#include "broker/objects/RunPermission.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace trs {

// Who listens, and who is being told. Only one thread tells at a time.
class GapListeners {
public:
    // Never destroyed: listeners with static storage go to the end.
    static GapListeners& instance()
    {
        static GapListeners& listeners = *new GapListeners;
        return listeners;
    }

    void add(GapListener& listener)
    {
        std::lock_guard const lock(mutex_);
        listeners_.push_back(&listener);
    }
    void remove(GapListener& listener)
    {
        RunPermissionPause const waiting;
        std::unique_lock lock(mutex_);
        std::erase(listeners_, &listener);
        bool const isTeller = told_ != nullptr && teller_ == std::this_thread::get_id();
        changed_.wait(lock, [&] { return told_ != &listener || isTeller; });
    }
    // The listener counts as being told from before the thread asks for the run permission, so that whoever removes it
    // while the thread waits for that waits for the thread.
    void tell(NotificationGap const& gap)
    {
        std::unique_lock lock(mutex_);
        if (isTelling_) {
            lock.unlock();
            HandlerWait const waiting;
            lock.lock();
            changed_.wait(lock, [this] { return !isTelling_; });
        }
        isTelling_ = true;
        teller_ = std::this_thread::get_id();
        std::vector<GapListener*> const all = listeners_;
        for (GapListener* const listener : all) {
            if (std::ranges::find(listeners_, listener) == listeners_.end()) {
                continue; // gone meanwhile
            }
            told_ = listener;
            GapListener::Tell const tell = listener->tell_; // it may go while it runs
            lock.unlock();
            {
                RunPermissionScope const running;
                tell(gap);
            }
            lock.lock();
            told_ = nullptr;
            changed_.notify_all();
        }
        isTelling_ = false;
        changed_.notify_all();
    }

private:
    GapListeners() = default;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<GapListener*> listeners_;
    bool isTelling_ = false;
    std::thread::id teller_;
    GapListener const* told_ = nullptr;
};

GapListener::GapListener(Tell tell) : tell_(std::move(tell)) { GapListeners::instance().add(*this); }

GapListener::~GapListener() { GapListeners::instance().remove(*this); }

void tellGap(NotificationGap const& gap) { GapListeners::instance().tell(gap); }

} // namespace trs
