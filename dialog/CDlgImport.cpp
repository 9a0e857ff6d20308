// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/CDlgImport.h"

#include "grid/GridMetrics.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>

using namespace Qt::StringLiterals;

CDlgImport::CDlgImport(const PointFile& file, QWidget* parent)
    : QDialog(parent),
      m_choice(file),
      m_separator(new QComboBox(this)),
      m_time(new QComboBox(this)),
      m_value(new QComboBox(this)),
      m_preview(new QTableWidget(this)) {
    setWindowTitle(u"Importer des points"_s);
    auto* const layout = new QFormLayout(this);
    layout->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    layout->addRow(u"Séparateur :"_s, m_separator);
    layout->addRow(u"Temps :"_s, m_time);
    layout->addRow(u"Valeurs :"_s, m_value);
    layout->addRow(m_preview);
    auto* const buttons = new QDialogButtonBox(this);
    m_ok = buttons->addButton(u"OK"_s, QDialogButtonBox::AcceptRole);
    m_ok->setDefault(true);
    buttons->addButton(u"Cancel"_s, QDialogButtonBox::RejectRole);
    layout->addRow(buttons);

    m_preview->setAccessibleName(u"Premières lignes"_s);
    m_preview->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_preview->setTabKeyNavigation(false);
    m_preview->setWordWrap(false);
    m_preview->verticalHeader()->hide();
    m_preview->verticalHeader()->setDefaultSectionSize(kGridRowHeight);
    m_separator->addItems(m_choice.Separators());
    FillColumns();
    constexpr QSize kUsualSize = {460, 420};
    resize(kUsualSize);

    connect(m_separator, &QComboBox::activated, this, [this](int index) {
        m_choice.SelectSeparator(index);
        FillColumns();
    });
    connect(m_time, &QComboBox::activated, this, [this](int index) {
        m_choice.SelectTime(index);
        ShowChoice();
    });
    connect(m_value, &QComboBox::activated, this, [this](int index) {
        m_choice.SelectValue(index);
        ShowChoice();
    });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

// What depends on the separator.
void CDlgImport::FillColumns() {
    m_time->clear();
    m_time->addItems(m_choice.TimeChoices());
    m_time->setCurrentIndex(m_choice.time());
    m_value->clear();
    m_value->addItems(m_choice.ValueChoices());
    m_value->setCurrentIndex(m_choice.value());
    FillPreview();
    ShowChoice();
}

void CDlgImport::FillPreview() {
    const QList<QStringList>& lines = m_choice.preview();
    m_preview->clear();
    m_preview->setRowCount(static_cast<int>(lines.size()));
    m_preview->setColumnCount(m_value->count());
    for (int row = 0; row < m_preview->rowCount(); ++row) {
        for (int column = 0; column < lines[row].size(); ++column)
            m_preview->setItem(row, column, new QTableWidgetItem(lines[row][column]));
    }
}

void CDlgImport::ShowChoice() {
    m_preview->setHorizontalHeaderLabels(m_choice.PreviewHeaders());
    m_preview->resizeColumnsToContents();
    m_ok->setEnabled(m_choice.isValid());
}
