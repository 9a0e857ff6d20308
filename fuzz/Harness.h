// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SessionChecks.h"
#include "TestFiles.h"
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
    explicit Input(QByteArrayView bytes) : rest(bytes) {}

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

/// A session with a chart as the dialog has it. The numbers in `line` are handed over as times,
/// values and names; there are two daily profiles to choose from.
struct Editing {
    Editing(ProfileKind kind, QByteArrayView line, DisplayMode mode = DisplayMode::Edit);

    Cells cells() const { return CellsOf(session.table()); }

    /// All that a refused operation must leave alone.
    QByteArray State() const;

    /// What SessionChecks.h says of rows and chart; times stay in order once they are, until a file
    /// is read.
    void Check() const;

    Prompts prompts;
    ProfileSession session;
    CGraphControl chart;

private:
    bool m_sorted = false;
};
