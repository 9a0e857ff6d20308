// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/Coefficients.h"

#include "base/EnglishAtof.h"
#include "base/NumberText.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

// Where the searches for the smallest and the largest coefficient start; a value must be strictly
// smaller or larger. A column without any coefficient below 12 has no smallest row.
constexpr float kSmallestStart = 12.0F;
constexpr float kLargestStart = 0.0F;

constexpr qsizetype kNoRow = -1;

// The number of rows of `column` that take part.
qsizetype RowsOf(ProfileKind kind, const QStringList& column) {
    return std::min<qsizetype>(CoefficientCount(kind), column.size());
}

float Target(ProfileKind kind) {
    return static_cast<float>(CoefficientCount(kind));
}

// Sum of the rows as it is.
float RawSum(ProfileKind kind, const QStringList& column) {
    float sum = 0.0F;
    for (qsizetype i = 0; i < RowsOf(kind, column); ++i)
        sum += EnglishAtof(column[i]);
    return sum;
}

bool AreFinite(ProfileKind kind, const QStringList& column) {
    return std::all_of(
        column.cbegin(), column.cbegin() + RowsOf(kind, column),
        [](const QString& text) { return IsNumber(text) && std::isfinite(EnglishAtof(text)); });
}

// The row that takes the rounding error `residual`.
qsizetype ResidualRow(ProfileKind kind, const QStringList& column, float residual) {
    qsizetype smallest_row = kNoRow;
    qsizetype largest_row = kNoRow;
    float smallest = kSmallestStart;
    float largest = kLargestStart;
    for (qsizetype i = 0; i < RowsOf(kind, column); ++i) {
        const float value = EnglishAtof(column[i]);
        if (value < smallest) {
            smallest = value;
            smallest_row = i;
        }
        if (value > largest) {
            largest = value;
            largest_row = i;
        }
    }
    return residual > 0.0F ? smallest_row : largest_row;
}

float WithResidual(const QString& text, float residual) {
    return Round2(EnglishAtof(text) + residual);
}

}  // namespace

int CoefficientCount(ProfileKind kind) {
    return Describe(kind).rows;
}

float RoundedSum(ProfileKind kind, const QStringList& column) {
    return Round2(RawSum(kind, column));
}

bool SumIsRight(ProfileKind kind, float sum) {
    return !Describe(kind).coefficients || sum == Target(kind);
}

QString AdjustQuestion(ProfileKind kind, float sum) {
    return u"La moyenne des coefficients\nmultiplicateurs doit être de 1.\nElle vaut actuellement "_s +
           FormatValue(sum / Target(kind), 4) + u".\nVoulez-vous ajuster ces valeurs ?"_s;
}

QStringList AdjustCoefficients(ProfileKind kind, const QStringList& column, float sum) {
    if (!std::isfinite(sum))
        return column;
    QStringList adjusted = column;
    const float factor = Target(kind) / sum;
    float total = 0.0F;
    for (qsizetype i = 0; i < RowsOf(kind, column); ++i) {
        const float value = Round2(EnglishAtof(column[i]) * factor);
        total += value;
        adjusted[i] = NumberText7(double{value});
    }
    const float residual = Target(kind) - total;
    const qsizetype row = ResidualRow(kind, adjusted, residual);
    if (row != kNoRow)
        adjusted[row] = NumberText7(double{WithResidual(adjusted[row], residual)});
    return AreFinite(kind, adjusted) ? adjusted : column;
}

QStringList RebalanceCoefficients(ProfileKind kind, const QStringList& column, int index,
                                  float value) {
    QStringList balanced = column;
    const qsizetype rows = RowsOf(kind, column);
    if (index < 0 || index >= rows)
        return balanced;
    balanced[index] = FormatValue(value, 2);
    float others = 0.0F;
    for (qsizetype i = 0; i < rows; ++i) {
        if (i != index)
            others += EnglishAtof(column[i]);
    }
    const float factor = (Target(kind) - value) / others;
    for (qsizetype i = 0; i < rows; ++i) {
        if (i != index)
            balanced[i] = FormatValue(Round2(EnglishAtof(column[i]) * factor), 2);
    }
    if (AreFinite(kind, balanced))
        return balanced;
    const float even_share = Round2((Target(kind) - value) / (Target(kind) - 1.0F));
    balanced.fill(FormatValue(even_share, 2));
    balanced[index] = FormatValue(value, 2);
    return balanced;
}

QStringList SettleRemainder(ProfileKind kind, const QStringList& column) {
    QStringList settled = column;
    const float remainder = Target(kind) - RawSum(kind, column);
    const qsizetype row = ResidualRow(kind, column, remainder);
    const float value = row != kNoRow ? WithResidual(column[row], remainder) : 0.0F;
    if (row != kNoRow && std::isfinite(value))
        settled[row] = FormatValue(value, 2);
    return settled;
}
