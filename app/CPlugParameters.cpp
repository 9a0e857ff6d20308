// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CPlugParameters.h"

#include "app/CPlugExchangeFile.h"
#include "app/ExchangeLines.h"
#include "base/Cp1252.h"
#include "base/Message.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kSecondPointLine = kFirstPointLine + 2;

constexpr QByteArrayView kTimeComment = "! Time at point|hr|0|+Inf";
constexpr QByteArrayView kValueComment = "! Value at point |any|-Inf|+Inf";

// Up to this many missing values are reported one by one. A file may lack a million.
constexpr int kMaxReports = 10;

void AppendPointLine(QByteArray& out, const QString& text, QByteArrayView comment,
                     const QByteArray& line_end) {
    AppendCp1252(out, text);
    out.append(' ');
    out.append(comment);
    out.append(line_end);
}

}  // namespace

void CPlugParameters::setParameters(CPlugExchangeFile* file) {
    m_file = file;
    m_file->readFile();
    if (!m_file->isLoaded()) {
        ShowMessage(u"Set parameter error: can not access file"_s);
        return;
    }
    if (!readHeader())
        return;
    if (m_cycles_count != 1) {
        ShowMessage(u"Wrong cycles count in file: 1 expected"_s);
        return;
    }
    readPoints();
}

bool CPlugParameters::readHeader() {
    const CPlugInstruction* const fourth = m_file->getInstruction(kFourthLine);
    if (fourth == nullptr)
        return false;
    // Reading the value is enough: a missing one shows its message.
    fourth->getIntValue(0);
    fourth->getIntValue(1);
    fourth->getCStringValue(2);
    const std::pair<qsizetype, int*> counts[] = {
        {kCyclesLine, &m_cycles_count},
        {kPointCountLine, &m_point_count_minus_one},
        {kPointLineCountLine, &m_point_line_count},
    };
    for (const auto& [index, target] : counts) {
        const CPlugInstruction* const line = m_file->getInstruction(index);
        if (line == nullptr)
            return false;
        *target = line->getIntValue(0);
    }
    return true;
}

void CPlugParameters::readPoints() {
    const qsizetype declared = m_point_line_count / 2;
    const qsizetype possible = (m_file->instructionCount() - kFirstPointLine) / 2;
    m_times.reserve(std::clamp<qsizetype>(possible, 0, std::max<qsizetype>(declared, 0)));
    m_values.reserve(m_times.capacity());
    qsizetype missing = 0;
    for (qsizetype k = 0; k < declared; ++k) {
        CPlugPoint point;
        if (!readText(kFirstPointLine + 2 * k, point.time, missing) ||
            !readText(kFirstPointLine + 2 * k + 1, point.value, missing))
            break;
        addPoint(point);
    }
    if (missing > kMaxReports)
        ShowMessage(
            u"CPlugParameters: value not found on %1 more lines"_s.arg(missing - kMaxReports));
}

// The first value of a line; "" when it is missing. False when the line itself is missing.
bool CPlugParameters::readText(qsizetype index, QString& text, qsizetype& missing) {
    if (index >= m_file->instructionCount()) {
        m_file->getInstruction(index);  // tells the user
        return false;
    }
    const QByteArrayView bytes = m_file->line(index);
    const CPlugInstruction line(QByteArray::fromRawData(bytes.data(), bytes.size()));
    if (missing < kMaxReports || line.hasValue(0))
        text = line.getCStringValue(0);
    // An empty text means that the value is missing.
    missing += text.isEmpty() ? 1 : 0;
    return true;
}

void CPlugParameters::addPoint(const CPlugPoint& point) {
    m_times.append(point.time);
    m_values.append(point.value);
}

void CPlugParameters::clearPoints() {
    // Assign empty lists: clear() of a shared list would allocate a new one of the same size.
    m_times = {};
    m_values = {};
}

std::pair<QStringList, QStringList> CPlugParameters::takePoints() {
    return {std::exchange(m_times, {}), std::exchange(m_values, {})};
}

void CPlugParameters::setPoints(QStringList times, QStringList values) {
    const qsizetype count = std::min(times.size(), values.size());
    m_times = std::move(times);
    m_values = std::move(values);
    for (QStringList* const list : {&m_times, &m_values}) {
        if (list->size() > count)  // resize() would copy a shared list
            list->resize(count);
    }
}

CPlugPoint CPlugParameters::getPoint(qsizetype i) const {
    if (i < 0 || i >= getPointCount())
        throw std::invalid_argument("A point number is out of range.");
    return {m_times[i], m_values[i]};
}

bool CPlugParameters::writeFile() {
    const qsizetype count = getPointCount();
    if (count == 0) {
        ShowMessage(u"CPlugParameters::writeFile() error: first point required"_s);
        return true;
    }
    const qsizetype old_count = qsizetype{m_point_line_count} - 2;
    m_file->requireRange(kSecondPointLine, old_count);

    m_point_line_count = static_cast<int>(2 * count);
    m_point_count_minus_one = static_cast<int>(count - 1);
    m_file->getInstruction(kPointLineCountLine)->setIntValue(0, m_point_line_count);
    m_file->getInstruction(kPointCountLine)->setIntValue(0, m_point_count_minus_one);
    m_file->getInstruction(kFirstPointLine)->setCStringValue(0, m_times.first());
    m_file->getInstruction(kFirstPointLine + 1)->setCStringValue(0, m_values.first());
    m_file->replaceInstructions(kSecondPointLine, old_count,
                                [this](QByteArray& out, const QByteArray& line_end) {
                                    for (qsizetype i = 1; i < m_times.size(); ++i) {
                                        AppendPointLine(out, m_times[i], kTimeComment, line_end);
                                        AppendPointLine(out, m_values[i], kValueComment, line_end);
                                    }
                                });
    return m_file->writeFile();
}
