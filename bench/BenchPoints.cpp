// SPDX-License-Identifier: GPL-3.0-or-later
#include "BenchPoints.h"

#include <QProcess>

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

QByteArray ExchangeFileOf(int points) {
    QProcess program;
    program.start(QStringLiteral(SAMPLES_DIR "make-year"), {QString::number(points)});
    if (!program.waitForFinished() || program.exitCode() != 0)
        qFatal("The file for the measurement cannot be made.");
    return program.readAllStandardOutput();
}

QStringList Shuffled(const QStringList& texts) {
    QStringList shuffled = texts;
    std::mt19937 random(20240229);  // always the same order
    std::shuffle(shuffled.begin(), shuffled.end(), random);
    return shuffled;
}
