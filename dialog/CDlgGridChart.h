// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/ChartPicture.h"
#include "dialog/Command.h"
#include "dialog/DialogControls.h"
#include "profiles/ProfileSession.h"

#include <QDialog>
#include <QStringList>

#include <functional>
#include <optional>
#include <utility>

class CGraphControl;
class CGraphView;
class CGridControl;
class DialogCommands;
class MeanLabel;
class TableRoom;

/// The main dialog: grid and chart of a session side by side, with the commands. It connects the
/// parts; the session does most of the work of the commands.
class CDlgGridChart : public QDialog {
    Q_OBJECT

public:
    /// What `DoModal` returns.
    enum Result : int { kEndedAtStart = 0, kAccepted = 1, kCancelled = 2 };

    explicit CDlgGridChart(SessionSetup setup, QWidget* parent = nullptr);
    ~CDlgGridChart() override;

    /// `accepts` is called on OK, before anything is closed; false keeps the dialog as it is.
    void SetAcceptance(std::function<bool()> accepts) { m_accepts = std::move(accepts); }

    /// Runs the dialog to its end: a `Result`.
    int DoModal();

    /// The rows as they stand in the grid.
    void CopyRowsTo(QStringList& times, QStringList& values) const;

    const ProfileSession& session() const { return m_session; }

public slots:
    /// Escape, the close box and the Cancel button: asks before edits are lost.
    void reject() override;

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    bool OnInitDialog();
    void CreateControls();
    CommandRows Commands();
    void CreateChart();
    void Connect();
    void UpdateState();
    void PlaceControls();
    void EndDialog(int result);

    void AddPoint();
    std::optional<ChartPicture> Picture() const;
    void RedrawChart();
    void OpenMenu(QPoint at);
    void OnOK();

    ProfileSession m_session;
    DialogControls m_controls;
    DialogCommands* m_commands = nullptr;
    CGridControl* m_grid = nullptr;
    TableRoom* m_room = nullptr;
    MeanLabel* m_mean = nullptr;
    CGraphControl* m_chart = nullptr;
    CGraphView* m_view = nullptr;     // nullptr in view-only mode
    std::function<bool()> m_accepts;  // empty: always accepts
    int m_result = kCancelled;
};
