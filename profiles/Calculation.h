// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <span>
#include <variant>
#include <vector>

/// What a calculation does with each number x of its rows.
enum class Operation {
    Multiply,  ///< x a
    Add,       ///< x + a
    Set,       ///< a
    Linear,    ///< on the straight line between the first and the last row
    Limit,     ///< min(max(x, a), b)
    Round      ///< x rounded to a decimals, halves away from zero
};

/// One calculation on some rows of a column, in double precision.
struct Calculation {
    Operation operation = Operation::Multiply;
    double a = 0.0;  ///< factor, summand, new value, lower bound or number of decimals (0 to 12)
    double b = 0.0;  ///< upper bound
};

/// Why a calculation was refused.
struct CalculationFault {
    enum class Reason {
        WrongField,  ///< bounds in the wrong order, decimals out of range, a field not finite
        NoNumber,    ///< the cell of `row` holds no number
        NotFinite    ///< the result of `row` is not finite
    };
    Reason reason = Reason::WrongField;
    qsizetype row = -1;  ///< counted from 0; -1 for a wrong field

    bool operator==(const CalculationFault&) const = default;
};

/// `column` after `calculation` on `rows` (counted from 0, ascending, each once). Results are
/// "%.13g" texts. A cell whose number does not change keeps its very text. Refused as a whole when
/// one result is not finite in single precision, as no typed number may be.
///
/// `Linear` interpolates between the first and the last of `rows`, which keep their texts. The
/// abscissa is `times` where these rise from the first to the last row, else the place in `rows`.
std::variant<QStringList, CalculationFault> Calculate(const Calculation& calculation,
                                                      const QStringList& column,
                                                      const QList<qsizetype>& rows,
                                                      const QStringList& times = {});

/// The same for numbers, to be shown before it is done: results may be not finite, and with wrong
/// fields the column stays. `times` has an entry a row, or none.
std::vector<double> CalculateNumbers(const Calculation& calculation, std::vector<double> column,
                                     const QList<qsizetype>& rows,
                                     std::span<const double> times = {});

/// True when no time falls below the one before it, except where it already did in `before`. Both
/// lists have the same length.
bool KeepsTimeOrder(const QStringList& before, const QStringList& after);
