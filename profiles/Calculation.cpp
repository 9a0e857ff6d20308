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

// The straight line between the first and the last row of a selection.
class Line {
public:
    Line(const QStringList& column, const QList<qsizetype>& rows, const QStringList& times)
        : m_rows(rows), m_times(times) {
        m_start = ParseNumber(column[rows.first()]);
        m_change = ParseNumber(column[rows.last()]) - m_start;
        if (times.size() > rows.last()) {
            m_start_time = ParseNumber(times[rows.first()]);
            m_duration = ParseNumber(times[rows.last()]) - m_start_time;
        }
    }

    /// The number on the line for entry `i` of the rows.
    double At(qsizetype i) const {
        const double share = m_duration > 0.0 && std::isfinite(m_duration)
                                 ? (ParseNumber(m_times[m_rows[i]]) - m_start_time) / m_duration
                                 : static_cast<double>(i) / static_cast<double>(m_rows.size() - 1);
        return m_start + m_change * share;
    }

private:
    const QList<qsizetype>& m_rows;
    const QStringList& m_times;
    double m_start = 0.0;
    double m_change = 0.0;
    double m_start_time = 0.0;
    double m_duration = 0.0;
};

// Replaces `text` unless it stands for the same number; false when `result` is not finite.
bool Store(QString& text, double result) {
    if (!std::isfinite(result))
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
    const Line line(column, rows, times);
    for (qsizetype i = 1; i + 1 < rows.size(); ++i) {
        if (!Store(column[rows[i]], line.At(i)))
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

bool KeepsTimeOrder(const QStringList& before, const QStringList& after) {
    for (qsizetype i = 1; i < after.size(); ++i) {
        if (ParseNumber(after[i]) < ParseNumber(after[i - 1]) &&
            ParseNumber(before[i]) >= ParseNumber(before[i - 1]))
            return false;
    }
    return true;
}
