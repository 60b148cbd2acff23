// Who is told, elsewhere, of executions of this process's objects.
#pragma once

class TipprmiStream;

namespace trs {

class Subscriber {
public:
    Subscriber(Subscriber const&) = delete;
    Subscriber& operator=(Subscriber const&) = delete;
    virtual ~Subscriber() = default;

    // Takes a whole message, without ever waiting for whoever reads it.
    virtual void send(TipprmiStream const& message) = 0;

protected:
    Subscriber() = default;
};

} // namespace trs
