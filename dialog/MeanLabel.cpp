// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/MeanLabel.h"

#include "base/NumberText.h"
#include "profiles/Coefficients.h"
#include "profiles/ProfileSession.h"

#include <QEvent>

using namespace Qt::StringLiterals;

namespace {

constexpr int kFontPixelSize = 10;
constexpr int kMeanDecimals = 3;

// A red that is readable on the window's colour, light or dark.
QColor WarningColour(const QPalette& palette) {
    const bool dark = palette.color(QPalette::Window).lightness() < 128;
    return dark ? QColor(255, 120, 110) : QColor(180, 0, 20);
}

}  // namespace

MeanLabel::MeanLabel(const ProfileSession* session, QWidget* parent)
    : QLabel(parent), m_session(session) {
    QFont small = font();
    small.setPixelSize(kFontPixelSize);
    setFont(small);
    setTextFormat(Qt::PlainText);
    setObjectName(u"mean"_s);
    const ProfileTable* const table = &session->table();
    connect(table, &QAbstractItemModel::dataChanged, this, &MeanLabel::Refresh);
    connect(table, &QAbstractItemModel::modelReset, this, &MeanLabel::Refresh);
    Refresh();
}

void MeanLabel::Refresh() {
    if (!m_session->facts().coefficients)
        return;
    const ProfileKind kind = m_session->kind();
    const float sum = RoundedSum(kind, m_session->table().Column(ProfileTable::kValueColumn));
    const float mean = sum / static_cast<float>(CoefficientCount(kind));
    setText(u"Moyenne : "_s + FormatValue(mean, kMeanDecimals));
    QPalette colours = parentWidget() != nullptr ? parentWidget()->palette() : palette();
    if (!SumIsRight(kind, sum))
        colours.setColor(QPalette::WindowText, WarningColour(colours));
    setPalette(colours);
}

void MeanLabel::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::ApplicationPaletteChange)
        Refresh();
}
