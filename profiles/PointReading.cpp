// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/PointReading.h"

#include "base/ShownText.h"
#include "profiles/PointCells.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMaxQuoted = 60;

QString Quoted(const QString& text) {
    QString shown = ShownText(text, kMaxQuoted);
    std::replace_if(
        shown.begin(), shown.end(), [](QChar c) { return !c.isPrint() && c != u'\t'; },
        QChar(QChar::ReplacementCharacter));
    return u"« "_s + shown + u" »"_s;
}

QString FaultText(const PointFault& fault) {
    const QString line = u"Ligne %1 : "_s.arg(fault.line);
    switch (fault.kind) {
        case PointFault::Kind::NoNumber:
            return line + Quoted(fault.text) + u" n'est pas un nombre."_s;
        case PointFault::Kind::NotFinite: return line + u"le résultat n'est pas un nombre fini."_s;
        case PointFault::Kind::NoPoint:
            return line + Quoted(fault.text) + u" n'est pas un point."_s;
        case PointFault::Kind::NoPoints: return u"Aucun point n'a été trouvé."_s;
        case PointFault::Kind::TooMany: return line + u"il y a trop de points."_s;
        case PointFault::Kind::CannotOpen: return u"Le fichier n'a pas pu être ouvert."_s;
        case PointFault::Kind::TooLarge: return u"Le fichier est trop grand."_s;
    }
    return {};
}

}  // namespace

PointFault PointFault::At(Kind kind, qsizetype line, QStringView text) {
    text = text.trimmed();
    return {kind, line, text.first(std::min(text.size(), kMaxQuoted + 1)).toString()};
}

QString FaultMessage(const PointFault& fault, PointTask task) {
    switch (task) {
        case PointTask::Insert: return FaultText(fault) + u"\nRien n'a été inséré."_s;
        case PointTask::Import: return FaultText(fault) + u"\nRien n'a été importé."_s;
        case PointTask::Change: break;
    }
    return FaultText(fault) + u"\nRien n'a été changé."_s;
}

bool PointCollector::Add(QStringList& list, QStringView cell, qsizetype line) {
    if (list.size() == kMaxPoints)
        return Fail(PointFault::Kind::TooMany, line, {});
    std::optional<QString> number = PointNumber(cell);
    if (number && m_signs == DecimalSigns::Same) {
        const auto sign =
            std::find_if(cell.begin(), cell.end(), [](QChar c) { return c == u'.' || c == u','; });
        if (sign != cell.end() && m_sign.isNull())
            m_sign = *sign;
        else if (sign != cell.end() && m_sign != *sign)
            number.reset();
    }
    if (!number)
        return Fail(PointFault::Kind::NoNumber, line, cell);
    list.append(*std::move(number));
    return true;
}

bool PointCollector::Fail(PointFault::Kind kind, qsizetype line, QStringView text) {
    m_reading.fault = PointFault::At(kind, line, text);
    return false;
}

PointReading PointCollector::Take() {
    if (m_reading.points.values.isEmpty() && !m_reading.fault && !m_reading.cancelled)
        Fail(PointFault::Kind::NoPoints, 0, {});
    if (m_reading.fault || m_reading.cancelled)
        m_reading.points = {};
    return std::exchange(m_reading, {});
}
