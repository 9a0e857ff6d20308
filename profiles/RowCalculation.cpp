// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/RowCalculation.h"

#include "base/EnglishAtof.h"
#include "base/Message.h"
#include "profiles/EntryRules.h"
#include "profiles/PointReading.h"
#include "profiles/RowEdits.h"

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

constexpr int kLabel = ProfileTable::kLabelColumn;
constexpr int kValue = ProfileTable::kValueColumn;
constexpr int kName = ProfileTable::kNameColumn;

void ShowFault(const CalculationFault& fault, const QStringList& column) {
    const bool is_text = fault.reason == CalculationFault::Reason::NoNumber;
    const auto kind = is_text ? PointFault::Kind::NoNumber : PointFault::Kind::NotFinite;
    ShowMessage(FaultMessage(PointFault::At(kind, fault.row + 1, column.value(fault.row)),
                             PointTask::Change));
}

bool IsAllowed(const RowEdits& edits, int column, const QStringList& before,
               const QStringList& after) {
    if (column == kLabel) {
        if (KeepsTimeOrder(before, after))
            return true;
        ShowMessage(u"Les temps ne seraient plus croissants."_s);
        return false;
    }
    if (!edits.facts().coefficients)
        return true;
    float largest = 0.0F;
    for (qsizetype i = 0; i < after.size(); ++i) {
        if (after[i] != before[i])
            largest = std::max(largest, EnglishAtof(after[i]));
    }
    return CheckTypedBound(edits.kind(), largest);
}

bool Replace(RowEdits& edits, int column, const QStringList& texts) {
    const ProfileTable& table = edits.table();
    if (!IsAllowed(edits, column, table.Column(column), texts))
        return false;
    edits.ReplaceRows(column == kLabel ? texts : table.Column(kLabel),
                      column == kValue ? texts : table.Column(kValue), table.Column(kName));
    return true;
}

}  // namespace

bool CanCalculate(const RowEdits& edits, Operation operation) {
    if (edits.isViewOnly() || edits.table().ColumnCount() == 0)
        return false;
    return !edits.facts().coefficients ||
           (edits.isEdition() && (operation == Operation::Multiply || operation == Operation::Set));
}

QList<int> RowsToCalculate(const RowEdits& edits, const QList<int>& selected) {
    QList<int> rows = edits.table().DataRows(selected);
    if (rows.size() < 2) {
        rows.resize(edits.table().RowCount());
        std::iota(rows.begin(), rows.end(), 1);
    }
    return rows;
}

bool CalculateRows(RowEdits& edits, int column, const Calculation& calculation,
                   const QList<int>& rows) {
    const QStringList texts = edits.table().Column(column);
    QList<qsizetype> indices(rows.size());
    std::transform(rows.begin(), rows.end(), indices.begin(), [](int row) { return row - 1; });
    // Months and the like are no places to draw a line over.
    const bool has_abscissa = column == kValue && edits.facts().hasTimes();
    const auto result = Calculate(calculation, texts, indices,
                                  has_abscissa ? edits.table().Column(kLabel) : QStringList());
    if (const auto* const fault = std::get_if<CalculationFault>(&result)) {
        ShowFault(*fault, texts);
        return false;
    }
    return Replace(edits, column, std::get<QStringList>(result));
}

bool FillRows(RowEdits& edits, const QList<int>& rows) {
    if (rows.isEmpty())
        return true;
    QStringList texts = edits.table().Column(kValue);
    const int first = rows.first() - 1;
    const QString text = texts[first];
    if (!NumberEntry(text)) {
        ShowFault({CalculationFault::Reason::NoNumber, first}, texts);
        return false;
    }
    for (const int row : rows)
        texts[row - 1] = text;
    return Replace(edits, kValue, texts);
}
