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

/// An exchange file of so many hourly points, as `samples/make-year` makes it.
QByteArray ExchangeFileOf(int points);

/// `texts` in an order that jumps about but is the same in every run.
QStringList Shuffled(const QStringList& texts);
