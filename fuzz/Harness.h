// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SessionChecks.h"
#include "base/Message.h"
#include "chart/CGraphControl.h"
#include "profiles/ProfileSession.h"

#include <cstddef>
#include <cstdint>

/// What the fuzz targets share.

/// Ends the process when `condition` does not hold: a finding, reported with the input at hand.
void Require(bool condition, const char* what);

/// The same for a check that tells what does not hold.
void RequireNone(const QString& fault);

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

/// A session with a chart as the dialog has it. The numbers in `line` are handed over as times,
/// values and names; there are two daily profiles to choose from.
class Editing {
public:
    Editing(ProfileKind kind, QByteArrayView line, DisplayMode mode = DisplayMode::Edit);

    ProfileSession& session() { return m_session; }
    ProfileTable& table() { return m_session.table(); }
    /// Each column with its header.
    Cells cells() const;

    /// All that a refused operation must leave alone.
    QByteArray State() const;

    /// What SessionChecks.h says of rows and chart; times stay in order once they are, until a file
    /// is read.
    void Check();

    /// As in SessionChecks.h. Returns the cells at the start.
    Cells CheckHistory();

    bool Same(const Cells& left, const Cells& right) const {
        return SameCells(m_session, left, right);
    }

private:
    ProfileSession m_session;
    CGraphControl m_chart;
    bool m_sorted = false;
};
