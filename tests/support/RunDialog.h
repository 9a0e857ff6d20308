// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialog/CDlgGridChart.h"

#include <QTimer>

#include <functional>

/// Runs the dialog and does `steps` once it is on the screen. A dialog that the steps leave open is
/// closed behind them without a question. Returns what `DoModal` returns.
inline int RunDialog(CDlgGridChart& dialog, const std::function<void()>& steps) {
    QTimer::singleShot(0, &dialog, [&dialog, &steps] {
        steps();
        if (dialog.isVisible())
            dialog.done(CDlgGridChart::kCancelled);
    });
    return dialog.DoModal();
}
