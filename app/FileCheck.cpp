// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FileCheck.h"

#include "app/CPlugInstruction.h"
#include "app/ExchangeLines.h"
#include "base/EnglishAtof.h"
#include "base/FileReplace.h"
#include "base/ShownText.h"

#include <algorithm>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

// The bytes that code page 1252 leaves open.
constexpr std::string_view kOpenBytes = "\x81\x8d\x8f\x90\x9d";

QString Quoted(const QString& text) {
    constexpr qsizetype kMaxQuoted = 40;
    return ShownText(text, kMaxQuoted);
}

/// One check of one file. Goes through the lines from first to last.
class Check {
public:
    Check(const QByteArray& content, const FaultHandler& on_fault)
        : m_rest(content), m_on_fault(on_fault) {}

    FileCheck Run() {
        for (qsizetype i = 0; i < kFirstPointLine && !m_at_end; ++i)
            CheckHeaderLine(i);
        if (m_at_end)
            MissingLines(u"the file ends within its first 13 lines"_s);
        else
            CheckPoints();
        while (!m_at_end)
            NextLine();
        if (m_result.faults > kMaxFaults)
            m_on_fault(m_number, u"%1 more faults"_s.arg(m_result.faults - kMaxFaults));
        m_result.readable = true;
        return m_result;
    }

private:
    void Fault(qsizetype line, const QString& text) {
        if (++m_result.faults <= kMaxFaults)
            m_on_fault(line, text);
    }

    void MissingLines(const QString& text) { Fault(m_number + 1, text); }

    // Steps to the next line. Call it only while `m_at_end` is false.
    void NextLine() {
        const qsizetype end = m_rest.indexOf('\n');
        m_line = end < 0 ? m_rest : m_rest.first(end);
        m_at_end = end < 0;
        m_rest = m_rest.sliced(end < 0 ? m_rest.size() : end + 1);
        if (m_line.endsWith('\r') && !m_at_end)
            m_line.chop(1);
        ++m_number;
        const std::string_view bytes(m_line.data(), static_cast<size_t>(m_line.size()));
        if (const size_t at = bytes.find_first_of(kOpenBytes); at != std::string_view::npos)
            Fault(m_number, u"byte 0x%1 is outside code page 1252"_s.arg(
                                static_cast<uint>(static_cast<uchar>(bytes[at])), 2, 16));
    }

    // Value `index` of the current line; nothing when it is missing.
    std::optional<QString> Value(int index = 0) const {
        const CPlugInstruction line(QByteArray::fromRawData(m_line.data(), m_line.size()));
        if (!line.hasValue(index))
            return std::nullopt;
        return line.getCStringValue(index);
    }

    // The integer of a count; nothing after a fault.
    std::optional<qsizetype> Count(const QString& what) {
        const std::optional<QString> text = Value();
        if (!text) {
            Fault(m_number, what + u" is missing"_s);
            return std::nullopt;
        }
        bool whole = false;
        const qlonglong count = text->toLongLong(&whole);
        if (!whole) {
            Fault(m_number, u"%1 is %2, not a whole number"_s.arg(what, Quoted(*text)));
            return std::nullopt;
        }
        return count;
    }

    void CheckHeaderLine(qsizetype index) {
        NextLine();
        switch (index) {
            case kFourthLine: {
                bool first = false;
                bool second = false;
                Value(0).value_or(QString()).toLongLong(&first);
                Value(1).value_or(QString()).toLongLong(&second);
                if (!first || !second || !Value(2))
                    Fault(m_number, u"the line must begin with two whole numbers and a word"_s);
                break;
            }
            case kCyclesLine:
                if (const auto count = Count(u"cycles count"_s); count && *count != 1)
                    Fault(m_number, u"cycles count is %1, must be 1"_s.arg(*count));
                break;
            case kPointCountLine: m_points_less_one = Count(u"number of points less one"_s); break;
            case kPointLineCountLine: CheckPointLineCount(); break;
            default: break;
        }
    }

    void CheckPointLineCount() {
        const std::optional<qsizetype> count = Count(u"number of point lines"_s);
        if (!count)
            return;
        if (*count < 2 || *count % 2 != 0) {
            Fault(m_number,
                  u"number of point lines is %1, must be even and at least 2"_s.arg(*count));
            return;
        }
        m_result.summary.points = *count / 2;
        if (m_points_less_one && *m_points_less_one != m_result.summary.points - 1)
            Fault(m_number - 1, u"number of points less one is %1, must be %2"_s.arg(
                                    QString::number(*m_points_less_one),
                                    QString::number(m_result.summary.points - 1)));
    }

    void CheckPoints() {
        double last_time = 0.0;
        QString last_text;
        for (qsizetype i = 0; i < 2 * m_result.summary.points; ++i) {
            if (m_at_end || m_rest.isEmpty()) {
                MissingLines(u"%1 point lines are missing"_s.arg(2 * m_result.summary.points - i));
                return;
            }
            NextLine();
            const bool is_time = i % 2 == 0;
            const QString what = is_time ? u"time"_s : u"value"_s;
            const std::optional<QString> text = Value();
            if (!text) {
                Fault(m_number, what + u" is missing"_s);
                continue;
            }
            if (!IsNumber(*text)) {
                Fault(m_number, u"%1 is %2, not a number"_s.arg(what, Quoted(*text)));
                continue;
            }
            if (!is_time)
                continue;
            const double time = ParseNumber(*text);
            if (!last_text.isEmpty() && time < last_time)
                Fault(m_number, u"time is %1, below %2 of the point before"_s.arg(
                                    Quoted(*text), Quoted(last_text)));
            if (last_text.isEmpty())
                m_result.summary.first_time = *text;
            last_time = time;
            last_text = *text;
            m_result.summary.last_time = *text;
        }
    }

    QByteArrayView m_rest;  // behind the current line
    QByteArrayView m_line;
    qsizetype m_number = 0;  // of the current line, from 1
    bool m_at_end = false;   // the current line is the last one
    std::optional<qsizetype> m_points_less_one;
    const FaultHandler& m_on_fault;
    FileCheck m_result;
};

}  // namespace

FileCheck CheckExchangeFile(const QString& path, const FaultHandler& on_fault) {
    const std::optional<QByteArray> content = ReadRegularFile(path);
    return content ? Check(*content, on_fault).Run() : FileCheck();
}
