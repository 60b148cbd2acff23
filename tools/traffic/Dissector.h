// The catalogue for packet analysers.
#pragma once

#include <string>

namespace trs::traffic {

// A dissector in Lua, as Wireshark and tshark load it. It reads captures of `trsctl capture` and connections by TCP.
std::string dissector();

} // namespace trs::traffic
