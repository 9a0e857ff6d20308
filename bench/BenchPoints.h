// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// A made function that measurements work on: one point an hour, values with a daily rhythm and
/// noise that is the same in every run.
struct BenchPoints {
    explicit BenchPoints(int count);

    QStringList times;
    QStringList values;
};

/// The points' exchange file, in the form in which it is saved.
QByteArray ExchangeFileOf(const BenchPoints& points);

/// `texts` in an order that jumps about but is the same in every run.
QStringList Shuffled(const QStringList& texts);
