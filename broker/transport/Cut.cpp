#include "broker/transport/Cut.h"

#include <algorithm>

namespace trs {

Cut::Member::Member(Cut& cut, Channel& channel)
    : cut_(cut), place_([&] {
          std::lock_guard const lock(cut.mutex_);
          if (cut.isCut_) {
              channel.shutDown();
          }
          return cut.channels_.insert(cut.channels_.end(), &channel);
      }())
{
}

Cut::Member::~Member()
{
    std::lock_guard const lock(cut_.mutex_);
    cut_.channels_.erase(place_);
}

void Cut::cut()
{
    std::lock_guard const lock(mutex_);
    isCut_ = true;
    std::ranges::for_each(channels_, [](Channel* channel) { channel->shutDown(); });
}

} // namespace trs
