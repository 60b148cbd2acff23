// What the adapter counts, for Prometheus.
#pragma once

#include "tools/trsadapter/Identity.h"

#include <chrono>
#include <memory>
#include <string>

namespace trs::adapter {

// May be used from any thread. docs/adapter.md has the names.
class Metrics {
public:
    Metrics();
    Metrics(Metrics const&) = delete;
    Metrics& operator=(Metrics const&) = delete;
    ~Metrics();

    // A message was answered. Kind and result are words of the vocabulary.
    void countMessage(std::string const& kind, std::string const& result, std::chrono::duration<double> time);
    // An alarm; `failure` is a word for why it was not accepted, empty when it was.
    void countAlarm(std::string const& failure);
    // A response of HTTP, of whatever request.
    void countResponse(int status);

    // What holds at the moment of asking.
    struct State {
        bool hasSession;
        bool isUnitReached;
        bool isLogOpen;
        UnitIdentity unit;
    };
    // All of it in the text format of Prometheus, version 0.0.4.
    std::string text(State const& state);

private:
    struct Families;
    std::unique_ptr<Families> families_;
};

} // namespace trs::adapter
