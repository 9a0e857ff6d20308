// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/PointTexts.h"

#include <QChar>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

/// Why a text was refused as a whole.
struct PointFault {
    enum class Kind {
        NoNumber,    ///< a cell of the line is no number
        NotFinite,   ///< the result for the line is no finite number
        NoPoint,     ///< the line has another number of cells than it should
        NoPoints,    ///< the text holds no point at all; no line
        TooMany,     ///< more than `kMaxPoints`, from this line on
        CannotOpen,  ///< the file is not there, not a regular one or not readable; no line
        TooLarge,    ///< the file is larger than any that is read; no line
    };

    Kind kind = Kind::NoPoints;
    qsizetype line = 0;  ///< from 1; 0 for none
    QString text;        ///< of the cell or the line, as it stands there; long ones are cut

    /// With as much of `text` as a message shows.
    static PointFault At(Kind kind, qsizetype line, QStringView text);

    friend bool operator==(const PointFault&, const PointFault&) = default;
};

/// The action that a fault prevented.
enum class PointTask { Insert, Import, Change };

/// The message of a fault: its place, its kind, and that nothing has changed. Long texts are cut;
/// characters that cannot be shown are replaced.
QString FaultMessage(const PointFault& fault, PointTask task);

/// More points are not taken from a text: they would only fill the memory.
constexpr qsizetype kMaxPoints = 10'000'000;

/// The points of a text in its order, as texts of cells. With a fault, or when the user has
/// cancelled, there are none.
struct PointReading {
    PointTexts points;
    std::optional<PointFault> fault;
    bool cancelled = false;
};

/// Puts the points of a text together and keeps the first fault.
class PointCollector {
public:
    /// `Same`: all numbers of the text have the decimal sign of the first one that has any.
    enum class DecimalSigns { Any, Same };

    explicit PointCollector(DecimalSigns signs) : m_signs(signs) {}

    /// Each checks one number of the line and appends it. False when it is at fault.
    /// @{
    bool AddTime(QStringView cell, qsizetype line) {
        return Add(m_reading.points.times, cell, line);
    }
    bool AddValue(QStringView cell, qsizetype line) {
        return Add(m_reading.points.values, cell, line);
    }
    /// @}

    /// Returns false, for the callers' convenience.
    bool Fail(PointFault::Kind kind, qsizetype line, QStringView text);

    void Cancel() { m_reading.cancelled = true; }

    qsizetype count() const { return m_reading.points.values.size(); }

    /// The points; no point at all is a fault too.
    PointReading Take();

private:
    bool Add(QStringList& list, QStringView cell, qsizetype line);

    PointReading m_reading;
    DecimalSigns m_signs;
    QChar m_sign;
};
