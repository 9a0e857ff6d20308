// SPDX-License-Identifier: GPL-3.0-or-later
// Entries into the cells of a session and pastes, mixed with all else that changes its rows.
// Input: a byte for the kind, numbers to start with, a line end; then a line for each action. Its
// first byte is one of the letters below, followed by a row and a text, or is itself the row of an
// entry, followed by column and text. The text of a copy and of a paste begins with the column and
// the number of the rows that are selected. What is left is pasted, with a bar for each line end;
// nothing for what is on the clipboard.

#include "base/EnglishAtof.h"
#include "base/NumberText.h"
#include "chart/DragRules.h"
#include "fuzz/Harness.h"
#include "grid/GridClipboard.h"
#include "profiles/EntryRules.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>
#include <numeric>

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
    const ProfileTable& table = editing.session.table();
    const QStringList names = editing.session.dailyProfiles();
    if (column == ProfileTable::kNameColumn && !names.isEmpty())
        text = names[text.size() % names.size()];  // The list offers nothing else.
    const QByteArray before = editing.State();
    const QList<double> values = Values(table);
    if (!editing.session.model()->setData(table.index(row - 1, column - 1), text, Qt::EditRole)) {
        Require(editing.State() == before, "a refused entry changes nothing");
        return;
    }
    Require(editing.session.isModified(), "an entry modifies");
    Require(column == ProfileTable::kValueColumn || Values(table) == values, "other values stay");
    if (column != ProfileTable::kNameColumn)
        text = text.trimmed().replace(u',', u'.');
    Require(editing.session.facts().coefficients || table.Column(column).contains(text),
            "the entry is stored");
}

void Drag(ProfileSession& session, int row, const QString& text) {
    session.BeginDrag(row);
    const auto time_of = [&session](int at) {
        return ParseNumber(session.table().CellText(at, ProfileTable::kLabelColumn));
    };
    const auto time = AcceptDraggedTime(ParseNumber(text), time_of(row - 1), time_of(row + 1));
    if (const auto accepted = AcceptDrag(session.kind(), ParseNumber(text)))
        session.DragTo(*accepted, time.value_or(QString()));
}

void Insert(ProfileSession& session, const QString& text) {
    const float time = EnglishAtof(text);
    if (!session.canAdd() || !std::isfinite(time))
        return;
    const int row = InsertionRow(session.table().Column(ProfileTable::kLabelColumn), time);
    session.InsertPoint(row, NumberText7(time), u"1"_s);
    session.ForgetHistory();
}

// All rows with the numbers that are in `text`.
void Replace(ProfileSession& session, const QString& text) {
    QStringList numbers;
    for (const QString& word : text.split(u' ')) {
        if (const auto number = NumberEntry(word))
            numbers.append(*number);
    }
    std::sort(numbers.begin(), numbers.end(), [](const QString& left, const QString& right) {
        return EnglishAtof(left) < EnglishAtof(right);
    });
    session.ReplaceRows(numbers, numbers);
}

GridSelection Select(const ProfileTable& table, int first, Input& input) {
    constexpr int kWholeColumn = 8;
    const int column = input.Byte();
    GridSelection selection;
    selection.columns = {column % std::max(table.ColumnCount(), 1) + 1};
    selection.rows.resize(std::min(input.Byte() % 8, table.RowCount() - first + 1));
    std::iota(selection.rows.begin(), selection.rows.end(), first);
    selection.whole_column = (column & kWholeColumn) != 0;
    return selection;
}

// Which cells it changes is for other tests to say.
void Paste(Editing& editing, GridClipboard& clipboard, const GridSelection& selection) {
    editing.session.EndDrag();
    editing.session.ClearSaved();
    const QByteArray state = editing.State();
    const Cells before = editing.cells();
    editing.prompts.messages.clear();
    clipboard.Paste(selection);
    // Where other values do not follow, single cells may be refused.
    const QString message = editing.prompts.messages.value(0);
    const bool refused = !message.isEmpty() && (editing.session.facts().coefficients ||
                                                message.startsWith(u"Impossible"));
    Require(editing.State() == state || !(refused || selection.rows.isEmpty()),
            "a refused paste changes nothing");
    QList<Cells> states;
    RequireNone(CheckHistory(editing.session, &states));
    Require(states.size() > EditHistory::kMaxSteps ||
                std::any_of(
                    states.cbegin(), states.cend(),
                    [&](const Cells& cells) { return SameCells(editing.session, cells, before); }),
            "undo takes a paste back");
}

void Act(Editing& editing, GridClipboard& clipboard, QByteArrayView action) {
    ProfileSession& session = editing.session;
    Input input(action);
    const int letter = input.Byte();
    const int place = input.Byte();
    const int rows = session.table().RowCount() + 1;  // one of them is not there
    const int row = place % rows + 1;
    GridSelection selection;
    if (letter == 'c' || letter == 'p')
        selection = Select(session.table(), row, input);
    QString text = QString::fromUtf8(input.rest);
    if (letter == 'p' && !text.isEmpty())
        QGuiApplication::clipboard()->setText(text.replace(u'|', u'\n'));
    switch (letter) {
        case 'u': session.Undo(); break;
        case 'r': session.Redo(); break;
        case 'h': RequireNone(CheckHistory(session)); break;
        case 'a': session.Adjust(); break;
        case 't': session.SetEdition(!session.isEdition()); break;
        case 'd': Drag(session, row, text); break;
        case 'w': Replace(session, text); break;
        case 'i': Insert(session, text); break;
        case 'x': session.RemoveRows({row, static_cast<int>(text.size())}); break;
        case 'c': clipboard.Copy(selection); break;
        case 'p': Paste(editing, clipboard, selection); break;
        default: Enter(editing, letter % rows + 1, place % 4, text); break;
    }
    editing.Check();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    const ProfileKind kind = input.Kind();
    Editing editing(kind, input.Line());
    static int count = 0;
    static const QGuiApplication application(count, nullptr);
    QGuiApplication::clipboard()->clear();
    GridClipboard clipboard(&editing.session);
    for (int actions = 0; actions < kMaxActions && !input.rest.isEmpty(); ++actions)
        Act(editing, clipboard, input.Line());
    RequireNone(CheckHistory(editing.session));
    editing.Check();
    return 0;
}
