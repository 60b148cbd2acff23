// The framework's string encoding: the number of bytes (4 bytes) and the bytes, without terminator.
#pragma once

#include <string>

class TipprmiStream;

TipprmiStream& operator<<(TipprmiStream& stream, std::string const& value);
// A failed read leaves the string as it was.
TipprmiStream& operator>>(TipprmiStream& stream, std::string& value);
