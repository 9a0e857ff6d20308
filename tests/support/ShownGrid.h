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

/// A session with its grid on the screen. Times and values are given as for `Texts`; without values
/// the times stand for them.
struct ShownGrid : SessionBench {
    explicit ShownGrid(ProfileKind kind, const QString& joined_times,
                       const QString& joined_values = {})
        : ShownGrid(kind, Texts(joined_times),
                    Texts(joined_values.isEmpty() ? joined_times : joined_values)) {}

    ShownGrid(ProfileKind kind, const QStringList& time_texts, const QStringList& value_texts) {
        times = time_texts;
        values = value_texts;
        Start(Setup(kind));
        tester = std::make_unique<QAbstractItemModelTester>(session->model());
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

    QString Text(int row, int column) const { return session->table().CellText(row, column); }
    std::pair<int, int> Current() const {
        return {grid->currentIndex().row() + 1, grid->currentIndex().column() + 1};
    }
    std::unique_ptr<QAbstractItemModelTester> tester;
    std::unique_ptr<CGridControl> grid;
};
