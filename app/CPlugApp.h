#pragma once

#include "app/CPlugExchangeFile.h"
#include "app/CPlugParameters.h"
#include "app/UserPrompts.h"
#include "profiles/ProfileSession.h"

#include <QApplication>

#include <memory>

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
    bool EditPoints(SessionSetup setup, QStringList& times, QStringList& values);
    void WriteBack(QStringList times, QStringList values);

    UserPrompts m_prompts;
    std::unique_ptr<CPlugExchangeFile> m_exchange_file;
    CPlugParameters m_parameters;
};
