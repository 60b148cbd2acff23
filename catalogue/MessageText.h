// What the messages between brokers say, in the words of the catalogue.
#pragma once

#include "broker/framing/Message.h"
#include "catalogue/Class.h"
#include "catalogue/Value.h"
#include "rmi/TipprmiAny.h"
#include "rmi/TipprmiSequence.h"

#include <string>

namespace trs::catalogue {

char const* nameOf(MessageKind kind);
char const* nameOf(ReplyStatus status);

// The operation of that class and index; null when the catalogue has none.
Operation const* operationOf(ObjectAddress const& address);
// "IfNetClient.getMtu", or "0xb86aeff7.12" of an operation that the catalogue has not.
std::string operationNameOf(ObjectAddress const& address);

// The in-arguments, or the out-arguments, by name. The stream is at the first of them.
Value argumentsOf(Operation const& operation, bool areIn, TipprmiStream& stream);

// What observers of an execution are told, by name: "result" and all parameters. A list that is shorter than the
// operation's has the first ones, or none: the object's code did not tell.
Value unpackParameters(Operation const& operation, TipprmiSequence<TipprmiAny> const& told);

// Adds what a reply says: "status", and "results" of a call that was done. The stream is behind the header; the
// operation is null when it is not known.
void addReply(Value& told, MessageHeader const& header, Operation const* operation, TipprmiStream& stream);

} // namespace trs::catalogue
