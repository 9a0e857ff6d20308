#pragma once

#include "app/Message.h"
#include "chart/CGraphControl.h"
#include "profiles/ProfileSession.h"

#include <cstddef>
#include <cstdint>

/// What the fuzz targets share.

/// Ends the process when `condition` does not hold: a finding, reported with the input at hand.
void Require(bool condition, const char* what);

/// The bytes of one run, taken from the front. Nothing but zeros and empty lines follow the end.
struct Input {
    Input(const uint8_t* data, size_t size)
        : rest(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)) {}

    int Byte();
    QByteArrayView Line();
    /// One of the five kinds, or one that is not known.
    ProfileKind Kind() { return static_cast<ProfileKind>(Byte() % 6 - 1); }

    QByteArrayView rest;
};

/// Keeps the messages that are shown while it lives, and answers all questions with Yes.
struct Prompts {
    Prompts();
    ~Prompts() { SetMessageHandler(m_former); }
    Q_DISABLE_COPY(Prompts)

    QStringList messages;

private:
    MessageHandler m_former;
};

/// The path of `name` in a folder of this process.
QString ScratchPath(const QString& name);
QByteArray ReadScratch(const QString& path);
void WriteScratch(const QString& path, QByteArrayView bytes);

/// All texts of a table: each column with its header.
using Cells = QList<QStringList>;

/// A session with a chart as the dialog has it. The numbers in `line` are handed over as times,
/// values and names; there are two daily profiles to choose from.
class Editing {
public:
    Editing(ProfileKind kind, QByteArrayView line, DisplayMode mode = DisplayMode::Edit);

    ProfileSession& session() { return m_session; }
    ProfileTable& table() { return m_session.table(); }
    Cells cells() const;

    /// All that a refused operation must leave alone.
    QByteArray State() const;

    /// Number cells hold numbers, the chart shows them, row labels stay; times stay in order
    /// once they are, until a file is read.
    void Check();

    /// Undo to the start, each step with a redo in between, and redo to the end again. Returns the
    /// cells at the start.
    Cells CheckHistory();

    /// The same texts. Rows of points that move are printed anew: there the same numbers.
    bool Same(const Cells& left, const Cells& right) const;

private:
    bool TimesAreSorted() const;

    ProfileSession m_session;
    CGraphControl m_chart;
    bool m_sorted = false;
};
