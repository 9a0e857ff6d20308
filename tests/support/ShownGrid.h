// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SessionBench.h"
#include "grid/CGridControl.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QLineEdit>
#include <QTest>

#include <memory>
#include <utility>

/// Rows and columns from the first to the last, both counted from 1; row 0 is
/// the column's header.
struct CellRange {
    int top = 0;
    int left = 0;
    int bottom = top;
    int right = left;
};

/// A session with its grid on the screen. Times and values are given as for
/// `Texts`; without values the times stand for them. View-only grids have no
/// rows.
struct ShownGrid : SessionBench {
    explicit ShownGrid(ProfileKind kind, const QString& joined_times = {},
                       const QString& joined_values = {}, DisplayMode mode = DisplayMode::Edit)
        : ShownGrid(kind, Texts(joined_times),
                    Texts(joined_values.isEmpty() ? joined_times : joined_values), mode) {}

    ShownGrid(ProfileKind kind, const QStringList& time_texts, const QStringList& value_texts,
              DisplayMode mode = DisplayMode::Edit) {
        times = time_texts;
        values = value_texts;
        for (const QString& file : {QStringLiteral("bas.dat"), QStringLiteral("haut.dat")})
            WriteAll(Path(QStringLiteral("Data/Profils/Journalier/") + file), {});
        if (mode == DisplayMode::View)
            dialogs.ExpectOpen({});
        Start(Setup(kind, mode));
        tester = std::make_unique<QAbstractItemModelTester>(&session->table());
        grid = std::make_unique<CGridControl>(session.get());
        grid->InitGrid();
        grid->resize(300, 420);
        grid->show();
        grid->setFocus();
        grid->activateWindow();
        if (!QTest::qWaitForWindowActive(grid.get()))
            QTest::qFail("the grid is not active", __FILE__, __LINE__);
    }

    void Keys(const QString& text) {
        for (const QChar c : text)
            QTest::keyClicks(Focused(), c);  // the first one opens an editor
    }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(Focused(), key, modifiers);
    }
    QWidget* Focused() const {
        for (QLineEdit* const editor : grid->findChildren<QLineEdit*>()) {
            if (editor->isVisible())
                return editor;
        }
        return grid.get();
    }
    bool IsEditing() const { return Focused() != grid.get(); }

    /// Selects the cells alone, without a move of the current cell, or presses a
    /// header.
    void Select(CellRange cells) {
        if (cells.top == 0) {
            const int x = grid->horizontalHeader()->sectionViewportPosition(cells.left - 1) + 20;
            Press(*grid->horizontalHeader(), {x, 8});
            return;
        }
        const auto* const model = grid->model();
        grid->selectionModel()->select(
            QItemSelection(model->index(cells.top - 1, cells.left - 1),
                           model->index(cells.bottom - 1, cells.right - 1)),
            QItemSelectionModel::ClearAndSelect);
    }
    static void Press(const QHeaderView& header, QPoint place) {
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, place);
    }

    QString Text(int row, int column) const { return session->table().CellText(row, column); }
    std::pair<int, int> Current() const {
        return {grid->currentIndex().row() + 1, grid->currentIndex().column() + 1};
    }
    QStringList Headers() const {
        QStringList headers;
        for (int column = 1; column <= session->table().ColumnCount(); ++column)
            headers += session->table().HeaderText(column);
        return headers;
    }

    std::unique_ptr<QAbstractItemModelTester> tester;
    std::unique_ptr<CGridControl> grid;
};
