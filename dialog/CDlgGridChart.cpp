#include "dialog/CDlgGridChart.h"

#include "base/Message.h"
#include "base/ShownText.h"
#include "chart/CGraphControl.h"
#include "chart/CGraphView.h"
#include "dialog/CDlgAjout.h"
#include "dialog/MeanLabel.h"
#include "grid/CGridControl.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

// The entry's own shortcut and, to copy and to paste, all that the platform has for it.
QList<QKeySequence> ShortcutsOf(const MenuEntry& entry) {
    QList<QKeySequence> shortcuts;
    if (entry.id == kMenuCopy)
        shortcuts = QKeySequence::keyBindings(QKeySequence::Copy);
    if (entry.id == kMenuPaste)
        shortcuts = QKeySequence::keyBindings(QKeySequence::Paste);
    const QKeySequence own(entry.shortcut.toString());
    shortcuts.removeAll(own);
    shortcuts.prepend(own);
    return shortcuts;
}

}  // namespace

const CDlgGridChart::Command CDlgGridChart::kCommands[] = {
    {kAdd, &CDlgGridChart::OnAdd, &ProfileSession::canAdd},
    {kRemove, &CDlgGridChart::OnRemove, &ProfileSession::canRemove},
    {kEdition, &CDlgGridChart::OnEdition, &ProfileSession::canEditCoefficients},
    {kAdjust, &CDlgGridChart::OnAdjust, &ProfileSession::canEditCoefficients},
    {kOpen, &CDlgGridChart::OnOpen, &ProfileSession::canOpen},
    {kSave, &CDlgGridChart::OnSave, &ProfileSession::canSave},
    {kSaveAs, &CDlgGridChart::OnSaveAs, &ProfileSession::canSaveAs},
    {kUndo, &CDlgGridChart::OnUndo, &ProfileSession::canUndo},
    {kRedo, &CDlgGridChart::OnRedo, &ProfileSession::canRedo},
    {kCopy, &CDlgGridChart::OnCopy, &ProfileSession::canCopy},
    {kPaste, &CDlgGridChart::OnPaste, &ProfileSession::canPaste},
    {kHelp, &CDlgGridChart::OnHelp, nullptr},
    {kRedrawChart, &CDlgGridChart::OnRedrawChart, nullptr},
    {kOk, &CDlgGridChart::OnOK, nullptr},
    {kCancel, &CDlgGridChart::reject, nullptr},
    {kMenuOpen, &CDlgGridChart::OnOpen, &ProfileSession::canOpen},
    {kMenuSave, &CDlgGridChart::OnSave, &ProfileSession::canSaveAs},
    {kMenuSaveAs, &CDlgGridChart::OnSaveAs, &ProfileSession::canSaveAs},
    {kMenuUndo, &CDlgGridChart::OnMenuUndo, &ProfileSession::canUndo},
    {kMenuRedo, &CDlgGridChart::OnMenuRedo, &ProfileSession::canRedo},
    {kMenuCopy, &CDlgGridChart::OnCopy, &ProfileSession::canCopy},
    {kMenuPaste, &CDlgGridChart::OnPaste, &ProfileSession::canPaste},
};

CDlgGridChart::CDlgGridChart(SessionSetup setup, QWidget* parent)
    : QDialog(parent), m_session(std::move(setup)) {
    setWindowTitle(kMainDialogCaption.toString());
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
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
    CreateMenu();
    m_grid->InitGrid();
    if (!m_session.isViewOnly())
        CreateChart();
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
    m_mean = new MeanLabel(&m_session, this);
    m_mean->setVisible(m_session.facts().coefficients);
    m_controls[kHelp]->setVisible(m_session.facts().rows > 0);
    for (const Command& command : kCommands) {
        auto* const button = m_controls.Get<QAbstractButton>(command.id);
        if (button == nullptr)
            continue;
        // A click leaves the focus where it is, so that an open cell editor is committed by the
        // command itself, which then does not run if the entry is refused.
        button->setFocusPolicy(Qt::TabFocus);
        button->installEventFilter(this);
        // Enter belongs to the grid.
        if (auto* const push = qobject_cast<QPushButton*>(button))
            push->setAutoDefault(false);
        if (command.id == kEdition) {
            // Assistive tools switch the box without a click.
            connect(button, &QAbstractButton::toggled, this, [this, &command](bool on) {
                if (on != m_session.isEdition())
                    RunCommand(command);
            });
        } else {
            connect(button, &QAbstractButton::clicked, this,
                    [this, &command] { RunCommand(command); });
        }
    }
}

