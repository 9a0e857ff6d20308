// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/PointLayout.h"
#include "profiles/PointReading.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

/// Which columns of a file hold the points.
struct PointColumns {
    /// As `time`: the times are 0, 1, 2, ... hours.
    static constexpr qsizetype kCounted = -1;

    ColumnSeparator separator = ColumnSeparator::None;
    qsizetype time = kCounted;  ///< from 0
    qsizetype value = 0;        ///< from 0
};

/// Called from time to time with the share that has been read, in per cent; returns false to
/// cancel.
using PointProgress = std::function<bool(int percent)>;

/// A text file with points, whoever wrote it: a table of columns, a function that the editor has
/// saved, or an exchange file. Code page 1252 or UTF-8, with or without a mark, any line ends.
/// Lines of comments ("#", "!", "//") and headers are passed over, and so is a comment behind the
/// numbers of a line.
///
///     const PointFile file = PointFile::Open(path);
///     if (file.fault()) ...                       // its message
///     PointColumns columns = file.likelyColumns();
///     if (file.needsChoice()) ...                 // ask, with layouts() and Preview()
///     PointReading points = file.Read(columns, progress);
///
/// The content is held once, as bytes. A line longer than 1 MiB holds no point.
class PointFile {
public:
    explicit PointFile(QByteArray content);

    /// The regular file at `path`. One of more than 256 MiB is not read.
    static PointFile Open(const QString& path);

    /// Why there is nothing to read.
    const std::optional<PointFault>& fault() const { return m_fault; }

    /// Whether the user has to say which columns hold the points: there are other than two, not
    /// both of them hold numbers, or the lines can be read in more than one way.
    bool needsChoice() const;

    /// The ways to read the lines, the likeliest first. None for a function that the editor has
    /// saved and for an exchange file, where there is nothing to choose.
    const QList<PointLayout>& layouts() const { return m_layouts; }

    /// The first columns of numbers of a layout. A single one holds values.
    static PointColumns ColumnsOf(const PointLayout& layout);

    /// Those of the likeliest layout.
    PointColumns likelyColumns() const;

    /// The cells of the first lines, headers included, for people to see. Long texts are cut.
    QList<QStringList> Preview(ColumnSeparator separator) const;

    /// The points in the order of the file. `columns` counts for a table only. All numbers have the
    /// same decimal sign, the first one that is found.
    PointReading Read(const PointColumns& columns, const PointProgress& progress = {}) const;

private:
    enum class Format { Table, SavedFunction, ExchangeFile };
    class Lines;

    Format FindFormat() const;
    QString Decoded(QByteArrayView bytes) const;
    void FindLayout();
    PointReading ReadTable(const PointColumns& columns, const PointProgress& progress) const;
    PointReading ReadSavedFunction(const PointProgress& progress) const;
    PointReading ReadExchangeFile(const PointProgress& progress) const;

    QByteArray m_bytes;
    QByteArrayView m_content;  // without the mark
    bool m_utf8 = false;
    Format m_format = Format::Table;
    QList<PointLayout> m_layouts;
    QStringList m_first_lines;  // of the table
    std::optional<PointFault> m_fault;
};
