// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/Calculation.h"

#include "base/EnglishAtof.h"
#include "base/NumberText.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using Reason = CalculationFault::Reason;

constexpr double kMaxDecimals = 12.0;

bool FieldsAreRight(const Calculation& calculation) {
    const auto& [operation, a, b] = calculation;
    switch (operation) {
        case Operation::Linear: return true;
        case Operation::Limit: return std::isfinite(a) && std::isfinite(b) && a <= b;
        case Operation::Round: return a >= 0.0 && a <= kMaxDecimals && a == std::trunc(a);
        default: return std::isfinite(a);
    }
}

// A product such as 1.005 * 100 lies a little beside the half that its digits mean. A relative
// shift of four units in the last place brings it back.
double Rounded(double number, double decimals) {
    const double scale = std::pow(10.0, decimals);
    const double scaled = number * scale * (1.0 + 4.0 * std::numeric_limits<double>::epsilon());
    // Beyond this all digits are in front of the last decimal.
    constexpr double kWholeFrom = 4503599627370496.0;
    return std::abs(scaled) < kWholeFrom ? std::round(scaled) / scale : number;
}

double Result(const Calculation& calculation, double number) {
    const auto& [operation, a, b] = calculation;
    switch (operation) {
        case Operation::Multiply: return number * a;
        case Operation::Add: return number + a;
        case Operation::Limit: return std::clamp(number, a, b);
        case Operation::Round: return Rounded(number, a);
        default: return a;
    }
}

// Places and numbers of the first and the last row of a selection, and the straight line between.
struct Line {
    double start = 0.0;
    double end = 0.0;
    double start_time = 0.0;
    double end_time = 0.0;
    qsizetype count = 0;

    /// The number on the line for entry `i` of the rows, which stands at `time`.
    double At(qsizetype i, double time) const {
        const double duration = end_time - start_time;
        const double share = duration > 0.0 && std::isfinite(duration)
                                 ? (time - start_time) / duration
                                 : static_cast<double>(i) / static_cast<double>(count - 1);
        return start + (end - start) * share;
    }
};

// Replaces `text` unless it stands for the same number; false when no cell can hold `result`.
bool Store(QString& text, double result) {
    // Typed numbers end there too.
    if (!(std::abs(result) <= double{std::numeric_limits<float>::max()}))
        return false;
    if (!IsNumber(text) || ParseNumber(text) != result)
        text = NumberText13(result);
    return true;
}

std::variant<QStringList, CalculationFault> Interpolate(QStringList column,
                                                        const QList<qsizetype>& rows,
                                                        const QStringList& times) {
    if (rows.size() < 3)
        return column;
    for (const qsizetype row : {rows.first(), rows.last()}) {
        if (!IsNumber(column[row]))
            return CalculationFault{Reason::NoNumber, row};
    }
    const auto time_of = [&](qsizetype row) {
        return times.size() > rows.last() ? ParseNumber(times[row]) : 0.0;
    };
    const Line line = {ParseNumber(column[rows.first()]), ParseNumber(column[rows.last()]),
                       time_of(rows.first()), time_of(rows.last()), rows.size()};
    for (qsizetype i = 1; i + 1 < rows.size(); ++i) {
        if (!Store(column[rows[i]], line.At(i, time_of(rows[i]))))
            return CalculationFault{Reason::NotFinite, rows[i]};
    }
    return column;
}

}  // namespace

std::variant<QStringList, CalculationFault> Calculate(const Calculation& calculation,
                                                      const QStringList& column,
                                                      const QList<qsizetype>& rows,
                                                      const QStringList& times) {
    if (!FieldsAreRight(calculation))
        return CalculationFault{Reason::WrongField, -1};
    if (calculation.operation == Operation::Linear)
        return Interpolate(column, rows, times);
    QStringList result = column;
    for (const qsizetype row : rows) {
        QString& text = result[row];
        if (calculation.operation != Operation::Set && !IsNumber(text))
            return CalculationFault{Reason::NoNumber, row};
        if (!Store(text, Result(calculation, ParseNumber(text))))
            return CalculationFault{Reason::NotFinite, row};
    }
    return result;
}

std::vector<double> CalculateNumbers(const Calculation& calculation, std::vector<double> column,
                                     const QList<qsizetype>& rows, std::span<const double> times) {
    const auto at = [](qsizetype row) { return static_cast<size_t>(row); };
    if (!FieldsAreRight(calculation) || rows.isEmpty())
        return column;
    if (calculation.operation != Operation::Linear) {
        for (const qsizetype row : rows)
            column[at(row)] = Result(calculation, column[at(row)]);
        return column;
    }
    const auto time_of = [&](qsizetype row) { return times.empty() ? 0.0 : times[at(row)]; };
    const Line line = {column[at(rows.first())], column[at(rows.last())], time_of(rows.first()),
                       time_of(rows.last()), rows.size()};
    for (qsizetype i = 1; i + 1 < rows.size(); ++i)
        column[at(rows[i])] = line.At(i, time_of(rows[i]));
    return column;
}

bool KeepsTimeOrder(const QStringList& before, const QStringList& after) {
    for (qsizetype i = 1; i < after.size(); ++i) {
        if (ParseNumber(after[i]) < ParseNumber(after[i - 1]) &&
            ParseNumber(before[i]) >= ParseNumber(before[i - 1]))
            return false;
    }
    return true;
}
