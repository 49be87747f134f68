// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/quality/SvgPlot.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "support/NumberText.h"

namespace quality {
namespace {

constexpr double width = 420;
constexpr double height = 220;
constexpr double left = 78;
constexpr double right = 12;
constexpr double top = 24;
constexpr double bottom = 38;

/// Told apart by people with colour blindness too (Okabe and Ito 2008).
constexpr const char* colors[] = {"#0072b2", "#e69f00", "#009e73", "#d55e00", "#cc79a7", "#56b4e9"};

std::string Number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

/// A step of 1, 2 or 5 times a power of ten that cuts the span into about five.
double TickStep(double span) {
    const double rough = span / 5;
    const double power = std::pow(10, std::floor(std::log10(rough)));
    const double ratio = rough / power;
    return power * (ratio < 1.5 ? 1 : ratio < 3.5 ? 2 : ratio < 7.5 ? 5 : 10);
}

/// Where values stand on the picture.
struct Frame {
    double xMin = 0, xMax = 1, yMax = 1;

    explicit Frame(const std::vector<Series>& series) {
        bool isFirst = true;
        yMax = 0;
        for (const auto& line : series) {
            if (line.x.empty()) continue;
            const auto [low, high] = std::minmax_element(line.x.begin(), line.x.end());
            xMin = isFirst ? *low : std::min(xMin, *low);
            xMax = isFirst ? *high : std::max(xMax, *high);
            yMax = std::max(yMax, *std::max_element(line.y.begin(), line.y.end()));
            isFirst = false;
        }
        if (!(xMax > xMin)) xMax = xMin + 1;
        if (!(yMax > 0)) yMax = 1;
    }
    double X(double x) const { return left + (x - xMin) / (xMax - xMin) * (width - left - right); }
    double Y(double y) const { return height - bottom - y / yMax * (height - top - bottom); }
};

std::string LineElement(double x1, double y1, double x2, double y2, const char* style) {
    return "<line x1=\"" + Number(x1) + "\" y1=\"" + Number(y1) + "\" x2=\"" + Number(x2) + "\" y2=\"" + Number(y2) +
           "\" " + style + "/>";
}

std::string TextElement(double x, double y, const char* anchor, const std::string& text, const char* style = "") {
    return "<text x=\"" + Number(x) + "\" y=\"" + Number(y) + "\" text-anchor=\"" + anchor + "\" " + style + ">" +
           Escaped(text) + "</text>";
}

std::string Axes(const Frame& frame) {
    constexpr const char* grid = "stroke=\"currentColor\" stroke-opacity=\"0.15\"";
    std::string text;
    const double xStep = TickStep(frame.xMax - frame.xMin);
    for (double x = std::ceil(frame.xMin / xStep) * xStep; x <= frame.xMax; x += xStep)
        text +=
            LineElement(frame.X(x), top, frame.X(x), height - bottom, grid) +
            TextElement(frame.X(x), height - bottom + 13, "middle", support::GeneralText(support::RoundHalfEven(x, 6)));
    const double yStep = TickStep(frame.yMax);
    for (double y = 0; y <= frame.yMax; y += yStep)
        text += LineElement(left, frame.Y(y), width - right, frame.Y(y), grid) +
                TextElement(left - 4, frame.Y(y) + 4, "end",
                            y < 1e4 ? support::GeneralText(support::RoundHalfEven(y, 6)) : support::ScientificText(y));
    return text;
}

std::string Polyline(const Frame& frame, const Series& line, const char* color) {
    std::string points;
    for (std::size_t i = 0; i < line.x.size(); ++i)
        points += Number(frame.X(line.x[i])) + "," + Number(frame.Y(line.y[i])) + " ";
    return "<polyline fill=\"none\" stroke=\"" + std::string(color) + "\" stroke-width=\"1.4\" points=\"" + points +
           "\"/>";
}

}  // namespace

std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char c : text)
        escaped += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : std::string(1, c);
    return escaped;
}

std::string SvgPlot::Text() const {
    const Frame frame(series);
    std::string text = "<svg viewBox=\"0 0 " + Number(width) + " " + Number(height) + "\">";
    text += TextElement(width / 2, 14, "middle", title, "font-weight=\"bold\"") + Axes(frame);
    for (std::size_t i = 0; i < series.size(); ++i) {
        const char* color = colors[i % std::size(colors)];
        text += Polyline(frame, series[i], color);
        if (!series[i].name.empty())
            text += TextElement(width - right - 2, top + 11 * static_cast<double>(i + 1), "end", series[i].name,
                                ("fill=\"" + std::string(color) + "\"").c_str());
    }
    constexpr int rows = 4;  // names of neighbours stand below each other
    int row = 0;
    for (const auto& mark : marks) {
        text += LineElement(frame.X(mark.x), top, frame.X(mark.x), height - bottom,
                            "stroke=\"#d55e00\" stroke-dasharray=\"4 3\"");
        text += TextElement(frame.X(mark.x) + 2, top + 9 + 11 * (row++ % rows), "start", mark.name, "fill=\"#d55e00\"");
    }
    text += TextElement((left + width - right) / 2, height - 8, "middle", xTitle);
    text += "<text transform=\"translate(11 " + Number((top + height - bottom) / 2) +
            ") rotate(-90)\" text-anchor=\"middle\">" + Escaped(yTitle) + "</text>";
    return text + "</svg>\n";
}

}  // namespace quality
