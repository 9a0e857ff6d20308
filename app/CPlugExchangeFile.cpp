// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CPlugExchangeFile.h"

#include "app/TraceLog.h"
#include "base/FileReplace.h"
#include "base/Message.h"

#include <QFile>
#include <QHashFunctions>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// Contents are compared by a hash. It is computed piece by piece, so a file is never in memory as a
// whole.
constexpr qsizetype kHashedPiece = 1024 * 1024;

size_t HashOf(QByteArrayView content) {
    size_t hash = 0;
    while (!content.isEmpty()) {
        const QByteArrayView piece = content.first(std::min(kHashedPiece, content.size()));
        hash = qHashBits(piece.data(), static_cast<size_t>(piece.size()), hash);
        content = content.sliced(piece.size());
    }
    return hash;
}

// Nothing for a file that cannot be read.
std::optional<size_t> HashOfFile(const QString& path) {
    QFile file;
    if (!OpenRegularFile(file, path, QIODevice::ReadOnly | QIODevice::Unbuffered))
        return std::nullopt;
    size_t hash = 0;
    QByteArray piece(kHashedPiece, Qt::Uninitialized);
    qint64 length = 0;
    while ((length = file.read(piece.data(), piece.size())) > 0)
        hash = qHashBits(piece.constData(), static_cast<size_t>(length), hash);
    return length == 0 ? std::optional(hash) : std::nullopt;
}

// The line end that a file with this content is written with.
QByteArray LineEndOf(QByteArrayView content) {
    const qsizetype first = content.indexOf('\n');
    return first > 0 && content[first - 1] == '\r' ? "\r\n"_ba : kPlatformLineEnd.toByteArray();
}

// Room for a content of about the same length that is put together piece by piece.
qsizetype LikelySize(const QByteArray& content) {
    return content.size() + content.size() / 8;
}

// Views the bytes without a copy.
QByteArray AsArray(QByteArrayView line) {
    return QByteArray::fromRawData(line.data(), line.size());
}

}  // namespace

CPlugExchangeFile::CPlugExchangeFile(const QString& file_name)
    : m_shown_name(ShownPath(file_name)), m_path(AbsolutePath(file_name)) {
}

void CPlugExchangeFile::readFile() {
    m_loaded = false;
    std::optional<QByteArray> content = ReadRegularFile(m_path);
    if (!content) {
        ShowMessage(u"cplug: unable to open exchange file ! ("_s + m_shown_name + u')');
        return;
    }
    m_opened.clear();
    m_content = std::move(*content);
    m_hash = HashOf(m_content);
    m_rebuilt = false;
    findLines();
    m_line_end = LineEndOf(m_content);
    TraceLog trace;
    for (qsizetype i = 0; i < instructionCount(); ++i)
        CPlugInstruction(AsArray(line(i)), &trace);
    m_loaded = true;
}

void CPlugExchangeFile::findLines() {
    m_starts.clear();
    qsizetype start = 0;
    do {
        m_starts.push_back(start);
        start = m_content.indexOf('\n', start) + 1;
    } while (start > 0);
}

QByteArrayView CPlugExchangeFile::line(qsizetype index) const {
    const auto i = static_cast<size_t>(index);
    const QByteArrayView rest = QByteArrayView(m_content).sliced(m_starts.at(i));
    if (i + 1 == m_starts.size())
        return rest;
    const qsizetype length = m_starts[i + 1] - m_starts[i] - 1;
    // In written lines a CR belongs to the line end only in a file with CR LF.
    const bool may_have_cr = !m_rebuilt || m_line_end.size() > 1;
    const bool has_cr = may_have_cr && length > 0 && rest[length - 1] == '\r';
    return rest.first(has_cr ? length - 1 : length);
}

CPlugInstruction* CPlugExchangeFile::getInstruction(qsizetype index) {
    if (index < 0)
        throw std::invalid_argument("A line number of the exchange file is negative.");
    if (index >= instructionCount()) {
        ShowMessage(u"CPlugInstruction::setCStringValue: value not found"_s);
        return nullptr;
    }
    return &m_opened.try_emplace(index, AsArray(line(index))).first->second;
}

void CPlugExchangeFile::requireRange(qsizetype index, qsizetype count) const {
    if (index < 0 || count < 0 || index > instructionCount() || count > instructionCount() - index)
        throw std::invalid_argument(
            "The point lines of the exchange file do not fit its contents; nothing was written.");
}

// Adds the lines from `first` up to but without `last`, each with its line end.
void CPlugExchangeFile::appendRebuilt(QByteArray& out, qsizetype first, qsizetype last) const {
    for (qsizetype i = first; i < last; ++i) {
        if (const auto opened = m_opened.find(i); opened != m_opened.end())
            opened->second.appendLine(out);
        else if (m_rebuilt)
            out.append(line(i));
        else
            CPlugInstruction(AsArray(line(i))).appendLine(out);
        out.append(m_line_end);
    }
}

// `content` has a line end behind every line, the last one included.
void CPlugExchangeFile::setRebuilt(QByteArray content) {
    content.chop(m_line_end.size());
    m_opened.clear();
    m_content = std::move(content);
    m_rebuilt = true;
    findLines();
}

void CPlugExchangeFile::replaceInstructions(qsizetype index, qsizetype count,
                                            const LineAppender& append) {
    requireRange(index, count);
    QByteArray content;
    content.reserve(LikelySize(m_content));
    QByteArray tail;
    appendRebuilt(content, 0, index);
    appendRebuilt(tail, index + count, instructionCount());
    // Free the old content first: this halves the peak memory.
    m_opened.clear();
    m_starts.clear();
    m_content.clear();
    append(content, m_line_end);
    content.append(tail);
    setRebuilt(std::move(content));
}

bool CPlugExchangeFile::writeFile() {
    if (!m_loaded)
        return true;
    if (!m_rebuilt || !m_opened.empty()) {
        QByteArray content;
        content.reserve(LikelySize(m_content));
        appendRebuilt(content, 0, instructionCount());
        setRebuilt(std::move(content));
    }
    const bool changed = HashOfFile(m_path) != m_hash;
    const bool held = changed && IsHeldByOthers(m_path);
    if (changed && !held &&
        !AskYesNo(u"The exchange file was changed by another program.\nReplace it ?"_s,
                  u"Exchange file"_s))
        return false;
    m_content.append(m_line_end);
    const bool written = !held && ReplaceFile(m_path, m_content);
    if (written)
        m_hash = HashOf(m_content);
    m_content.chop(m_line_end.size());
    if (!written)
        ShowMessage(u"cplug: unable to open exchange file for writing ! ("_s + m_shown_name + u')');
    return written;
}
