// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/CGridControl.h"

#include "base/Message.h"
#include "grid/CellSelection.h"
#include "grid/GridCellDelegate.h"
#include "grid/GridHeader.h"
#include "grid/TabMoves.h"
#include "profiles/ProfileSession.h"

#include <QKeyEvent>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// The key that the platform's keyboards once had for help; it moves like Tab.
constexpr int kHelpKey = Qt::Key_Help;

}  // namespace

CGridControl::CGridControl(ProfileSession* session, QWidget* parent)
    : QTableView(parent),
      m_session(session),
      m_delegate(new GridCellDelegate(this)),
      m_columns(this, session->facts()),
      m_clipboard(session) {
    auto* const titles = new GridHeader(Qt::Horizontal, this);
    auto* const numbers = new GridHeader(Qt::Vertical, this);
    setHorizontalHeader(titles);
    setVerticalHeader(numbers);
    setModel(m_session->model());
    const std::unique_ptr<QItemSelectionModel> standard(selectionModel());
    m_selection = new CellSelection(model(), this);
    setSelectionModel(m_selection);
    setItemDelegate(m_delegate);
    setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
    setSelectionMode(ExtendedSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWordWrap(false);
    setTextElideMode(Qt::ElideRight);
    setCornerButtonEnabled(false);
    setFrameShape(NoFrame);  // the dialog's height for the grid is that of header and rows
    connect(m_delegate, &GridCellDelegate::EndKeyPressed, this, &CGridControl::EndEditing);
    connect(m_delegate, &GridCellDelegate::EntryMade, this,
            [this](const QModelIndex& cell, const QString& text) {
                ValidateEntry(cell.row() + 1, cell.column() + 1, text);
            });
    for (GridHeader* const header : {titles, numbers})
        connect(header, &GridHeader::PressBegins, this, &CGridControl::CommitOpenEditor);
    connect(titles, &QHeaderView::sectionPressed, this,
            [this] { m_selection->SetWholeColumn(true); });
}

void CGridControl::InitGrid() {
    LayOutGrid(this, m_session->facts());
}

bool CGridControl::CommitOpenEditor() {
    QWidget* const editor = m_delegate->OpenEditor();
    if (editor == nullptr)
        return true;
    m_entry_accepted = true;
    commitData(editor);
    closeEditor(editor, QAbstractItemDelegate::NoHint);
    return m_entry_accepted;
}

void CGridControl::DropOpenEditor() {
    if (QWidget* const editor = m_delegate->OpenEditor())
        closeEditor(editor, QAbstractItemDelegate::RevertModelCache);
}

// The current cell follows its row once the editor is closed; a new current cell would close it
// while its entry is being stored. What the user has made current meanwhile stays current.
void CGridControl::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    QTableView::closeEditor(editor, hint);
    const auto moved = std::exchange(m_moved_entry, std::nullopt);
    if (moved && currentIndex() == moved->first)
        SelectCell(moved->second, currentIndex().column() + 1);
}

bool CGridControl::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
    if ((editTriggers() & trigger) && model()->flags(index).testFlag(Qt::ItemIsEditable) &&
        GridCellDelegate::IsTooLong(index)) {
        ShowMessage(u"Ce texte est trop long pour être modifié."_s, MessageIcon::Information);
        return true;
    }
    return QTableView::edit(index, trigger, event);
}

bool CGridControl::ValidateEntry(int row, int column, const QString& text) {
    if (column == ProfileTable::kNameColumn && OnProfileChoice(row, text))
        return true;
    const std::optional<int> stored = m_session->Enter(row, column, text);
    m_entry_accepted = stored.has_value();
    if (stored && *stored != row) {
        if (m_delegate->OpenEditor() != nullptr)
            m_moved_entry = {model()->index(row - 1, column - 1), *stored};
        else
            SelectCell(*stored, column);
    }
    return m_entry_accepted;
}

bool CGridControl::OnProfileChoice(int row, const QString& choice) {
    if (!IsProfileCommand(choice))
        return false;
    // The nested dialog opens once the list has closed.
    QMetaObject::invokeMethod(
        this, [this, row, choice] { emit ProfileCommandChosen(row, choice); },
        Qt::QueuedConnection);
    return true;
}

bool CGridControl::CopySelection() {
    return m_clipboard.Copy(Selection());
}

void CGridControl::PasteSelection() {
    m_clipboard.Paste(Selection());
}

GridSelection CGridControl::Selection() const {
    return {m_selection->Rows(), m_selection->Columns(), m_selection->isWholeColumn()};
}

void CGridControl::SelectCell(int row, int column) {
    const QModelIndex cell = model()->index(row - 1, column - 1);
    // The view then extends a selection from here.
    setCurrentIndex(cell);
    // Selects the cell alone, whatever modifier keys are down.
    selectionModel()->setCurrentIndex(cell, QItemSelectionModel::ClearAndSelect);
    scrollTo(cell);
}

