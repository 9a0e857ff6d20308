// SPDX-License-Identifier: GPL-3.0-or-later
// Entries into the cells of a session, mixed with all else that changes its rows.
// Input: a byte for the kind, numbers to start with, a line end; then a line for each action. Its
// first byte is one of the letters below, followed by a row and a text, or is itself the row of an
// entry, followed by column and text.

#include "base/EnglishAtof.h"
#include "base/NumberText.h"
#include "chart/DragRules.h"
#include "fuzz/Harness.h"
#include "profiles/EntryRules.h"
#include "profiles/EntryStore.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaxActions = 40;

// The numbers of column 2, whatever order their rows are in.
QList<double> Values(const ProfileTable& table) {
    QList<double> values;
    for (const QString& text : table.Column(ProfileTable::kValueColumn))
        values.append(ParseNumber(text) + 0.0);  // no sign of 0
    std::sort(values.begin(), values.end());
    return values;
}

void Enter(Editing& editing, int row, int column, QString text) {
    ProfileTable& table = editing.table();
    const QStringList names = editing.session().dailyProfiles();
    if (column == ProfileTable::kNameColumn && !names.isEmpty())
        text = names[text.size() % names.size()];  // The list offers nothing else.
    const QByteArray before = editing.State();
    const QList<double> values = Values(table);
    if (!table.setData(table.index(row - 1, column - 1), QVariant(text), Qt::EditRole)) {
        Require(editing.State() == before, "a refused entry changes nothing");
        return;
    }
    Require(editing.session().isModified(), "an entry modifies");
    Require(column == ProfileTable::kValueColumn || Values(table) == values, "other values stay");
    if (column != ProfileTable::kNameColumn)
        text = text.trimmed().replace(u',', u'.');
    Require(editing.session().facts().coefficients || table.Column(column).contains(text),
            "the entry is stored");
}

void Drag(ProfileSession& session, int row, const QString& text) {
    session.BeginDrag(row);
    if (const auto accepted = AcceptDrag(session.kind(), ParseNumber(text)))
        session.DragTo(*accepted);
}

void Insert(ProfileSession& session, const QString& text) {
    const float time = EnglishAtof(text);
    if (!session.canAdd() || !std::isfinite(time))
        return;
    const int row = InsertionRow(session.table().Column(ProfileTable::kLabelColumn), time);
    session.InsertPoint(row, NumberText7(time), u"1"_s);
    session.ForgetHistory();
}

void Act(Editing& editing, QByteArrayView action) {
    ProfileSession& session = editing.session();
    Input input(reinterpret_cast<const uint8_t*>(action.data()),
                static_cast<size_t>(action.size()));
    const int letter = input.Byte();
    const int place = input.Byte();
    const QString text = QString::fromUtf8(input.rest);
    const int rows = session.table().RowCount() + 1;  // one of them is not there
    const int row = place % rows + 1;
    switch (letter) {
        case 'u': session.Undo(); break;
        case 'r': session.Redo(); break;
        case 'h': editing.CheckHistory(); break;
        case 'a': session.Adjust(); break;
        case 't': session.SetEdition(!session.isEdition()); break;
        case 'd': Drag(session, row, text); break;
        case 'i': Insert(session, text); break;
        case 'x': session.RemoveRows({row, static_cast<int>(text.size())}); break;
        default: Enter(editing, letter % rows + 1, place % 4, text); break;
    }
    editing.Check();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    const Prompts prompts;
    const ProfileKind kind = input.Kind();
    Editing editing(kind, input.Line());
    editing.table().SetEntryHook([&editing](int row, int column, const QString& text) {
        return StoreEntry(editing.session(), row, column, text).has_value();
    });
    for (int actions = 0; actions < kMaxActions && !input.rest.isEmpty(); ++actions)
        Act(editing, input.Line());
    editing.CheckHistory();
    return 0;
}
