// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/CSXButton.h"

#include "base/ColourContrast.h"
#include "base/QtColour.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionFocusRect>

using namespace Qt::StringLiterals;

namespace {

constexpr int kCornerMarkSize = 7;

void ReplaceColor(QImage& image, const QColor& from, const QColor& to) {
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == from.rgb())
                image.setPixelColor(x, y, to);
        }
    }
}

}  // namespace

CSXButton::CSXButton(QWidget* parent) : QPushButton(parent) {
    // Enter belongs to the grid.
    setAutoDefault(false);
}

void CSXButton::SetLayout(const ButtonLayout& layout) {
    m_layout = layout;
    update();
}

bool CSXButton::SetBitmap(int resource, int width, int height) {
    return SetBitmap(resource, width, height, QColor(Qt::black), ColorMapping::Off);
}

bool CSXButton::SetBitmap(int resource, int width, int height, QColor mask, ColorMapping mapping) {
    ButtonPicture bitmap(QString::number(resource));
    if (bitmap.isNull() || width <= 0 || height <= 0)
        return false;
    m_bitmap = std::move(bitmap);
    m_image_size = {width, height};
    m_mask = mapping == ColorMapping::On ? std::optional(mask) : std::nullopt;
    setIcon({});
    update();
    return true;
}

void CSXButton::SetCornerMark(std::optional<QColor> color) {
    m_corner_mark = color;
    update();
}

void CSXButton::SetBlackBorder(bool on) {
    m_black_border = on;
    update();
}

void CSXButton::paintEvent(QPaintEvent*) {
    const ButtonState state = {isDown(), !isEnabled(), hasFocus()};
    m_last_action =
        m_last_action == DrawAction::None ? DrawAction::Entire : ActionFor(state, m_last_state);
    m_last_state = state;
    QPainter painter(this);
    DrawItem(painter);
}

void CSXButton::DrawItem(QPainter& painter) const {
    const int border = m_black_border ? 1 : 0;
    QStyleOptionButton frame;
    initStyleOption(&frame);
    frame.rect.adjust(border, border, -border, -border);
    if (m_black_border) {
        painter.setPen(Qt::black);
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
    style()->drawControl(QStyle::CE_PushButtonBevel, &frame, &painter, this);

    const ButtonContent content = Content(frame.rect);
    const int offset = content.pressed ? 1 : 0;
    if (m_corner_mark)
        DrawCornerMark(painter, frame.rect.topLeft() + QPoint(offset + 1, offset + 1));
    if (content.image)
        DrawImage(painter, QRect(ImagePlace(m_layout, content), *content.image));
    if (content.text) {
        style()->drawItemText(&painter, QRect(TextPlace(m_layout, content), *content.text),
                              Qt::AlignLeft | Qt::AlignTop | Qt::TextShowMnemonic, palette(),
                              isEnabled(), text(), QPalette::ButtonText);
    }
    if (m_last_state.focused && !m_last_state.disabled)
        DrawFocus(painter);
}

ButtonContent CSXButton::Content(QRect frame) const {
    ButtonContent content;
    content.client = size();
    content.frame_left = frame.left();
    if (!icon().isNull())
        content.image = iconSize();
    else if (!m_bitmap.isNull())
        content.image = m_image_size;
    if (!text().isEmpty())
        content.text = fontMetrics().size(Qt::TextShowMnemonic, text());
    content.pressed = isDown();
    return content;
}

void CSXButton::DrawCornerMark(QPainter& painter, QPoint corner) const {
    for (int line = 0; line < kCornerMarkSize; ++line)
        painter.fillRect(corner.x(), corner.y() + line, kCornerMarkSize - line, 1, *m_corner_mark);
}

void CSXButton::DrawImage(QPainter& painter, QRect place) const {
    if (!icon().isNull()) {
        icon().paint(&painter, place, Qt::AlignCenter,
                     isEnabled() ? QIcon::Normal : QIcon::Disabled);
        return;
    }
    // Device pixels per logical pixel, of the screen or of an image.
    const qreal ratio = painter.deviceTransform().m11();
    QImage image = m_bitmap.Image(place.size(), ratio, palette());
    if (m_mask) {
        ReplaceColor(image, *m_mask,
                     isEnabled() ? palette().color(QPalette::Button) : QColor(Qt::white));
    }
    QPixmap pixmap = QPixmap::fromImage(std::move(image));
    if (!isEnabled()) {
        QStyleOption option;
        option.initFrom(this);
        pixmap = style()->generatedIconPixmap(QIcon::Disabled, pixmap, &option);
    }
    painter.drawPixmap(place.topLeft(), pixmap);
}

void CSXButton::DrawFocus(QPainter& painter) const {
    const int inset = FocusInset(size());
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.rect = rect().adjusted(inset, inset, -inset, -inset);
    option.backgroundColor = palette().color(QPalette::Button);
    // Drawn after a click too: some styles show the focus only after a key moved it.
    option.state |= QStyle::State_KeyboardFocusChange;
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    // Some styles draw frames that are hardly visible on a dark button.
    const QColor mark = palette().color(QPalette::Highlight);
    painter.setPen(ToQColor(LegibleOn(ToColour(option.backgroundColor), ToColour(mark))));
    painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
}
