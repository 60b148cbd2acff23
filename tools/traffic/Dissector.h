// The catalogue for packet analysers.
#pragma once

namespace trs::traffic {

// Writes a dissector in Lua, as Wireshark and tshark load it, to standard output. It reads captures of `trsctl capture`
// and connections by TCP.
void writeDissector();

} // namespace trs::traffic
