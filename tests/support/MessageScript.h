// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Message.h"

#include <QList>
#include <QString>

/// Answers messages and questions from a script while it lives: the expected texts in order. A text
/// that is not the next one, or that comes when none is due, is a failure; so is one that never
/// came. Failures fail the running test when the script ends.
class MessageScript {
public:
    MessageScript();
    ~MessageScript();
    MessageScript(const MessageScript&) = delete;
    MessageScript& operator=(const MessageScript&) = delete;

    /// The next message is `text`.
    void Expect(const QString& text, const QString& caption = {});

    /// The next question is `text` with `caption`; it is answered with `yes`.
    void ExpectQuestion(const QString& text, const QString& caption, bool yes);

    /// All that was expected came and nothing else did.
    bool Done() const { return m_expected.isEmpty() && m_surprises.isEmpty(); }

    QString Report() const;

    /// Of the message that came last.
    MessageIcon LastIcon() const { return m_last_icon; }

private:
    struct Expected {
        QString text;
        QString caption;
        bool question = false;
        bool yes = false;
    };

    bool Take(const Expected& came);

    QList<Expected> m_expected;
    QStringList m_surprises;
    MessageIcon m_last_icon = MessageIcon::None;
    MessageHandler m_former;
};
