// SPDX-License-Identifier: GPL-3.0-or-later
#include "BenchPoints.h"

#include "base/Cp1252.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace {

QString ValueText(int hour) {
    constexpr double kDay = 24.0;
    const double rhythm = std::sin(2.0 * std::numbers::pi * hour / kDay);
    const double noise = static_cast<double>(hour * 7919LL % 1009) / 10.0;
    return QString::number(500.0 + 300.0 * rhythm + noise, 'f', 2);
}

}  // namespace

BenchPoints::BenchPoints(int count) {
    times.reserve(count);
    values.reserve(count);
    for (int hour = 0; hour < count; ++hour) {
        times.append(QString::number(hour));
        values.append(ValueText(hour));
    }
}

QByteArray ExchangeFileOf(const BenchPoints& points) {
    QByteArray file =
        "! Exchange file of a component\n"
        "12 ! Number of the component|any|1|+Inf\n"
        "Quarter ! Name of the component\n"
        "12 3 heat ! Component, input and name of the input\n"
        "0 ! Start of the simulation|hr|0|+Inf\n"
        "8760 ! End of the simulation|hr|0|+Inf\n"
        "1 ! Time step|hr|0|+Inf\n"
        "0 ! Lower bound|kW|-Inf|+Inf\n"
        "1000 ! Upper bound|kW|-Inf|+Inf\n"
        "-12 20 ! Outdoor and room temperature|any|-50|50\n"
        "1 ! Number of cycles|any|1|1\n";
    const qsizetype count = points.times.size();
    file += QByteArray::number(count - 1) + " ! Number of points - 1|any|0|+Inf\n";
    file += QByteArray::number(2 * count) + " ! Number of point lines|any|2|+Inf\n";
    for (qsizetype i = 0; i < count; ++i) {
        file += ToCp1252(points.times[i]) + " ! Time at point|hr|0|+Inf\n";
        file += ToCp1252(points.values[i]) + " ! Value at point |any|-Inf|+Inf\n";
    }
    return file;
}

QStringList Shuffled(const QStringList& texts) {
    QStringList shuffled = texts;
    std::mt19937 random(20240229);  // always the same order
    std::shuffle(shuffled.begin(), shuffled.end(), random);
    return shuffled;
}
