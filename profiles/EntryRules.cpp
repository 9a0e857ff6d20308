// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/EntryRules.h"

#include "base/EnglishAtof.h"
#include "base/Message.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

std::optional<QString> WithDecimalPoint(QString text) {
    if (text.count(u'.') + text.count(u',') > 1)
        return std::nullopt;
    return text.replace(u',', u'.');
}

}  // namespace

std::optional<QString> CheckDecimalSeparator(const QString& text) {
    std::optional<QString> settled = WithDecimalPoint(text);
    if (!settled)
        ShowMessage(
            u"Le nombre entré comporte plusieurs virgules !\nVeuillez rectifier la saisie."_s,
            MessageIcon::None);
    return settled;
}

std::optional<QString> NumberEntry(const QString& text) {
    std::optional<QString> number = WithDecimalPoint(text.trimmed());
    if (number && !(IsNumber(*number) && std::isfinite(EnglishAtof(*number))))
        number.reset();
    return number;
}

std::optional<QString> CheckNumber(const QString& text, EntrySource source) {
    std::optional<QString> number = NumberEntry(text);
    if (!number && CheckDecimalSeparator(text) && source == EntrySource::Pasted)
        ShowWrongEntry();
    return number;
}

void ShowWrongEntry() {
    ShowMessage(u"La valeur entrée\nn'est pas correcte."_s, MessageIcon::Information);
}

bool CheckTypedBound(ProfileKind kind, float value) {
    const KindDescriptor& facts = Describe(kind);
    if (!facts.coefficients || value <= facts.typed_bound)
        return true;
    ShowMessage(u"La valeur entrée\nest trop grande."_s, MessageIcon::Information);
    return false;
}

int TargetRow(const QStringList& times, int row, float time) {
    const int count = static_cast<int>(times.size());
    int target = 1;
    while (target < count && time > EnglishAtof(times[target - 1]))
        ++target;
    if (target > row && time < EnglishAtof(times[target - 1]))
        --target;
    return target;
}

int InsertionRow(const QStringList& times, float time) {
    const auto later = std::find_if(times.cbegin(), times.cend(), [time](const QString& text) {
        return EnglishAtof(text) > time;
    });
    return static_cast<int>(later - times.cbegin()) + 1;
}
