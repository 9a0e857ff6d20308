// SPDX-License-Identifier: GPL-3.0-or-later
// The rules without a state of their own, by subject: what a case of tests/vectors or tests/cases
// gives.

#pragma once

#include "VectorFile.h"

// A rule and the cases that it is for.
struct Rule {
    const char* file;
    const char* key;  // of the list of inputs in a case; null where the whole case is one input
    QJsonValue (*result)(const QJsonValue& input, const QJsonObject& all);
    const char* results = nullptr;  // the key of the expected list, where that has one
};

// Numbers, coefficients, entries, clipboard and the files of profiles.
QList<Rule> EntryRules();
// Points read, written, calculated and made; checks of exchange files.
QList<Rule> PointRules();
// What the chart shows, the mouse on it, and the parts of a button.
QList<Rule> ChartRules();

inline QJsonArray Array(const QStringList& texts) {
    return QJsonArray::fromStringList(texts);
}

inline QList<int> Numbers(const QJsonValue& value) {
    QList<int> numbers;
    const QJsonArray array = value.toArray();
    for (const QJsonValue& one : array)
        numbers.append(one.toInt());
    return numbers;
}
