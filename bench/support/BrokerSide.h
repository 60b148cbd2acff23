// The same calls through the proxies and the broker.
#pragma once

#include <functional>
#include <string>

namespace ours {

// Serves a BenchNode at `endpoint`. Does not return. With `isBusy`, connections are watched without sleeping.
void serve(std::string const& endpoint, bool isBusy);

// Makes this process a client of the server at `endpoint`.
void use(std::string const& endpoint, bool isBusy);

// Calls of one thread, each checked.
std::function<void()> numberCall();
std::function<void()> tableCall();

} // namespace ours
