#include "dialog/CDlgGridChart.h"

#include "base/Message.h"
#include "base/ShownText.h"
#include "chart/CGraphControl.h"
#include "chart/CGraphView.h"
#include "chart/ChartFrame.h"
#include "dialog/BitmapButton.h"
#include "dialog/CDlgAjout.h"
#include "dialog/CSXButton.h"
#include "dialog/MeanLabel.h"
#include "grid/CGridControl.h"
#include "grid/GridMetrics.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPushButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPictureSize = 16;

// Between the grid and the controls that had to move below it: the line of the mean, or a gap.
constexpr int kMeanHeight = 13;
constexpr int kGapBelowGrid = 6;

// Controls from here on keep their distance to the right or the bottom edge of the dialog.
constexpr int kRightPart = 247;
constexpr int kBottomPart = 190;

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

// What the grid of a kind has more than that of the template.
QSize GridBeyondTemplate(const KindDescriptor& facts) {
    return ProfileGridSize(facts.columnsWidth(), facts.rows, facts.header_height) -
           ProfileGridSize(0, 0, 0);
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
    QFont small = font();
    small.setPixelSize(kDialogFontPixels);
    setFont(small);
    if (!m_session.InitialFill())
        return false;
    CreateControls();
    CreateMenu();
    m_grid->InitGrid();
    if (!m_session.isViewOnly())
        CreateChart();
    Connect();
    const int wider = GridBeyondTemplate(m_session.facts()).width();
    setMinimumSize(PixelSize(kMainDialogSize) + QSize(wider, 0));
    resize(minimumSize());
    PlaceControls();
    UpdateState();
    m_grid->SettleCurrentCell();
    m_grid->setFocus();
    return true;
}

void CDlgGridChart::CreateControls() {
    for (const ControlTemplate& control : kMainDialog) {
        QWidget* const widget = CreateControl(control);
        widget->setAccessibleName(control.accessible_name.toString());
        widget->setObjectName(QString::number(control.id) + u'_' + control.caption.toString());
        m_controls.insert(control.id, widget);
    }
    m_mean = new MeanLabel(&m_session, this);
    m_mean->setVisible(m_session.facts().coefficients);
    m_controls[kHelp]->setVisible(m_session.facts().rows > 0);
    for (const Command& command : kCommands) {
        auto* const button = qobject_cast<QAbstractButton*>(m_controls.value(command.id));
        if (command.id == kEdition) {
            // Assistive tools switch the box without a click.
            connect(button, &QAbstractButton::toggled, this, [this, &command](bool on) {
                if (on != m_session.isEdition())
                    RunCommand(command);
            });
        } else if (button != nullptr) {
            connect(button, &QAbstractButton::clicked, this,
                    [this, &command] { RunCommand(command); });
        }
    }
}

QWidget* CDlgGridChart::CreateControl(const ControlTemplate& control) {
    const QString caption = control.caption.toString();
    QAbstractButton* button = nullptr;
    switch (control.control_class) {
        case ControlClass::Grid: m_grid = new CGridControl(&m_session, this); return m_grid;
        case ControlClass::ToolButton: {
            auto* const tool = new BitmapButton(this);
            tool->AutoLoad(caption);
            tool->setToolTip(control.accessible_name.toString());
            button = tool;
            break;
        }
        case ControlClass::PictureButton: {
            auto* const picture = new CSXButton(this);
            picture->setText(caption);
            picture->SetBitmap(control.picture, kPictureSize, kPictureSize);
            button = picture;
            break;
        }
        case ControlClass::PushButton: {
            auto* const push = new QPushButton(caption, this);
            push->setAutoDefault(false);
            button = push;
            break;
        }
        case ControlClass::CheckBox:
            button = new QCheckBox(caption, this);
            button->setStyleSheet(u"spacing: 3px"_s);  // the template's width asks for it
            break;
        default: return new ChartFrame(this);
    }
    // A click leaves the focus where it is, so that an open cell editor is committed by the command
    // itself, which then does not run if the entry is refused.
    button->setFocusPolicy(Qt::TabFocus);
    button->installEventFilter(this);
    return button;
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
        if (QWidget* const control = m_controls.value(command.id))
            control->setEnabled(enabled);
        if (QAction* const action = m_actions.value(command.id))
            action->setEnabled(enabled);
    }
    qobject_cast<QCheckBox*>(m_controls[kEdition])->setChecked(m_session.isEdition());
    setWindowTitle(ShownText(m_session.caption(), kMostOfCell));
    if (m_chart != nullptr)
        m_chart->SetTitle(m_session.chartTitle());
}

void CDlgGridChart::PlaceControls() {
    const QSize more_grid = GridBeyondTemplate(m_session.facts());
    const int wider = more_grid.width();
    const QSize extra = size() - minimumSize();
    const int more_rows = extra.height() / kGridRowHeight * kGridRowHeight;  // none of them cut
    for (const ControlTemplate& control : kMainDialog) {
        QRect place = PixelRect(control.place);
        const auto [x, y, width, height] = control.place;
        if (x >= kRightPart)
            place.translate(extra.width(), 0);
        if (control.id == kRemove || control.id == kAdjust)
            place.translate(wider, 0);  // at the grid's right edge
        if (control.id == kOk || control.id == kCancel)
            place.translate((wider + 1) / 2, 0);  // about its middle
        if (y >= kBottomPart)
            place.translate(0, extra.height());
        if (control.id == kChartFrame)
            place.setSize(place.size() + extra);
        if (control.id == kGrid)
            place.setSize(place.size() + more_grid + QSize(0, more_rows));
        m_controls[control.id]->setGeometry(place);
    }
    // The grid's lower end at the dialog's starting size: from there on all below it moves along.
    int start_end = m_grid->geometry().bottom() + 1 - more_rows;
    if (m_session.kind() == ProfileKind::Function) {
        const int rows = m_session.table().RowCount();
        m_grid->setGeometry(PointGridRect(rows, more_rows).translated(extra.width(), 0));
        start_end = PointGridRect(rows).bottom() + 1;
    }
    const QRect grid = m_grid->geometry();
    m_mean->setGeometry(grid.x(), grid.bottom() + 1, grid.width(), kMeanHeight);
    QWidget* const below[] = {m_controls[kEdition], m_controls[kAdjust]};
    const int top = std::min(below[0]->y(), below[1]->y()) - extra.height();
    const int gap = m_session.facts().coefficients ? kMeanHeight : kGapBelowGrid;
    const int shift = std::max(0, start_end + gap - top);
    for (QWidget* const control : below)
        control->move(control->x(), control->y() + shift);
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
