// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QList>

#include <vector>

class CGraphControl;
class NumberField;
class QDialogButtonBox;
class QFormLayout;
class QGridLayout;
class QLabel;

/// A dialog with fields over some rows as they are and as they will be. The chart beside it shows
/// the result as long as it is open.
class PreviewDialog : public QDialog {
    Q_OBJECT

public:
    void done(int result) override;

protected:
    /// A row of the table under the fields.
    struct Change {
        QString name;
        QString before;
        QString after;
    };

    /// What the fields would lead to. With a fault there is nothing to show, and OK is greyed.
    struct Result {
        QString fault;
        QList<Change> changes;
        std::vector<std::vector<double>> chart;  ///< as CGraphControl::SetPreview
    };

    /// `chart` is not owned.
    PreviewDialog(const QString& title, CGraphControl* chart, QWidget* parent);

    QFormLayout& form() const { return *m_form; }

    /// A field behind its caption, which has "&" before its key. The caption without it is the
    /// field's accessible name and stands in messages.
    NumberField* AddField(QStringView caption, double start);
    void Rename(NumberField* field, QStringView caption);

    /// Once all fields are there: adds the rest and places the dialog beside its parent.
    void Finish();

    /// Shows the result of the fields; to be called after each change that is not in a NumberField.
    void Update();

    virtual Result Preview() = 0;

    /// On OK; false keeps the dialog open.
    virtual bool Apply() = 0;

    const CGraphControl& chart() const { return *m_chart; }

private:
    int ColumnWidth() const;
    void ShowChanges(const QList<Change>& changes);
    void PlaceBesideParent();

    CGraphControl* m_chart;
    QFormLayout* m_form;
    QGridLayout* m_changes;
    QLabel* m_fault;
    QDialogButtonBox* m_buttons;
};
