// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

namespace quality {

/// One line of a plot.
struct Series {
    std::string name;
    std::vector<double> x;
    std::vector<double> y;
};

/// A value on the x axis that the run chose.
struct Mark {
    double x = 0;
    std::string name;
};

/// A plot as an SVG element that stands in a page as it is.
struct SvgPlot {
    std::string title;
    std::string xTitle;
    std::string yTitle;
    std::vector<Series> series;
    std::vector<Mark> marks;

    std::string Text() const;
};

/// With &, < and > as markup needs them.
std::string Escaped(const std::string& text);

}  // namespace quality
