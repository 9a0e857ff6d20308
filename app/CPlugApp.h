// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/CPlugExchangeFile.h"
#include "app/CPlugParameters.h"
#include "dialog/UserPrompts.h"

#include <QApplication>

class CDlgGridChart;

/// The program: one pass from the exchange file through the dialog and back.
class CPlugApp : public QApplication {
    Q_OBJECT

public:
    CPlugApp(int& argc, char** argv);

    /// A command that runs out of memory shows a message. The dialog stays with all edits.
    bool notify(QObject* object, QEvent* event) override;

    /// Does the whole run. Always returns false: no message loop follows.
    bool InitInstance();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    bool WriteBack(const CDlgGridChart& dialog);

    UserPrompts m_prompts;
    CPlugExchangeFile m_exchange_file;
    CPlugParameters m_parameters;
};
