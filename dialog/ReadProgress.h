// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QProgressDialog>

#include <memory>

class QWidget;

/// A progress bar with a button to cancel, for work that may take long. It appears when the work
/// still goes on after a while: short work is shown nothing.
class ReadProgress {
public:
    static constexpr int kUsualDelay = 1000;

    /// Appears over `window` after `delay` milliseconds.
    explicit ReadProgress(QWidget* window, int delay = kUsualDelay);

    /// Shows how far the work is. False once the user has cancelled.
    bool Show(int percent);

private:
    QWidget* m_window;  // not owned
    int m_delay;
    QElapsedTimer m_started;
    std::unique_ptr<QProgressDialog> m_bar;
};
