// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/TableRoom.h"

#include "dialog/DialogControls.h"
#include "dialog/TableGrip.h"
#include "grid/CGridControl.h"
#include "profiles/ProfileSession.h"

#include <QDialog>
#include <QScrollBar>

#include <algorithm>
#include <utility>

TableRoom::TableRoom(const ProfileSession* session, const DialogControls* controls, QWidget* dialog)
    : QObject(dialog),
      m_session(session),
      m_controls(controls),
      m_dialog(dialog),
      m_grid(controls->Get<CGridControl>(Id::kGrid)) {
    auto* const grip = controls->Get<TableGrip>(Id::kTableGrip);
    connect(grip, &TableGrip::PressBegins, m_grid, &CGridControl::CommitOpenEditor);
    connect(grip, &TableGrip::Dragged, this, [this](int by) { Ask(m_grid->width() - by); });
    connect(grip, &TableGrip::DoubleClicked, this, &TableRoom::Toggle);
    connect(session, &ProfileSession::StateChanged, this, &TableRoom::FollowTexts);
    connect(m_grid->verticalScrollBar(), &QScrollBar::valueChanged, this, &TableRoom::FollowTexts);
}

QSize TableRoom::Extra() const {
    return m_dialog->size() - m_dialog->minimumSize();
}

int TableRoom::StartWidth() const {
    return StartTableWidth(m_session->kind(), m_session->table().RowCount());
}

void TableRoom::Place() {
    const auto place = [this] {
        m_controls->Place(
            MainDialogPlaces(m_session->kind(), m_session->table().RowCount(), Extra(), m_width));
    };
    place();
    // Texts are measured once the grid has its height, which shows its rows.
    if (Extra().width() > 0 || m_width.asked > 0) {
        const int needed = NeededWidth();
        if (std::exchange(m_width.needed, needed) != needed)
            place();
    }
    m_grid->Columns().Share(StartWidth());
}

int TableRoom::WidthWith(const TableWidth& width) const {
    return WidthOfTable(m_session->kind(), m_session->table().RowCount(), Extra().width(), width);
}

int TableRoom::NeededWidth() const {
    return m_grid->Columns().NeededWidth(StartWidth());
}

// What the texts in view need, as far as it can be given.
int TableRoom::FittingWidth() const {
    return WidthWith({.asked = NeededWidth()});
}

bool TableRoom::canToggle() const {
    return m_width.asked > 0 || FittingWidth() > m_grid->width();
}

void TableRoom::Toggle() {
    const int fitting = FittingWidth();
    Ask(fitting > m_grid->width() ? fitting : 0);
}

// 0 for the width without the user's act.
void TableRoom::Ask(int width) {
    m_width.asked_at = Extra().width();
    m_width.asked = WidthWith({.asked = width, .asked_at = m_width.asked_at});
    const int unasked = WidthWith({.needed = m_width.needed});
    if (width <= 0 || m_width.asked == unasked)
        m_width.asked = 0;
    emit Asked();
}

// Other texts may have come into view. For shorter ones nothing moves, and under a drag the chart
// stays where it is.
void TableRoom::FollowTexts() {
    if (m_session->isDragging())
        return;
    if (Extra().width() > 0 && NeededWidth() > m_width.needed)
        emit Asked();
    else
        m_grid->Columns().Refit();
}

CommandRows TableRoom::Rows() {
    constexpr bool kMarks = true;
    constexpr bool kLooksAtRows = true;
    return {{Id::kWidenTable,
             [this] { Toggle(); },
             [this](const ProfileSession&) { return canToggle(); },
             !kMarks,
             {},
             u"Donne au tableau la place de ses textes, puis la reprend",
             MenuPlace::Chart,
             u"Élargir le tableau",
             kLooksAtRows}};
}
