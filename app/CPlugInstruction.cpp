// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CPlugInstruction.h"

#include "app/TraceLog.h"
#include "base/Cp1252.h"
#include "base/EnglishAtof.h"
#include "base/Message.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr char kSeparator = ' ';
constexpr char kMarker = '!';

// What a message shows of a comment at most. A file may hold one of any length.
constexpr qsizetype kLongestShown = 10'000;

struct SplitLine {
    QByteArrayView values;
    QByteArrayView comment;
};

// A comment line is all comment. Elsewhere the comment begins behind the first marker, further
// markers right behind it are passed over, and the next marker ends it.
SplitLine Split(QByteArrayView line) {
    if (line.startsWith(kMarker))
        return {{}, line};
    const qsizetype marker = line.indexOf(kMarker);
    if (marker < 0)
        return {line, {}};
    const auto* const from =
        std::find_if(line.begin() + marker, line.end(), [](char c) { return c != kMarker; });
    const auto* const to = std::find(from, line.end(), kMarker);
    return {line.first(marker), QByteArrayView(from, to)};
}

// Takes the next value off the front of `rest`; false when there is none.
bool NextValue(QByteArrayView& rest, QByteArrayView& value) {
    const auto* const from =
        std::find_if(rest.begin(), rest.end(), [](char c) { return c != kSeparator; });
    const auto* const to = std::find(from, rest.end(), kSeparator);
    value = QByteArrayView(from, to);
    rest = QByteArrayView(to, rest.end());
    return !value.isEmpty();
}

void AppendValue(QByteArray& out, QByteArrayView value) {
    out.append(value);
    out.append(kSeparator);
}

void AppendComment(QByteArray& out, QByteArrayView comment) {
    if (comment.isEmpty())
        return;
    if (!comment.startsWith(kMarker))
        out.append(kMarker);
    out.append(comment);
}

int LeadingInt(QByteArrayView text) {
    constexpr long long kLimit = std::numeric_limits<int>::max();
    const auto* p = text.begin();
    while (p != text.end() && IsBlank(*p))
        ++p;
    const bool negative = p != text.end() && *p == '-';
    if (p != text.end() && (*p == '-' || *p == '+'))
        ++p;
    long long number = 0;
    for (; p != text.end() && *p >= '0' && *p <= '9'; ++p)
        number = std::min(number * 10 + (*p - '0'), kLimit + 1);
    return static_cast<int>(negative ? -number : std::min(number, kLimit));
}

void RequireIndex(int n) {
    if (n < 0)
        throw std::invalid_argument("A value number of an exchange file line is negative.");
}

}  // namespace

CPlugInstruction::CPlugInstruction(QByteArray line, TraceLog* trace) : m_line(std::move(line)) {
    if (trace != nullptr)
        parse(trace);
}

void CPlugInstruction::parse(TraceLog* trace) const {
    QByteArrayView rest = Split(m_line).values;
    for (QByteArrayView value; NextValue(rest, value);)
        trace->Token(value);
}

QByteArray CPlugInstruction::getLine() const {
    QByteArray line;
    appendLine(line);
    return line;
}

void CPlugInstruction::appendLine(QByteArray& out) const {
    if (m_parts) {
        for (const QByteArray& value : m_parts->values)
            AppendValue(out, value);
        AppendComment(out, m_parts->comment);
        return;
    }
    SplitLine split = Split(m_line);
    for (QByteArrayView value; NextValue(split.values, value);)
        AppendValue(out, value);
    AppendComment(out, split.comment);
}

QList<QByteArray> CPlugInstruction::values() const {
    if (m_parts)
        return m_parts->values;
    QList<QByteArray> values;
    QByteArrayView rest = Split(m_line).values;
    for (QByteArrayView value; NextValue(rest, value);)
        values.append(value.toByteArray());
    return values;
}

QByteArray CPlugInstruction::comment() const {
    return m_parts ? m_parts->comment : Split(m_line).comment.toByteArray();
}

QString CPlugInstruction::shownComment() const {
    const QByteArrayView comment =
        m_parts ? QByteArrayView(m_parts->comment) : Split(m_line).comment;
    return FromCp1252(comment.first(std::min(comment.size(), kLongestShown)));
}

bool CPlugInstruction::findValue(int n, QByteArrayView& value) const {
    RequireIndex(n);
    if (m_parts) {
        if (n >= m_parts->values.size())
            return false;
        value = m_parts->values[n];
        return true;
    }
    QByteArrayView rest = Split(m_line).values;
    for (int i = 0; NextValue(rest, value); ++i) {
        if (i == n)
            return true;
    }
    return false;
}

bool CPlugInstruction::hasValue(int n) const {
    QByteArrayView value;
    return findValue(n, value);
}

int CPlugInstruction::getIntValue(int n) const {
    QByteArrayView value;
    if (findValue(n, value))
        return LeadingInt(value);
    ShowMessage(u"CPlugInstruction::getIntValue error: value not found: "_s + shownComment());
    return 0;
}

QString CPlugInstruction::getCStringValue(int n) const {
    QByteArrayView value;
    if (findValue(n, value))
        return FromCp1252(value);
    ShowMessage(u"CPlugInstruction::setCStringValue: value not found: "_s + shownComment());
    return {};
}

void CPlugInstruction::setCStringValue(int n, const QString& text) {
    RequireIndex(n);
    if (!m_parts)
        m_parts = std::make_unique<Parts>(Parts{values(), comment()});
    while (m_parts->values.size() <= n)
        m_parts->values.append("0"_ba);
    m_parts->values[n] = ToCp1252(text);
}

void CPlugInstruction::setIntValue(int n, int number) {
    setCStringValue(n, QString::number(number));
}
