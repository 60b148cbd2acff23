// Drawings as SVG files, that browsers show light or dark as their users like it.
#pragma once

#include <string>
#include <vector>

namespace trs::ctl {

// A text as XML has it: characters that mean something else and controls that it may not have are replaced.
std::string xmlText(std::string const& text);

struct Series {
    std::string name;
    std::vector<double> values; // one a step
};
// Lines over time, a small plot for each series with its own scale; `step`: seconds between values.
std::string plotSvg(std::string const& title, std::vector<Series> const& series, double step);

// Who tells whom what, from top to bottom.
struct Arrow {
    std::string from;
    std::string to;
    std::string label;
    std::string time;
    bool isBad = false;
};
std::string sequenceSvg(std::string const& title, std::vector<Arrow> const& arrows);

} // namespace trs::ctl
