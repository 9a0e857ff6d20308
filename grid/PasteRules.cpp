// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/PasteRules.h"

#include "base/EnglishAtof.h"
#include "profiles/ProfileTable.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// Headers are never pasted into: a selection that starts on one starts on the first cell behind it.
int FirstDataNumber(const QList<int>& numbers) {
    return numbers.isEmpty() ? 0 : std::max(*std::min_element(numbers.cbegin(), numbers.cend()), 1);
}

// True when cells copied from column `copied` (0: unknown) may go to column `target`. Values go to
// values, times to times, names to names.
bool ColumnsFit(ProfileKind kind, int copied, int target) {
    if (target == ProfileTable::kLabelColumn && Describe(kind).labels != RowLabels::None)
        return false;
    if (target == ProfileTable::kValueColumn)
        return copied == 0 || copied == ProfileTable::kValueColumn;
    return copied != ProfileTable::kValueColumn;
}

bool TakesNumbers(ProfileKind kind, int column) {
    return column == ProfileTable::kValueColumn ||
           (column == ProfileTable::kLabelColumn && Describe(kind).labels == RowLabels::None);
}

QString ColumnMessage(int from, int to) {
    return u"Impossible de copier les données\nde la colonne %1 à la colonne %2."_s.arg(from).arg(
        to);
}

QString ColumnRefusal(const PasteRequest& request) {
    const int target = FirstDataNumber(request.columns);
    if (!request.foreign) {
        return ColumnsFit(request.kind, request.copied_column, target)
                   ? QString()
                   : ColumnMessage(request.copied_column, target);
    }
    // The columns of a foreign text are named by their place in it.
    if (request.foreign_columns <= 1)
        return ColumnsFit(request.kind, 0, target) ? QString() : ColumnMessage(1, target);
    for (int i = 0; i < request.foreign_columns; ++i) {
        if (!TakesNumbers(request.kind, target + i))
            return ColumnMessage(i + 1, target + i);
    }
    return {};
}

}  // namespace

QString CopyRefusal(const QList<int>& rows, const QList<int>& columns) {
    if (rows.isEmpty())
        return u"Impossible de copier:\nAucune ligne n'est sélectionnée !"_s;
    if (columns.size() > 1)
        return u"Impossible de copier plusieurs\ncolonnes à la fois !"_s;
    if (rows.size() > kMaxCopiedRows)
        return u"Veuillez ne pas sélectionner\nplus de 25 lignes à la fois."_s;
    if (columns.contains(ProfileTable::kLabelColumn) && rows.size() > 1)
        return u"Veuillez ne pas copier d'un coup\nplusieurs lignes de la 1ère colonne."_s;
    return {};
}

int PastedRowCount(const PasteRequest& request) {
    // Nothing of a foreign text is dropped: what does not fit is refused for its room.
    if (request.foreign)
        return std::max(request.copied_rows, 1);
    const bool counts = request.copied_rows >= 1 && request.copied_rows <= request.row_count;
    return counts ? request.copied_rows : 1;
}

QString PasteRefusal(const PasteRequest& request) {
    if (request.rows.isEmpty() || request.columns.isEmpty())
        return {};
    if (const QString refusal = ColumnRefusal(request); !refusal.isEmpty())
        return refusal;
    const QString start = u"Impossible d'appliquer la sélection\nprécédente à cet endroit:\n"_s;
    const int needed = PastedRowCount(request);
    if (request.row_count + 1 - FirstDataNumber(request.rows) < needed)
        return start + u"il n'y a pas assez de place dans\nle tableau !"_s;
    if (request.rows.size() > 1 && request.rows.size() < needed)
        return start + u"il n'y a pas assez de lignes sélectionnées !"_s;
    return {};
}

QString BulkRefusal(ProfileKind kind, const QStringList& column) {
    const KindDescriptor& facts = Describe(kind);
    const bool refused = facts.coefficients &&
                         std::any_of(column.cbegin(), column.cend(), [&facts](const QString& text) {
                             const float value = EnglishAtof(text);
                             return value < 0.0F || value > facts.pasted_bound;
                         });
    return refused ? facts.pasted_bound_message.toString() : QString();
}
