// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/CDlgGridChart.h"

#include "base/Message.h"
#include "base/ShownText.h"
#include "chart/CGraphControl.h"
#include "chart/CGraphView.h"
#include "dialog/CDlgAjout.h"
#include "dialog/CDlgReminder.h"
#include "dialog/ChartCommands.h"
#include "dialog/DailyProfile.h"
#include "dialog/DialogCommands.h"
#include "dialog/EditCommands.h"
#include "dialog/MeanLabel.h"
#include "dialog/PictureCommands.h"
#include "dialog/PointCommands.h"
#include "dialog/RowCommands.h"
#include "dialog/TableRoom.h"
#include "grid/CGridControl.h"

#include <QApplication>
#include <QCheckBox>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPushButton>

using namespace Id;
using namespace Qt::StringLiterals;

CDlgGridChart::CDlgGridChart(SessionSetup setup, QWidget* parent)
    : QDialog(parent), m_session(std::move(setup)) {
    setWindowTitle(kMainDialogCaption.toString());
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
}

// A view that is hidden with the dialog still looks at the session.
CDlgGridChart::~CDlgGridChart() {
    delete m_view;
}

int CDlgGridChart::DoModal() {
    if (!OnInitDialog())
        return kEndedAtStart;
    exec();
    return m_result;
}

void CDlgGridChart::CopyRowsTo(QStringList& times, QStringList& values) const {
    m_session.CopyRowsTo(times, values);
}

bool CDlgGridChart::OnInitDialog() {
    if (!m_session.InitialFill())
        return false;
    CreateControls();
    m_grid->InitGrid();
    if (!m_session.isViewOnly())
        CreateChart();
    m_commands = new DialogCommands(Commands(), m_controls, &m_session, this);
    Connect();
    setMinimumSize(MainDialogStartSize(m_session.kind()));
    resize(minimumSize());
    PlaceControls();
    UpdateState();
    m_grid->SettleCurrentCell();
    m_grid->setFocus();
    return true;
}

void CDlgGridChart::CreateControls() {
    m_controls = DialogControls(kMainDialog, this, &m_session);
    m_grid = m_controls.Get<CGridControl>(kGrid);
    m_room = new TableRoom(&m_session, &m_controls, this);
    m_mean = new MeanLabel(&m_session, this);
    m_mean->setVisible(m_session.facts().coefficients);
    m_controls[kHelp]->setVisible(m_session.facts().rows > 0);
    for (const ControlTemplate& control : kMainDialog) {
        auto* const button = m_controls.Get<QAbstractButton>(control.id);
        if (button == nullptr)
            continue;
        // A click leaves the focus where it is, so that an open cell editor is committed by the
        // command itself, which then does not run if the entry is refused.
        button->setFocusPolicy(Qt::TabFocus);
        button->installEventFilter(this);
        // Enter belongs to the grid.
        if (auto* const push = qobject_cast<QPushButton*>(button))
            push->setAutoDefault(false);
    }
}

CommandRows CDlgGridChart::Commands() {
    constexpr bool kMarks = true;
    const auto add = [this] { AddPoint(); };
    const auto open_menu = [this] { OpenMenu(m_controls[kMenuButton]->geometry().bottomLeft()); };
    const auto redraw = [this] { RedrawChart(); };
    const auto remind = [this] { CDlgReminder(m_commands->rows(), this).exec(); };
    const CommandRows own = {
        {kAdd, add, &ProfileSession::canAdd, !kMarks, u"Ins", u"Ajoute un point"},
        {kHelp, [] { /* the button has nothing to say */ }},
        {kMenuButton, open_menu},
        {kRedrawChart, redraw, nullptr, !kMarks, u"F5", u"Redessine le graphique"},
        {kReminder, remind, nullptr, !kMarks, u"F1", u"Montre commandes, touches et limites",
         MenuPlace::Help, u"Aide-mémoire"},
        {kOk, [this] { OnOK(); }},
        {kCancel, [this] { reject(); }},
    };
    auto* const pictures = new PictureCommands(
        &m_session, [this] { return Picture(); }, this);
    CommandRows all;
    auto* const points = new PointCommands(&m_session, m_grid, this);
    auto* const rows_at_once = new RowCommands(&m_session, m_grid, this);
    const CommandRows chart =
        m_view != nullptr ? ChartCommands(m_chart, m_view, m_grid) : CommandRows();
    for (const CommandRows& rows :
         {EditCommands(&m_session, m_grid), points->Rows(), rows_at_once->Rows(), pictures->Rows(),
          chart, m_room->Rows(), own})
        all.insert(all.end(), rows.begin(), rows.end());
    return all;
}

void CDlgGridChart::CreateChart() {
    m_chart = new CGraphControl(this);
    if (m_session.facts().hasTimes())
        m_chart->BuildFunctionChart();
    else
        m_chart->BuildProfileChart(m_session.kind());
    m_chart->SetTitle(m_session.chartTitle());
    m_chart->Attach(&m_session.table(), m_session.kind());
    m_view = new CGraphView(&m_session, m_chart, this);
    m_view->setGeometry(m_controls[kChartFrame]->geometry());
    m_controls[kTableGrip]->raise();
    setTabOrder(m_grid, m_view);
    connect(m_grid, &CGridControl::RowEntered, m_chart,
            [this](int row) { m_chart->SetHighlighted(row - 1, true); });
    connect(m_grid, &CGridControl::RowEntered, m_view, &CGraphView::BringIntoView);
    connect(m_grid, &CGridControl::RowLeft, m_chart,
            [this](int row) { m_chart->SetHighlighted(row - 1, false); });
    connect(m_view, &CGraphView::PressBegins, m_grid, &CGridControl::CommitOpenEditor);
    connect(m_view, &CGraphView::CellPicked, m_grid,
            [this](int row) { m_grid->SelectCell(row, ProfileTable::kValueColumn); });
}

