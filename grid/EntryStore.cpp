#include "grid/EntryStore.h"

#include "app/EnglishAtof.h"
#include "app/Message.h"
#include "grid/EntryRules.h"
#include "profiles/ProfileSession.h"

#include <cmath>

using namespace Qt::StringLiterals;

void ShowWrongEntry() {
    ShowMessage(u"La valeur entrée\nn'est pas correcte."_s, MessageIcon::Information);
}

bool CheckNumber(QString& text, EntrySource source) {
    text = text.trimmed();
    if (!CheckDecimalSeparator(text))
        return false;
    if (IsNumber(text) && std::isfinite(EnglishAtof(text)))
        return true;
    if (source == EntrySource::Pasted)
        ShowWrongEntry();
    return false;
}

std::optional<int> StoreEntry(ProfileSession& session, int row, int column, QString text,
                              EntrySource source) {
    switch (column) {
        case ProfileTable::kValueColumn:
            if (!CheckNumber(text, source) || !CheckTypedBound(session.kind(), EnglishAtof(text)))
                return std::nullopt;
            session.EnterValue(row, text);
            break;
        case ProfileTable::kLabelColumn: {
            if (!CheckNumber(text, source))
                return std::nullopt;
            const int target = TargetRow(session.table().Column(ProfileTable::kLabelColumn), row,
                                         EnglishAtof(text));
            session.EnterTime(row, target, text);
            row = target;
            break;
        }
        default:
            if (source == EntrySource::Pasted && !session.dailyProfiles().contains(text)) {
                ShowWrongEntry();
                return std::nullopt;
            }
            session.EnterName(row, text);
            break;
    }
    session.SetModified();
    return row;
}
