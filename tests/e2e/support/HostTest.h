// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ExchangeText.h"
#include "HostRun.h"
#include "VirtualScreen.h"

#include <QTemporaryDir>
#include <QTest>

#include <functional>

/// A test before a screen of its own, with a folder for its files.
class HostTest : public QObject {
protected:
    void StartScreen() {
        QVERIFY(m_folder.isValid());
        const QString problem = m_screen.Start();
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }

    VirtualScreen m_screen;
    QTemporaryDir m_folder;
    QString m_file = m_folder.filePath(QStringLiteral("exchange file.txt"));
};

/// A run whose main dialog is shown. Fails the running test when it does not come.
struct EditorRun : HostRun {
    EditorRun(const VirtualScreen& screen, const QStringList& arguments,
              const std::function<void(QProcess&)>& prepare = {})
        : HostRun(screen) {
        if (prepare)
            prepare(Program());
        Start(arguments);
        if (!WaitForDialog())
            QTest::qFail("the dialog does not come", __FILE__, __LINE__);
    }
};
