#include "app/CPlugExchangeFile.h"

#include "app/FileReplace.h"
#include "app/Message.h"
#include "app/TraceLog.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// Only a regular file has an end that can be waited for and a content that can be replaced.
std::optional<QByteArray> ReadContent(const QString& path) {
    QFile file(path);
    if (path.isEmpty() || !QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return std::nullopt;
    return content;
}

}  // namespace

CPlugExchangeFile::CPlugExchangeFile(const QString& file_name)
    : m_file_name(file_name),
      m_path(file_name.isEmpty() ? QString() : QFileInfo(file_name).absoluteFilePath()) {
#ifdef Q_OS_WIN
    m_line_end = "\r\n";
#endif
}

void CPlugExchangeFile::readFile() {
    m_loaded = false;
    std::optional<QByteArray> content = ReadContent(m_path);
    if (!content) {
        ShowMessage(u"cplug: unable to open exchange file ! ("_s + m_file_name + u')');
        return;
    }
    m_instructions.clear();
    m_content = std::move(*content);
    m_instructions.reserve(
        static_cast<size_t>(std::count(m_content.cbegin(), m_content.cend(), '\n')) + 1);
    TraceLog trace;
    const char* const end = m_content.constData() + m_content.size();
    const char* from = m_content.constData();
    for (bool more = true; more;) {
        const char* const to = std::find(from, end, '\n');
        more = to != end;
        const bool drop_cr = more && to != from && to[-1] == '\r';
        if (drop_cr && m_instructions.empty())
            m_line_end = "\r\n";
        m_instructions.emplace_back(QByteArray::fromRawData(from, to - from - (drop_cr ? 1 : 0)),
                                    &trace);
        from = to + (more ? 1 : 0);
    }
    m_loaded = true;
}

CPlugInstruction* CPlugExchangeFile::getInstruction(qsizetype index) {
    if (index < 0)
        throw std::invalid_argument("A line number of the exchange file is negative.");
    if (index >= instructionCount()) {
        ShowMessage(u"CPlugInstruction::setCStringValue: value not found"_s);
        return nullptr;
    }
    return &m_instructions[static_cast<size_t>(index)];
}

void CPlugExchangeFile::requireRange(qsizetype index, qsizetype count) const {
    if (index < 0 || count < 0 || index > instructionCount() || count > instructionCount() - index)
        throw std::invalid_argument(
            "The point lines of the exchange file do not fit its contents; nothing was written.");
}

void CPlugExchangeFile::replaceInstructions(qsizetype index, qsizetype count,
                                            std::vector<CPlugInstruction> lines) {
    requireRange(index, count);
    const auto first = m_instructions.begin() + index;
    const auto after = m_instructions.erase(first, first + count);
    m_instructions.insert(after, std::make_move_iterator(lines.begin()),
                          std::make_move_iterator(lines.end()));
}

void CPlugExchangeFile::writeFile() const {
    QByteArray content;
    content.reserve(m_content.size() + m_content.size() / 8);
    for (const CPlugInstruction& instruction : m_instructions) {
        instruction.appendLine(content);
        content.append(m_line_end);
    }
    if (!ReplaceFile(m_path, content))
        ShowMessage(u"cplug: unable to open exchange file for writing ! ("_s + m_file_name + u')');
}
