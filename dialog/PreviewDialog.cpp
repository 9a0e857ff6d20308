// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/PreviewDialog.h"

#include "base/ShownText.h"
#include "chart/CGraphControl.h"
#include "dialog/NumberField.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// Of the columns of texts. They keep their width, so that the dialog stands still while one types.
constexpr int kColumnDigits = 16;
constexpr int kColumnGap = 16;  // pixels

}  // namespace

PreviewDialog::PreviewDialog(const QString& title, CGraphControl* chart, QWidget* parent)
    : QDialog(parent),
      m_chart(chart),
      m_form(new QFormLayout),
      m_changes(new QGridLayout),
      m_fault(new QLabel(this)),
      m_buttons(new QDialogButtonBox(this)) {
    setWindowTitle(title);
    auto* const layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addLayout(m_form);
    auto* const line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    layout->addWidget(line);
    layout->addLayout(m_changes);
    layout->addWidget(m_fault);
    layout->addWidget(m_buttons);
    m_changes->setHorizontalSpacing(kColumnGap);
    m_changes->setColumnStretch(0, 1);
    for (const int column : {1, 2})
        m_changes->setColumnMinimumWidth(column, ColumnWidth());
    m_fault->setTextFormat(Qt::PlainText);
    m_fault->setWordWrap(true);
    m_fault->setMinimumHeight(2 * fontMetrics().lineSpacing());
    m_fault->setAccessibleName(u"Erreur"_s);
}

NumberField* PreviewDialog::AddField(QStringView caption, double start) {
    auto* const field = new NumberField(this);
    field->SetNumber(start);
    m_form->addRow(u" "_s, field);
    Rename(field, caption);
    connect(field, &QLineEdit::textChanged, this, &PreviewDialog::Update);
    return field;
}

void PreviewDialog::Rename(NumberField* field, QStringView caption) {
    qobject_cast<QLabel*>(m_form->labelForField(field))->setText(caption.toString() + u" :"_s);
    field->setAccessibleName(caption.toString().remove(u'&'));
}

void PreviewDialog::Finish() {
    m_buttons->addButton(u"OK"_s, QDialogButtonBox::AcceptRole)->setDefault(true);
    m_buttons->addButton(u"Cancel"_s, QDialogButtonBox::RejectRole);
    connect(m_buttons, &QDialogButtonBox::accepted, this, [this] {
        if (Apply())
            accept();
    });
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    Update();
    PlaceBesideParent();
}

void PreviewDialog::Update() {
    Result result = Preview();
    const bool is_right = result.fault.isEmpty();
    m_fault->setText(is_right ? u" "_s : result.fault);
    for (QAbstractButton* const button : m_buttons->buttons())
        button->setEnabled(is_right ||
                           m_buttons->buttonRole(button) == QDialogButtonBox::RejectRole);
    ShowChanges(result.changes);
    m_chart->SetPreview(is_right ? std::move(result.chart) : std::vector<std::vector<double>>());
}

int PreviewDialog::ColumnWidth() const {
    return kColumnDigits * fontMetrics().horizontalAdvance(u'0');
}

void PreviewDialog::ShowChanges(const QList<Change>& changes) {
    const auto show = [this](int row, int column, const QString& text) {
        QLayoutItem* const item = m_changes->itemAtPosition(row, column);
        auto* label = item != nullptr ? qobject_cast<QLabel*>(item->widget()) : nullptr;
        if (label == nullptr) {
            label = new QLabel(this);
            label->setTextFormat(Qt::PlainText);
            m_changes->addWidget(label, row, column, column == 0 ? Qt::AlignLeft : Qt::AlignRight);
        }
        const QString shown = ShownText(text, kMaxCellLength);
        label->setText(fontMetrics().elidedText(shown, Qt::ElideRight, ColumnWidth()));
    };
    show(0, 1, u"Avant"_s);
    show(0, 2, u"Après"_s);
    for (int row = 0; row < changes.size(); ++row) {
        show(row + 1, 0, changes[row].name);
        show(row + 1, 1, changes[row].before);
        show(row + 1, 2, changes[row].after);
    }
}

// The chart is to be seen: right of the window, left of it, or at the edge of the screen.
void PreviewDialog::PlaceBesideParent() {
    const QWidget* const window = parentWidget()->window();
    const QRect beside = window->frameGeometry();
    const QRect room = window->screen()->availableGeometry();
    const QSize size = sizeHint() + (beside.size() - window->size());
    const int last = room.right() - size.width() + 1;
    int left = beside.right() + 1;
    if (left > last && beside.left() - size.width() >= room.left())
        left = beside.left() - size.width();
    move(std::clamp(left, room.left(), std::max(last, room.left())),
         std::clamp(beside.top(), room.top(),
                    std::max(room.bottom() - size.height() + 1, room.top())));
}

void PreviewDialog::done(int result) {
    m_chart->SetPreview({});
    QDialog::done(result);
}
