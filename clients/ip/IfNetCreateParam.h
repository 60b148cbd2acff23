// IfNetCreateParam: the settings that an IP interface of any kind is created with.
#pragma once

#include "rmi/Record.h"

// Named after the operations of IfNetClient. Proxies only send it; which of the two discard switches is which, the
// server decides.
struct IfNetCreateParam {
    long mtu;             // as IfNetClient::setMtu()
    unsigned short flags; // IfNetClient::IFF__ bits
    bool discardPrivate;
    bool discardPublic;
};

template <>
struct RecordFields<IfNetCreateParam> : Fields<&IfNetCreateParam::mtu, &IfNetCreateParam::flags,
                                               &IfNetCreateParam::discardPrivate, &IfNetCreateParam::discardPublic> {};

template <>
inline constexpr bool isSentOnly<IfNetCreateParam> = true;
