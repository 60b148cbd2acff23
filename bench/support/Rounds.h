// Two sides of a comparison, measured in rounds that take turns.
#pragma once

#include "bench/support/Processes.h"

#include <functional>

namespace bench {

struct Effort {
    int rounds = 15;
    double seconds = 0.2; // of one round
};

// What one calling thread does over and over, made in that thread.
using Call = std::function<void()>;
using Open = std::function<Call()>;

// The limit or ours: a server and how it is called.
struct Side {
    ServerProcess const& server;
    Open open;
    long calls = 0;
    double best = 1; // seconds per call, all threads together

    void runRound(int threads, double seconds);
};

// Runs the rounds of both, which may have one server; it is paused before and after each round.
void takeTurns(Side& limit, Side& ours, int threads, Effort const& effort);

} // namespace bench
