// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialog/PreviewDialog.h"
#include "profiles/Calculation.h"

class ProfileSession;
class QComboBox;
class QRadioButton;

/// Asks for a calculation on some rows, shows its result and does it.
class CDlgCalculate : public PreviewDialog {
    Q_OBJECT

public:
    /// `rows` count from 1 and rise; one or more. Neither pointer is owned.
    CDlgCalculate(ProfileSession* session, CGraphControl* chart, const QList<int>& rows,
                  QWidget* parent);

protected:
    Result Preview() override;
    bool Apply() override;

private:
    void AddColumnChoice();
    void AddOperations();
    void StartOperation();
    Operation operation() const;
    int column() const;
    std::vector<double> ColumnNumbers() const;
    QString FieldFault() const;
    Calculation calculation() const;
    QList<Change> Changes() const;

    ProfileSession* m_session;
    QList<int> m_rows;
    QList<qsizetype> m_indices;  // of the rows, from 0
    QRadioButton* m_times = nullptr;
    QComboBox* m_operation = nullptr;
    NumberField* m_a = nullptr;
    NumberField* m_b = nullptr;
};
