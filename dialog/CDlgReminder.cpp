// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/CDlgReminder.h"

#include "dialog/ReminderText.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QScreen>
#include <QTextBrowser>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

CDlgReminder::CDlgReminder(const CommandRows& commands, QWidget* parent) : QDialog(parent) {
    setWindowTitle(u"Aide-mémoire"_s);
    auto* const text = new QTextBrowser(this);
    text->setHtml(ReminderText(commands));
    text->setAccessibleName(windowTitle());
    auto* const buttons = new QDialogButtonBox(this);
    buttons->addButton(u"OK"_s, QDialogButtonBox::AcceptRole)->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addWidget(buttons);
    constexpr QSize kUsualSize = {800, 800};
    resize(kUsualSize.boundedTo(screen()->availableSize() * 0.9));
}
