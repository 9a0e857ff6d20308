// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialog/PreviewDialog.h"
#include "profiles/PointSeries.h"

#include <array>

class ProfileSession;
class QComboBox;
class QRadioButton;

/// Asks for a series of points, shows the function with it and makes it.
class CDlgSeries : public PreviewDialog {
    Q_OBJECT

public:
    /// Neither pointer is owned.
    CDlgSeries(ProfileSession* session, CGraphControl* chart, QWidget* parent);

    /// The rows of the points that were added, once they are; none after all were replaced.
    const QList<int>& addedRows() const { return m_added_rows; }

protected:
    Result Preview() override;
    bool Apply() override;

private:
    static constexpr size_t kFields = 13;

    void AddShapes();
    void AddModes();
    void ShowFields();
    SeriesShape shape() const;
    QString FieldFault() const;
    SeriesPlan plan() const;

    ProfileSession* m_session;
    PointNumbers m_present;
    QList<int> m_added_rows;
    QComboBox* m_shape = nullptr;
    QRadioButton* m_adds = nullptr;
    std::array<NumberField*, kFields> m_fields = {};
};
