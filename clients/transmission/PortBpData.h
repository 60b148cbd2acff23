// PortBpData: a port's backplane data, as TransmissionIfClient tells it and TransmissionUnitClient takes it to name the
// port of a UTOPIA address.
#pragma once

#include "rmi/Record.h"

// The server decides what the nine values mean; the names follow position.
struct PortBpData {
    unsigned char value1;
    unsigned char value2;
    unsigned char value3;
    long value4;
    unsigned long value5;
    unsigned long value6;
    unsigned long value7;
    unsigned long value8;
    unsigned long value9;
};

template <>
struct RecordFields<PortBpData>
    : Fields<&PortBpData::value1, &PortBpData::value2, &PortBpData::value3, &PortBpData::value4, &PortBpData::value5,
             &PortBpData::value6, &PortBpData::value7, &PortBpData::value8, &PortBpData::value9> {};