void CGridControl::SelectRows(const QList<int>& rows) {
    const QModelIndex first = model()->index(rows.first() - 1, 0);
    selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
    m_selection->SelectRows(rows);
    scrollTo(first);
}

QList<int> CGridControl::SelectedRows() const {
    return m_selection->Rows();
}

QList<int> CGridControl::SelectedRows(int column) const {
    return m_selection->Rows(column);
}

QList<int> CGridControl::SelectedColumns() const {
    return m_selection->Columns();
}

void CGridControl::SettleCurrentCell() {
    const QModelIndex cell = currentIndex().isValid() ? currentIndex() : model()->index(0, 0);
    if (!cell.isValid())
        return;
    SelectCell(cell.row() + 1, cell.column() + 1);
    OnEnterRow(cell.row() + 1, cell.column() + 1);
}

void CGridControl::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    OnLeaveRow(previous.row() + 1, previous.column() + 1);
    OnEnterRow(current.row() + 1, current.column() + 1);
    QTableView::currentChanged(current, previous);
}

// With Ctrl down the toolkit's view would move without selecting.
QItemSelectionModel::SelectionFlags CGridControl::selectionCommand(const QModelIndex& index,
                                                                   const QEvent* event) const {
    const QItemSelectionModel::SelectionFlags command = QTableView::selectionCommand(index, event);
    if (command != QItemSelectionModel::NoUpdate || event == nullptr ||
        event->type() != QEvent::KeyPress)
        return command;
    return static_cast<const QKeyEvent*>(event)->modifiers().testFlag(Qt::ShiftModifier)
               ? QItemSelectionModel::SelectCurrent
               : QItemSelectionModel::ClearAndSelect;
}

// A typed character opens the editor of the current cell. One that no number contains opens none.
bool CGridControl::CannotBeginEntry(const QKeyEvent& event) const {
    const QString text = event.text();
    return currentIndex().column() + 1 != ProfileTable::kNameColumn && !text.isEmpty() &&
           text.front().isPrint() && !GridCellDelegate::IsNumberText(text);
}

void CGridControl::OnEnterRow(int row, int column) {
    if (row < 1 || column < 1)
        return;
    m_session->ClearSaved();
    emit RowEntered(row);
}

void CGridControl::OnLeaveRow(int row, int column) {
    if (row >= 1 && column >= 1)
        emit RowLeft(row);
}

void CGridControl::mousePressEvent(QMouseEvent* event) {
    // The right button opens the menu for what is selected.
    if (event->button() == Qt::RightButton)
        return;
    m_selection->SetWholeColumn(false);
    if (!indexAt(event->pos()).isValid())
        CommitOpenEditor();
    QTableView::mousePressEvent(event);
}

void CGridControl::keyPressEvent(QKeyEvent* event) {
    // Where the dialog's command is disabled the toolkit's view would copy by its own rules.
    if (event->matches(QKeySequence::Copy) || OnGridKeyDown(event->key(), event->modifiers()) ||
        CannotBeginEntry(*event)) {
        event->accept();
        return;
    }
    QTableView::keyPressEvent(event);
}

bool CGridControl::OnGridKeyDown(int key, Qt::KeyboardModifiers modifiers) {
    const bool backward = key == Qt::Key_Backtab || modifiers.testFlag(Qt::ShiftModifier);
    switch (key) {
        case kHelpKey:
            if (backward) {
                ShowMessage(u"Help!"_s, MessageIcon::None);
                return true;
            }
            [[fallthrough]];
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
            // Tab alone never leaves the cells; the views' own step would stay in them too.
            if (modifiers.testFlag(Qt::ControlModifier)) {
                QWidget::focusNextPrevChild(!backward);  // NOLINT(bugprone-parent-virtual-call)
                return true;
            }
            break;
        case Qt::Key_Return:
        case Qt::Key_Enter: MoveDown(); return true;
        default: return false;
    }
    const ProfileTable& table = m_session->table();
    std::optional<CellPosition> current;
    if (currentIndex().isValid())
        current = CellPosition{currentIndex().row() + 1, currentIndex().column() + 1};
    const auto next = TabMove(m_session->kind(), table.RowCount(), table.ColumnCount(), current,
                              backward ? TabDirection::Backward : TabDirection::Forward);
    if (next)
        SelectCell(next->row, next->column);
    return true;
}

void CGridControl::EndEditing(int key, Qt::KeyboardModifiers modifiers) {
    if (!CommitOpenEditor())
        return;
    setFocus();
    switch (key) {
        case Qt::Key_Up:
            if (currentIndex().row() > 0)
                SelectCell(currentIndex().row(), currentIndex().column() + 1);
            break;
        case Qt::Key_Down:
        case Qt::Key_Return:
        case Qt::Key_Enter: MoveDown(); break;
        default: OnGridKeyDown(key, modifiers); break;
    }
}

void CGridControl::MoveDown() {
    const QModelIndex current = currentIndex();
    if (current.isValid() && current.row() + 1 < model()->rowCount())
        SelectCell(current.row() + 2, current.column() + 1);
}
