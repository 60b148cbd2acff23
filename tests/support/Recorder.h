// An object that answers every call with bytes of the test's choice and keeps what it was sent.
#pragma once

#include "platform/TipprmiObjectSkeleton.h"
#include "tests/support/Bytes.h"

#include <ostream>
#include <string>
#include <vector>

class Recorder : public TipprmiObjectSkeleton {
public:
    struct Call {
        unsigned long classId;
        unsigned long index;
        std::string request;
        friend bool operator==(Call const&, Call const&) = default;
        friend void PrintTo(Call const& call, std::ostream* out)
        {
            *out << std::hex << call.classId << '/' << std::dec << call.index << " [" << call.request << ']';
        }
    };

    std::vector<Call> calls;
    std::string reply;

    bool dispatch(bool flag, unsigned long classId, unsigned long opIndex, TipprmiStream& request,
                  TipprmiStream& answer) override
    {
        std::size_t const length = request.available();
        calls.push_back({classId, opIndex, hex(request.take(length), length)});
        TipprmiStream const bytes = streamOf(reply);
        answer.marshall(bytes.data(), static_cast<int>(bytes.size()));
        return flag;
    }
};