void CDlgGridChart::CreateMenu() {
    m_menu = new QMenu(this);
    for (const MenuEntry& entry : kMenu) {
        if (entry.id == 0) {
            m_menu->addSeparator();
            continue;
        }
        QAction* const action = m_menu->addAction(entry.caption.toString());
        action->setShortcuts(ShortcutsOf(entry));
        m_actions.insert(entry.id, action);
    }
    const std::pair<int, QKeySequence> without_entry[] = {{kAdd, Qt::Key_Insert},
                                                          {kRedrawChart, Qt::Key_F5}};
    for (const auto& [id, shortcut] : without_entry) {
        auto* const action = new QAction(this);
        action->setShortcut(shortcut);
        m_actions.insert(id, action);
    }
    for (const Command& command : kCommands) {
        if (QAction* const action = m_actions.value(command.id)) {
            addAction(action);
            connect(action, &QAction::triggered, this, [this, &command] { RunCommand(command); });
        }
    }
}

void CDlgGridChart::CreateChart() {
    m_chart = new CGraphControl(this);
    if (m_session.kind() == ProfileKind::Function)
        m_chart->BuildFunctionChart();
    else
        m_chart->BuildProfileChart(m_session.kind());
    m_chart->SetTitle(m_session.chartTitle());
    m_chart->Attach(&m_session.table(), m_session.kind());
    m_view = new CGraphView(&m_session, m_chart, this);
    m_view->setGeometry(m_controls[kChartFrame]->geometry());
    connect(m_grid, &CGridControl::RowEntered, m_chart,
            [this](int row) { m_chart->SetHighlighted(row - 1, true); });
    connect(m_grid, &CGridControl::RowLeft, m_chart,
            [this](int row) { m_chart->SetHighlighted(row - 1, false); });
    connect(m_view, &CGraphView::PressBegins, m_grid, &CGridControl::CommitOpenEditor);
    connect(m_view, &CGraphView::CellPicked, m_grid,
            [this](int row) { m_grid->SelectCell(row, ProfileTable::kValueColumn); });
}

