// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/EntryStore.h"

#include "base/EnglishAtof.h"
#include "base/Message.h"
#include "profiles/EntryRules.h"
#include "profiles/ProfileSession.h"

#include <cmath>

using namespace Qt::StringLiterals;

void ShowWrongEntry() {
    ShowMessage(u"La valeur entrée\nn'est pas correcte."_s, MessageIcon::Information);
}

bool SettleNumber(QString& text) {
    text = text.trimmed();
    return SettleDecimalSeparator(text) && IsNumber(text) && std::isfinite(EnglishAtof(text));
}

bool CheckNumber(QString& text, EntrySource source) {
    if (SettleNumber(text))
        return true;
    if (CheckDecimalSeparator(text) && source == EntrySource::Pasted)
        ShowWrongEntry();
    return false;
}

std::optional<int> StoreEntry(ProfileSession& session, int row, int column, QString text) {
    switch (column) {
        case ProfileTable::kValueColumn:
            if (!CheckNumber(text, EntrySource::Typed) ||
                !CheckTypedBound(session.kind(), EnglishAtof(text)))
                return std::nullopt;
            session.EnterValue(row, text);
            break;
        case ProfileTable::kLabelColumn: {
            if (!CheckNumber(text, EntrySource::Typed))
                return std::nullopt;
            const int target = TargetRow(session.table().Column(ProfileTable::kLabelColumn), row,
                                         EnglishAtof(text));
            session.EnterTime(row, target, text);
            row = target;
            break;
        }
        default: session.EnterName(row, text); break;
    }
    session.SetModified();
    return row;
}
