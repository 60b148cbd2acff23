// What an operation does to its object, and which operations are about the same thing: by their names and types, as the
// catalogue has them.
#pragma once

#include "catalogue/Class.h"

#include <string>
#include <string_view>
#include <vector>

namespace trs::catalogue {

enum class OperationKind {
    read,    // tells, and changes nothing
    write,   // sets what it is named after
    execute, // whatever else it does
};

// getX, isX, hasX and a few more read, unless they answer with the status of setting ones, as isSupportedBy() does,
// which tells the object and does not ask it. setX, updateX and internalSetX write.
OperationKind kindOf(Operation const& operation);

// Reads, takes nothing, and tells something: what can be read of an object by knowing no more than its class.
bool isPlainRead(Operation const& operation);

// What an operation reads or writes, as its name has it: "Mtu" of getMtu and setMtu. Empty for all others, and for
// those that say nothing of it, such as toString.
std::string_view subjectOf(Operation const& operation);

// The same as a person writes it: "mtu", and "lmpIfNet" of getLMPIfNet.
std::string briefNameOf(Operation const& operation);

// The operation that a person means: one of the kind that has that name or that subject, the latter in whatever case
// letters are, getX before isX before hasX, a class's own before its base's; else one of that name and another kind, or
// the only one of that name in another case. Null when there is none.
Operation const* find(Class const& type, std::string_view name, OperationKind kind);

// The types that an operation takes or tells, in order; a status is not told.
std::vector<Type const*> typesOf(Operation const& operation, bool isIn);

// The operation of the class that reads what `writer` sets: it tells what the writer takes, or what is left of that
// behind arguments that both take. Null when there is none.
Operation const* readerOf(Class const& type, Operation const& writer);
// The other way round.
Operation const* writerOf(Class const& type, Operation const& reader);

} // namespace trs::catalogue