void CDlgGridChart::Connect() {
    connect(m_room, &TableRoom::Asked, this, &CDlgGridChart::PlaceControls);
    connect(m_commands, &DialogCommands::Chosen, this, &CDlgGridChart::UpdateState);
    if (m_view != nullptr)
        connect(&m_view->Zoom(), &ViewZoom::ZoomedChanged, m_commands, &DialogCommands::Update);
    connect(
        m_grid, &CGridControl::ProfileCommandChosen, this,
        [this](int row, const QString& choice) { RunDailyProfile(&m_session, row, choice, this); });
    connect(&m_session, &ProfileSession::StateChanged, this, &CDlgGridChart::UpdateState);
    connect(&m_session, &ProfileSession::CellRestored, m_grid, &CGridControl::SelectCell);
    const ProfileTable* const table = &m_session.table();
    const auto rows_changed = [this] {
        PlaceControls();
        m_grid->SettleCurrentCell();
    };
    connect(table, &QAbstractItemModel::rowsInserted, this, rows_changed);
    connect(table, &QAbstractItemModel::rowsRemoved, this, rows_changed);
    connect(table, &QAbstractItemModel::modelReset, this, rows_changed);
}

void CDlgGridChart::UpdateState() {
    m_commands->Update();
    m_controls.Get<QCheckBox>(kEdition)->setChecked(m_session.isEdition());
    setWindowTitle(ShownText(m_session.caption(), kMaxCellLength));
    if (m_chart != nullptr)
        m_chart->SetTitle(m_session.chartTitle());
}

void CDlgGridChart::PlaceControls() {
    m_room->Place();
    const QRect grid = m_grid->geometry();
    m_mean->setGeometry(grid.x(), grid.bottom() + 1, grid.width(), kMeanHeight);
    if (m_view != nullptr)
        m_view->setGeometry(m_controls[kChartFrame]->geometry());
}

void CDlgGridChart::EndDialog(int result) {
    m_grid->DropOpenEditor();
    m_result = result;
    done(result);
}

void CDlgGridChart::AddPoint() {
    CDlgAjout dialog(&m_session, this);
    dialog.exec();
    m_session.ForgetHistory();
    if (dialog.InsertedRow() > 0)
        m_grid->SelectCell(dialog.InsertedRow(), ProfileTable::kValueColumn);
}

std::optional<ChartPicture> CDlgGridChart::Picture() const {
    if (m_view == nullptr)
        return {};
    return ChartPicture(m_chart->document(), m_view->size(), m_view->font(), m_view->Zoom().zoom());
}

void CDlgGridChart::RedrawChart() {
    if (m_view != nullptr)
        m_view->update();
}

void CDlgGridChart::OnOK() {
    if (!m_accepts || m_accepts())
        EndDialog(kAccepted);
}

void CDlgGridChart::reject() {
    if (AskYesNo(u"Do you really want to cancel ?"_s, u"Cancelling"_s))
        EndDialog(kCancelled);
}

void CDlgGridChart::OpenMenu(QPoint at) {
    m_commands->menu()->popup(mapToGlobal(at));
}

void CDlgGridChart::contextMenuEvent(QContextMenuEvent* event) {
    OpenMenu(mapFromGlobal(event->globalPos()));
}

// Called after a box or dialog over this window was closed. Window managers give the keyboard to
// the window below the closed one. When two close at once, that window may be gone.
bool CDlgGridChart::event(QEvent* event) {
    if (event->type() == QEvent::WindowUnblocked) {
        const auto activate = [this] {
            if (QApplication::activeModalWidget() == this)
                activateWindow();
        };
        QMetaObject::invokeMethod(this, activate, Qt::QueuedConnection);
    }
    return QDialog::event(event);
}

// A disabled button swallows mouse presses. Here they reach the dialog.
bool CDlgGridChart::eventFilter(QObject* object, QEvent* event) {
    const auto* const button = qobject_cast<QAbstractButton*>(object);
    if (button != nullptr && !button->isEnabled()) {
        if (event->type() == QEvent::ContextMenu)
            contextMenuEvent(static_cast<QContextMenuEvent*>(event));
        else if (event->type() == QEvent::MouseButtonPress)
            m_grid->CommitOpenEditor();
    }
    return QDialog::eventFilter(object, event);
}

// A click between the controls commits an open entry like any other click.
void CDlgGridChart::mousePressEvent(QMouseEvent* event) {
    m_grid->CommitOpenEditor();
    QDialog::mousePressEvent(event);
}

// Enter presses the button that has the focus and nothing else: the dialog has no default button.
void CDlgGridChart::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (auto* const button = qobject_cast<QAbstractButton*>(focusWidget()))
            button->click();
        return;
    }
    // The platform turns the menu key into a menu event by itself, but not everywhere this one.
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
        const QWidget* const at = focusWidget() != nullptr ? focusWidget() : this;
        OpenMenu(at->mapTo(this, at->rect().center()));
        return;
    }
    QDialog::keyPressEvent(event);
}

void CDlgGridChart::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    if (m_grid != nullptr)
        PlaceControls();
}
