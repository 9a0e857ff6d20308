// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/PointTexts.h"

#include <optional>
#include <vector>

/// How the values of a series follow from its times t, in hours.
enum class SeriesShape {
    Constant,     ///< a
    Linear,       ///< a at the first point, b at the last one, in equal steps
    Sine,         ///< a + b sin(2 pi t / period + phase)
    Pulse,        ///< b in the first `share` of each period, which begins at t = 0; else a
    Interpolated  ///< on the lines between the points of another function
};

/// Points at equal distances in time.
struct SeriesPlan {
    static constexpr int kMinCount = 2;
    static constexpr int kMaxCount = 1'000'000;

    double start = 0.0;  ///< time of the first point, in hours
    double step = 1.0;   ///< hours between two points, above 0
    int count = 24;
    SeriesShape shape = SeriesShape::Constant;
    double a = 0.0;
    double b = 0.0;
    double period = 24.0;  ///< hours, above 0
    double phase = 0.0;    ///< degrees
    double share = 0.5;    ///< 0 to 1
};

/// Points as numbers: lists of the same length.
struct PointNumbers {
    std::vector<double> times;
    std::vector<double> values;
};

/// The points of the series as "%.13g" texts. `Interpolated` takes the values from `function`: on
/// the line between the two points around a time, and the value of the first or the last point
/// outside; of points with the same time the last one counts. Points of `function` whose times
/// are not in order are sorted first.
/// Nothing when a field is out of its range, when a time or a value is not finite (in single
/// precision, as typed numbers), when two times
/// would print the same text, and when there is no function to interpolate.
std::optional<PointTexts> MakeSeries(const SeriesPlan& plan, const PointTexts& function = {});

/// The same as numbers, to be shown before it is done; two times may print the same text.
std::optional<PointNumbers> SeriesNumbers(const SeriesPlan& plan, PointNumbers function = {});

/// Where `InsertPoints` puts the points of a series.
PointNumbers MergePoints(const PointNumbers& present, const PointNumbers& added);
