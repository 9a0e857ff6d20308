// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class ProfileSession;
class QLineEdit;

/// The dialog "Add a point": takes a time and a value and inserts the point at its place in time
/// order, behind points of the same time.
class CDlgAjout : public QDialog {
    Q_OBJECT

public:
    explicit CDlgAjout(ProfileSession* session, QWidget* parent = nullptr);

    /// The 1-based row of the inserted point; 0 before.
    int InsertedRow() const { return m_inserted_row; }

private:
    void InsertPoint();
    void TakeNumber(QLineEdit* field, float& number);

    ProfileSession* m_session;  // not owned
    QLineEdit* m_time_field = nullptr;
    QLineEdit* m_value_field = nullptr;
    float m_add_point_x = 0.0F;
    float m_add_point_y = 0.0F;
    int m_inserted_row = 0;
};
