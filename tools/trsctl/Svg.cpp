#include "tools/trsctl/Svg.h"

#include "broker/PrintableText.h"

#include <algorithm>
#include <fmt/format.h>

namespace trs::ctl {

namespace {

constexpr double characterWidth = 7.3; // of the font that is asked for, at 12 pixels
constexpr int rowHeight = 26;
constexpr int margin = 20;

constexpr char const* style = R"(<style>
svg { color-scheme: light dark; background: #ffffff; font: 12px monospace; }
text { fill: #1b1f24; }
.aside { fill: #57606a; }
.line { stroke: #57606a; stroke-width: 1; fill: none; }
.grid { stroke: #d0d7de; stroke-width: 1; }
.good { stroke: #0969da; stroke-width: 1.5; fill: none; }
.goodfill { fill: #0969da; }
.bad { stroke: #cf222e; stroke-width: 1.5; fill: none; }
.badfill { fill: #cf222e; }
@media (prefers-color-scheme: dark) {
svg { background: #0d1117; }
text { fill: #e6edf3; }
.aside { fill: #9198a1; }
.line { stroke: #9198a1; }
.grid { stroke: #30363d; }
.good { stroke: #4493f8; }
.goodfill { fill: #4493f8; }
.bad { stroke: #f85149; }
.badfill { fill: #f85149; }
}
</style>
)";

std::string begin(std::string const& title, double width, double height)
{
    return fmt::format("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0:.0f}\" height=\"{1:.0f}\" "
                       "viewBox=\"0 0 {0:.0f} {1:.0f}\" role=\"img\">\n<title>{2}</title>\n{3}"
                       "<text x=\"{4}\" y=\"{4}\" font-weight=\"bold\">{2}</text>\n",
                       width, height, xmlText(title), style, margin);
}

double widthOf(std::string const& text) { return static_cast<double>(text.size()) * characterWidth; }

std::string number(double value)
{
    return value >= 1e9   ? fmt::format("{:.3g}G", value / 1e9)
           : value >= 1e6 ? fmt::format("{:.3g}M", value / 1e6)
           : value >= 1e4 ? fmt::format("{:.3g}k", value / 1e3)
                          : fmt::format("{:.4g}", value);
}

} // namespace

std::string xmlText(std::string const& text)
{
    std::string plain;
    for (char const each : escaped(text)) {
        plain += each == '<'   ? "&lt;"
                 : each == '>' ? "&gt;"
                 : each == '&' ? "&amp;"
                 : each == '"' ? "&quot;"
                               : std::string(1, each);
    }
    return plain;
}

std::string plotSvg(std::string const& title, std::vector<Series> const& series, double step)
{
    constexpr double plotWidth = 640;
    constexpr double plotHeight = 60;
    constexpr double block = plotHeight + 40; // with its name above
    double labelWidth = 0;
    for (Series const& each : series) {
        labelWidth = std::max(labelWidth, widthOf(each.name));
    }
    double const width = std::max(plotWidth + 100, labelWidth) + 2 * margin;
    std::string svg = begin(title, width, 2.5 * margin + block * static_cast<double>(series.size()));
    double top = 2 * margin;
    for (Series const& each : series) {
        double const most = each.values.empty() ? 0 : *std::ranges::max_element(each.values);
        double const scale = most > 0 ? plotHeight / most : 0;
        double const across =
            each.values.size() > 1 ? plotWidth / static_cast<double>(each.values.size() - 1) : plotWidth;
        std::string points;
        for (std::size_t i = 0; i < each.values.size(); ++i) {
            points += fmt::format("{:.1f},{:.1f} ", margin + across * static_cast<double>(i),
                                  top + 18 + plotHeight - each.values[i] * scale);
        }
        double const bottom = top + 18 + plotHeight;
        svg += fmt::format("<text x=\"{}\" y=\"{:.0f}\">{}</text>\n", margin, top + 10, xmlText(each.name));
        svg += fmt::format("<line class=\"grid\" x1=\"{0}\" y1=\"{1:.0f}\" x2=\"{2:.0f}\" y2=\"{1:.0f}\"/>\n", margin,
                           top + 18, margin + plotWidth);
        svg += fmt::format("<line class=\"line\" x1=\"{0}\" y1=\"{1:.0f}\" x2=\"{2:.0f}\" y2=\"{1:.0f}\"/>\n", margin,
                           bottom, margin + plotWidth);
        svg += fmt::format("<polyline class=\"good\" points=\"{}\"/>\n", points);
        svg += fmt::format("<text class=\"aside\" x=\"{0:.0f}\" y=\"{1:.0f}\">{2}</text>\n"
                           "<text class=\"aside\" x=\"{0:.0f}\" y=\"{3:.0f}\">0</text>\n",
                           margin + plotWidth + 6, top + 22, number(most), bottom + 4);
        svg += fmt::format("<text class=\"aside\" x=\"{:.0f}\" y=\"{:.0f}\" text-anchor=\"end\">{:.4g} s</text>\n",
                           margin + plotWidth, bottom + 14,
                           step * static_cast<double>(std::max<std::size_t>(each.values.size(), 1) - 1));
        top += block;
    }
    return svg + "</svg>\n";
}

std::string sequenceSvg(std::string const& title, std::vector<Arrow> const& arrows)
{
    std::vector<std::string> actors;
    double widest = 120;
    double timeWidth = 0;
    for (Arrow const& each : arrows) {
        for (std::string const& actor : {each.from, each.to}) {
            if (std::ranges::find(actors, actor) == actors.end()) {
                actors.push_back(actor);
            }
            widest = std::max(widest, widthOf(actor) + 20);
        }
        widest = std::max(widest, widthOf(each.label) + 40);
        timeWidth = std::max(timeWidth, widthOf(each.time));
    }
    double const left = margin + timeWidth + widest / 2;
    auto const placeOf = [&](std::string const& actor) {
        return left + widest * static_cast<double>(std::ranges::find(actors, actor) - actors.begin());
    };
    double const height = 3.5 * margin + rowHeight * static_cast<double>(arrows.size() + 1);
    double const width =
        left + widest * static_cast<double>(std::max<std::size_t>(actors.size(), 1)) - widest / 2 + margin;
    std::string svg = begin(title, std::max(width, widthOf(title) + 2 * margin), height);
    for (std::string const& actor : actors) {
        svg += fmt::format("<text x=\"{0:.0f}\" y=\"{1}\" text-anchor=\"middle\">{2}</text>\n"
                           "<line class=\"line\" x1=\"{0:.0f}\" y1=\"{3}\" x2=\"{0:.0f}\" y2=\"{4:.0f}\"/>\n",
                           placeOf(actor), 2 * margin + 5, xmlText(actor), 2 * margin + 12, height - margin / 2.0);
    }
    double y = 3.5 * margin;
    for (Arrow const& each : arrows) {
        double const from = placeOf(each.from);
        double const to = placeOf(each.to);
        double const tip = to > from ? -7 : 7;
        char const* const colour = each.isBad ? "bad" : "good";
        svg +=
            fmt::format("<text class=\"aside\" x=\"{}\" y=\"{:.0f}\">{}</text>\n", margin, y + 4, xmlText(each.time));
        svg += fmt::format("<text x=\"{:.0f}\" y=\"{:.0f}\" text-anchor=\"middle\">{}</text>\n", (from + to) / 2, y - 4,
                           xmlText(each.label));
        svg += fmt::format("<line class=\"{0}\" x1=\"{1:.0f}\" y1=\"{2:.0f}\" x2=\"{3:.0f}\" y2=\"{2:.0f}\"/>\n"
                           "<path class=\"{0}fill\" d=\"M{3:.0f} {2:.0f} l{4} -4 l0 8 z\"/>\n",
                           colour, from, y, to, tip);
        y += rowHeight;
    }
    return svg + "</svg>\n";
}

} // namespace trs::ctl
