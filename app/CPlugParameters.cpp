#include "app/CPlugParameters.h"

#include "app/CPlugExchangeFile.h"
#include "app/Message.h"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kFourthLine = 3;
constexpr qsizetype kCyclesLine = 10;
constexpr qsizetype kPointCountLine = 11;
constexpr qsizetype kPointLineCountLine = 12;
constexpr qsizetype kFirstPointLine = 13;
constexpr qsizetype kSecondPointLine = kFirstPointLine + 2;

constexpr char kTimeComment[] = "! Time at point|hr|0|+Inf";
constexpr char kValueComment[] = "! Value at point |any|-Inf|+Inf";

CPlugInstruction PointLine(const char* comment, qsizetype length, const QString& text) {
    CPlugInstruction line(QByteArray::fromRawData(comment, length));
    line.setCStringValue(0, text);
    return line;
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
    m_first_number = fourth->getIntValue(0);
    m_second_number = fourth->getIntValue(1);
    m_fourth_line_text = fourth->getCStringValue(2);
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
    m_points.reserve(std::max<qsizetype>(0, std::min(declared, possible)));
    for (qsizetype k = 0; k < declared; ++k) {
        CPlugPoint point;
        for (const auto& [offset, text] : {std::pair{0, &point.time}, std::pair{1, &point.value}}) {
            const CPlugInstruction* const line =
                m_file->getInstruction(kFirstPointLine + 2 * k + offset);
            if (line == nullptr)
                return;
            *text = line->getCStringValue(0);
        }
        m_points.append(point);
    }
}

CPlugPoint CPlugParameters::getPoint(qsizetype i) const {
    if (i < 0 || i >= m_points.size())
        throw std::invalid_argument("A point number is out of range.");
    return m_points[i];
}

void CPlugParameters::writeFile() {
    if (m_points.isEmpty()) {
        ShowMessage(u"CPlugParameters::writeFile() error: first point required"_s);
        return;
    }
    const qsizetype old_count = qsizetype{m_point_line_count} - 2;
    m_file->requireRange(kSecondPointLine, old_count);

    m_point_line_count = static_cast<int>(2 * m_points.size());
    m_point_count_minus_one = static_cast<int>(m_points.size() - 1);
    m_file->getInstruction(kPointLineCountLine)->setIntValue(0, m_point_line_count);
    m_file->getInstruction(kPointCountLine)->setIntValue(0, m_point_count_minus_one);
    m_file->getInstruction(kFirstPointLine)->setCStringValue(0, m_points.first().time);
    m_file->getInstruction(kFirstPointLine + 1)->setCStringValue(0, m_points.first().value);

    std::vector<CPlugInstruction> lines;
    lines.reserve(static_cast<size_t>(2 * (m_points.size() - 1)));
    for (qsizetype i = 1; i < m_points.size(); ++i) {
        lines.push_back(PointLine(kTimeComment, sizeof kTimeComment - 1, m_points[i].time));
        lines.push_back(PointLine(kValueComment, sizeof kValueComment - 1, m_points[i].value));
    }
    m_file->replaceInstructions(kSecondPointLine, old_count, std::move(lines));
    m_file->writeFile();
}