void CDlgGridChart::Connect() {
    connect(m_grid, &CGridControl::ProfileCommandChosen, this, &CDlgGridChart::OnProfileCommand);
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

void CDlgGridChart::RunCommand(const Command& command) {
    const bool enabled = command.enabled == nullptr || (m_session.*command.enabled)();
    // Giving up does not depend on what was typed last.
    if (enabled && (command.id == kCancel || m_grid->CommitOpenEditor()))
        (this->*command.run)();
    UpdateState();
}

void CDlgGridChart::UpdateState() {
    for (const Command& command : kCommands) {
        const bool enabled = command.enabled == nullptr || (m_session.*command.enabled)();
        if (QWidget* const control = m_controls[command.id])
            control->setEnabled(enabled);
        if (QAction* const action = m_actions.value(command.id))
            action->setEnabled(enabled);
    }
    m_controls.Get<QCheckBox>(kEdition)->setChecked(m_session.isEdition());
    setWindowTitle(ShownText(m_session.caption(), kMostOfCell));
    if (m_chart != nullptr)
        m_chart->SetTitle(m_session.chartTitle());
}

void CDlgGridChart::PlaceControls() {
    m_controls.Place(
        MainDialogPlaces(m_session.kind(), m_session.table().RowCount(), size() - minimumSize()));
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

void CDlgGridChart::OnAdd() {
    CDlgAjout dialog(&m_session, this);
    dialog.exec();
    m_session.ForgetHistory();
    if (dialog.InsertedRow() > 0)
        m_grid->SelectCell(dialog.InsertedRow(), ProfileTable::kValueColumn);
}

void CDlgGridChart::OnRemove() {
    m_session.RemoveRows(m_grid->SelectedRows());
}

void CDlgGridChart::OnEdition() {
    m_session.SetEdition(!m_session.isEdition());
}

void CDlgGridChart::OnAdjust() {
    m_session.Adjust();
}

void CDlgGridChart::OnOpen() {
    m_session.Open();
}

void CDlgGridChart::OnSave() {
    m_session.Save();
}

void CDlgGridChart::OnSaveAs() {
    m_session.SaveAs();
}

void CDlgGridChart::OnUndo() {
    m_session.Undo();
    m_session.SetModified();
}

void CDlgGridChart::OnRedo() {
    m_session.Redo();
    m_session.SetModified();
}

void CDlgGridChart::OnMenuUndo() {
    m_session.Undo();
}

void CDlgGridChart::OnMenuRedo() {
    m_session.Redo();
}

void CDlgGridChart::OnCopy() {
    m_grid->CopySelection();
    m_session.SetModified();
}

void CDlgGridChart::OnPaste() {
    m_grid->PasteSelection();
    m_session.SetModified();
}

void CDlgGridChart::OnRedrawChart() {
    if (m_view != nullptr)
        m_view->update();
}

// The button stands in the dialog and has nothing to say.
void CDlgGridChart::OnHelp() {
}

void CDlgGridChart::OnProfileCommand(int row, const QString& choice) {
    if (choice == kAddProfileChoice)
        AddDailyProfile(row);
    else
        ViewDailyProfile(m_session.table().CellText(row, ProfileTable::kNameColumn));
}

void CDlgGridChart::AddDailyProfile(int row) {
    SessionSetup setup;
    setup.kind = ProfileKind::Daily;
    setup.mode = DisplayMode::Edit;
    setup.name = u"Nouveau Profil"_s;
    setup.values = QStringList(Describe(ProfileKind::Daily).rows, u"1"_s);
    setup.folders = m_session.folders();
    CDlgGridChart dialog(std::move(setup), this);
    if (dialog.DoModal() != kAccepted || dialog.session().savedName().isEmpty())
        return;
    m_session.AddDailyProfile(dialog.session().savedName());
    m_session.EnterName(row, dialog.session().savedName());
}

void CDlgGridChart::ViewDailyProfile(const QString& name) {
    if (name.isEmpty())
        return;
    SessionSetup setup;
    setup.kind = ProfileKind::Daily;
    setup.mode = DisplayMode::View;
    setup.text = m_session.folders().DailyProfilePath(name);
    setup.folders = m_session.folders();
    CDlgGridChart(std::move(setup), this).DoModal();
}

void CDlgGridChart::OnOK() {
    if (!m_accepts || m_accepts())
        EndDialog(kAccepted);
}

void CDlgGridChart::reject() {
    if (AskYesNo(u"Do you really want to cancel ?"_s, u"Cancelling"_s))
        EndDialog(kCancelled);
}

void CDlgGridChart::contextMenuEvent(QContextMenuEvent* event) {
    m_menu->popup(event->globalPos());
}

// A box or dialog over this window has gone. Window managers give the keyboard to the window below
// the one that was closed, and when two were closed at once to one that is no longer there.
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

// A button that is disabled keeps the mouse to itself; here it is a part of the dialog like any.
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

// A click beside all controls ends an entry like any other click.
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
        m_menu->popup(at->mapToGlobal(at->rect().center()));
        return;
    }
    QDialog::keyPressEvent(event);
}

void CDlgGridChart::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    if (m_grid != nullptr)
        PlaceControls();
}
