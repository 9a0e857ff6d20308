// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialog/ImportChoice.h"

#include <QDialog>

class QComboBox;
class QPushButton;
class QTableWidget;

/// Asks which columns of a file hold the points, over a preview of its first lines.
class CDlgImport : public QDialog {
    Q_OBJECT

public:
    /// `file` outlives the dialog.
    explicit CDlgImport(const PointFile& file, QWidget* parent = nullptr);

    const PointColumns& columns() const { return m_choice.columns(); }

private:
    void FillColumns();
    void FillPreview();
    void ShowChoice();

    ImportChoice m_choice;
    QComboBox* m_separator;
    QComboBox* m_time;
    QComboBox* m_value;
    QTableWidget* m_preview;
    QPushButton* m_ok;
};
