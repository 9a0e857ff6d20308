// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/PointFile.h"

#include <QList>
#include <QString>
#include <QStringList>

/// What the user can choose where a file of points can be read in more than one way: the separator,
/// then the columns of times and values. Choices count from 0.
class ImportChoice {
public:
    /// Starts with what the file most likely means. `file` outlives the choice.
    explicit ImportChoice(const PointFile& file);

    /// The separators as the user reads them, the likely ones first.
    QStringList Separators() const;

    /// Takes a separator and the likeliest columns with it.
    void SelectSeparator(int index);

    /// Choice 0 of the times counts them: 0, 1, 2, ... hours.
    /// @{
    QStringList TimeChoices() const;
    int time() const { return static_cast<int>(m_columns.time) + 1; }
    void SelectTime(int index) { m_columns.time = index - 1; }
    /// @}

    QStringList ValueChoices() const;
    int value() const { return static_cast<int>(m_columns.value); }
    void SelectValue(int index) { m_columns.value = index; }

    /// One column cannot hold both.
    bool isValid() const { return m_columns.time != m_columns.value; }

    const PointColumns& columns() const { return m_columns; }

    /// The first lines as cells; they may differ in length.
    const QList<QStringList>& preview() const { return m_preview; }

    /// What stands above the columns of the preview: their numbers and what they are taken for.
    QStringList PreviewHeaders() const;

private:
    const PointFile& m_file;
    QList<PointLayout> m_layouts;
    PointColumns m_columns;
    QList<QStringList> m_preview;
    int m_column_count = 0;
};
