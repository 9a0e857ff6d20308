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

    /// What a command lacks memory for is told and left out: the dialog stays, with all edits.
    bool notify(QObject* object, QEvent* event) override;

    /// Does the whole run. Always false: there is no message loop to enter afterwards.
    bool InitInstance();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    bool WriteBack(const CDlgGridChart& dialog);

    UserPrompts m_prompts;
    CPlugExchangeFile m_exchange_file;
    CPlugParameters m_parameters;
};
