// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/CDocControl.h"
#include "profiles/ProfileFile.h"
#include "profiles/ProfileSession.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

/// What must hold of a session and its chart whatever was done to them, for unit tests and fuzz
/// targets alike. Each check returns what does not hold, "" when all does.

/// The whole text is a number, and neither infinite nor none.
bool IsFiniteNumber(const QString& text);

/// All texts of a table, a list a column.
using Cells = QList<QStringList>;

Cells CellsOf(const ProfileTable& table);

/// The same texts. Rows of points that move are printed anew: there the same numbers.
bool SameCells(const ProfileSession& session, const Cells& left, const Cells& right);

/// Are the times of all rows in order?
bool TimesAreSorted(const ProfileTable& table);

/// The chart has an item for each row, with its numbers and, where it has no times, its label.
QString CheckChart(const ProfileTable& table, const CDocControl& chart);

/// Number cells hold numbers and the row labels are those of the kind.
QString CheckRows(const ProfileSession& session);

/// What was written of `kind` can be read and holds `content`.
QString CheckWritten(ProfileKind kind, QByteArray bytes, const ProfileContent& content);

/// The states that undo and redo must reach, as a plain list that follows a session.
class StateList {
public:
    explicit StateList(const ProfileSession& session);

    /// The table stands at the list's current state, and undo and redo go on where the list does.
    /// A drag that is still open is no state yet.
    QString Check() const;

    /// Does `undo`, or `redo`, of the session and goes the same step in the list.
    void Undo(const std::function<void()>& undo) { Travel(undo, -1); }
    void Redo(const std::function<void()>& redo) { Travel(redo, 1); }

    /// Does something that ends with all steps forgotten.
    void Forget(const std::function<void()>& change);

private:
    void Note();
    void Travel(const std::function<void()>& travel, qsizetype by);

    const ProfileSession& m_session;
    QObject m_context;
    QList<Cells> m_states;
    qsizetype m_position = 0;
    bool m_recording = true;
};

/// Undo to the first step, each with a redo in between, and redo to the last one again. The states
/// go to `seen`, the one before the first step last.
QString CheckHistory(ProfileSession& session, QList<Cells>* seen = nullptr);
