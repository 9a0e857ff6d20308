// SPDX-License-Identifier: GPL-3.0-or-later
#include "MessageScript.h"

#include <QTest>

#include <utility>

MessageScript::MessageScript() {
    MessageHandler handler;
    handler.show = [this](const QString& text, MessageIcon icon, const QString& caption) {
        m_last_icon = icon;
        Take({text, caption, false, false});
    };
    handler.ask_yes_no = [this](const QString& text, const QString& caption) {
        return Take({text, caption, true, false});
    };
    m_former = SetMessageHandler(std::move(handler));
}

MessageScript::~MessageScript() {
    SetMessageHandler(std::move(m_former));
    if (!Done())
        QTest::qFail(qPrintable(Report()), __FILE__, __LINE__);
}

void MessageScript::Expect(const QString& text, const QString& caption) {
    m_expected.append({text, caption, false, false});
}

void MessageScript::ExpectQuestion(const QString& text, const QString& caption, bool yes) {
    m_expected.append({text, caption, true, yes});
}

bool MessageScript::Take(const Expected& came) {
    if (!m_expected.isEmpty() && m_expected.first().text == came.text &&
        m_expected.first().caption == came.caption && m_expected.first().question == came.question)
        return m_expected.takeFirst().yes;
    m_surprises.append(came.text);
    return false;
}

QString MessageScript::Report() const {
    QString report = QStringLiteral("unexpected: \"%1\"").arg(m_surprises.join(u"\", \""));
    for (const Expected& expected : m_expected)
        report += QStringLiteral("\nmissing: \"%1\"").arg(expected.text);
    return report;
}
