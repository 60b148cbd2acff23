// Time: how NtpAccessClient tells the time zone.
#pragma once

#include "rmi/Record.h"

// The server decides what the seven values mean; the names follow position.
struct Time {
    short value1;
    short value2;
    short value3;
    short value4;
    short value5;
    short value6;
    short value7;
};

template <>
struct RecordFields<Time>
    : Fields<&Time::value1, &Time::value2, &Time::value3, &Time::value4, &Time::value5, &Time::value6, &Time::value7> {
};
