// SPDX-License-Identifier: GPL-3.0-or-later
#include "SessionChecks.h"

#include "base/EnglishAtof.h"
#include "profiles/ProfileFile.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int kLabel = ProfileTable::kLabelColumn;
constexpr int kValue = ProfileTable::kValueColumn;

bool SameNumbers(const QStringList& left, const QStringList& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const QString& one, const QString& other) {
                          return ParseNumber(one) == ParseNumber(other);
                      });
}

}  // namespace

bool IsFiniteNumber(const QString& text) {
    return IsNumber(text) && std::isfinite(EnglishAtof(text));
}

Cells CellsOf(const ProfileTable& table) {
    Cells cells;
    for (int column = 1; column <= table.ColumnCount(); ++column)
        cells.append(table.Column(column));
    return cells;
}

bool SameCells(const ProfileSession& session, const Cells& left, const Cells& right) {
    return session.facts().rows > 0
               ? left == right
               : std::equal(left.begin(), left.end(), right.begin(), right.end(), SameNumbers);
}

bool TimesAreSorted(const ProfileTable& table) {
    const QStringList times = table.Column(kLabel);
    return std::is_sorted(times.cbegin(), times.cend(), [](const QString& a, const QString& b) {
        return EnglishAtof(a) < EnglishAtof(b);
    });
}

QString CheckChart(const ProfileTable& table, const CDocControl& chart) {
    if (chart.items.Count() != table.RowCount())
        return u"%1 items, %2 rows"_s.arg(chart.items.Count()).arg(table.RowCount());
    const bool times = chart.items.GroupCount() == 2;
    for (int i = 0; i < chart.items.Count(); ++i) {
        const QString label = table.CellText(i + 1, kLabel);
        const bool same_label =
            times ? chart.items.Value(i, 0) == ParseNumber(label) : chart.items.Label(i) == label;
        if (!same_label ||
            chart.items.Value(i, times ? 1 : 0) != ParseNumber(table.CellText(i + 1, kValue)))
            return u"the chart shows something else in row %1"_s.arg(i + 1);
    }
    return {};
}

QString CheckRows(const ProfileSession& session) {
    const QStringList labels = session.table().Column(kLabel);
    const QStringList values = session.table().Column(kValue);
    if (!std::all_of(values.cbegin(), values.cend(), IsFiniteNumber))
        return u"values are no numbers: "_s + values.join(u'|');
    if (session.facts().rows > 0)
        return labels == RowLabelTexts(session.kind()) ? QString() : u"row labels changed"_s;
    return std::all_of(labels.cbegin(), labels.cend(), IsFiniteNumber)
               ? QString()
               : u"times are no numbers: "_s + labels.join(u'|');
}

QString CheckWritten(ProfileKind kind, QByteArray bytes, const ProfileContent& content) {
    // A function is written under other keywords than a mask, which is what can be read.
    if (kind == ProfileKind::Function)
        bytes.replace("Value of time =", "AZIMUT =").replace("Value of function =", "HAUTEUR =");
    const ProfileReading reading = ParseProfile(kind, bytes);
    const ProfileContent& read = reading.content;
    if (reading.status != ProfileFileStatus::Read)
        return u"what was written cannot be read: "_s + QString::fromLatin1(bytes);
    const bool same = SameNumbers(read.values, content.values) && read.names == content.names &&
                      (Describe(kind).rows > 0 || read.labels == content.labels);
    return same ? QString() : u"what was written holds other rows"_s;
}

StateList::StateList(const ProfileSession& session)
    : m_session(session), m_states({CellsOf(session.table())}) {
    QObject::connect(&session, &ProfileSession::StateChanged, &m_context, [this] { Note(); });
}

void StateList::Note() {
    const Cells cells = CellsOf(m_session.table());
    if (!m_recording || cells == m_states[m_position])
        return;
    m_states.resize(m_position + 1);
    m_states.append(cells);
    // One state more than steps.
    if (m_states.size() > (m_session.facts().coefficients ? 7 : 13))
        m_states.removeFirst();
    m_position = m_states.size() - 1;
}

void StateList::Forget(const std::function<void()>& change) {
    m_recording = false;
    change();
    m_recording = true;
    m_states = {CellsOf(m_session.table())};
    m_position = 0;
}

void StateList::Travel(const std::function<void()>& travel, qsizetype by) {
    Note();  // a drag that is still open
    m_recording = false;
    travel();
    m_recording = true;
    m_position = std::clamp<qsizetype>(m_position + by, 0, m_states.size() - 1);
    const Cells cells = CellsOf(m_session.table());
    if (SameCells(m_session, cells, m_states[m_position]))
        m_states[m_position] = cells;
}

QString StateList::Check() const {
    const Cells cells = CellsOf(m_session.table());
    if (m_session.isDragging())
        return {};
    if (m_session.canUndo() != (m_position > 0) ||
        m_session.canRedo() != (m_position + 1 < m_states.size()))
        return u"undo or redo is not as the steps ask for"_s;
    if (cells == m_states[m_position])
        return {};
    QString fault = u"the table is"_s;
    for (const QStringList& column : cells + Cells{{u"instead of"_s}} + m_states[m_position])
        fault += u"\n  "_s + column.join(u'|');
    return fault;
}

QString CheckHistory(ProfileSession& session, QList<Cells>* seen) {
    session.EndDrag();
    const auto is = [&session](const Cells& cells) {
        return SameCells(session, CellsOf(session.table()), cells);
    };
    QList<Cells> states = {CellsOf(session.table())};
    while (session.Undo()) {
        const Cells undone = CellsOf(session.table());
        if (!session.Redo() || !is(states.last()))
            return u"redo does not take an undo back"_s;
        if (!session.Undo() || !is(undone))
            return u"undo does not take a redo back"_s;
        states.append(undone);
    }
    if (session.canUndo())
        return u"undo does not go to the first step"_s;
    for (qsizetype i = states.size() - 2; i >= 0; --i) {
        if (!session.Redo() || !is(states[i]))
            return u"redo does not go the way of undo"_s;
    }
    if (seen != nullptr)
        *seen = states;
    return {};
}
