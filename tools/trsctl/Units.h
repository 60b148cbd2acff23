// Units that have names, and labels by which several are chosen.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace trs::ctl {

struct NamedUnit {
    std::string name; // as the command line has it
    std::string endpoint;
    std::vector<std::string> labels = {}; // "site=north"
};

// units in trsman/ of $XDG_CONFIG_HOME, else of ~/.config; empty when there is no such place.
std::filesystem::path unitsFile();
// A unit a line, "NAME ENDPOINT LABEL=VALUE...", quoted as for a shell, with # for comments. None when the file is not
// there. Empty, or what is wrong with it.
std::string readUnits(std::vector<NamedUnit>& units);

// The units that words name, each by name or endpoint, and those that have all the labels of a selector, joined by
// commas; each once. Empty, or what is wrong.
std::string chooseUnits(std::vector<std::string> const& words, std::string const& selector,
                        std::vector<NamedUnit>& chosen);

} // namespace trs::ctl
