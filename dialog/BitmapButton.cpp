// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/BitmapButton.h"

#include <QPainter>

using namespace Qt::StringLiterals;

BitmapButton::BitmapButton(QWidget* parent) : QPushButton(parent) {
    // Enter belongs to the grid.
    setAutoDefault(false);
}

bool BitmapButton::AutoLoad(const QString& caption) {
    constexpr std::array<QChar, 4> kLetters = {u'U', u'D', u'F', u'X'};
    std::array<ButtonPicture, 4> pictures;
    for (size_t i = 0; i < pictures.size(); ++i) {
        pictures[i] = ButtonPicture(caption + kLetters[i]);
        if (pictures[i].isNull())
            pictures[i] = pictures.front();
    }
    if (pictures.front().isNull())
        return false;
    m_pictures = std::move(pictures);
    m_size = m_pictures.front().size();
    updateGeometry();
    update();
    return true;
}

BitmapButton::State BitmapButton::ShownState() const {
    if (!isEnabled())
        return State::Disabled;
    if (isDown())
        return State::Down;
    return hasFocus() ? State::Focused : State::Up;
}

QSize BitmapButton::sizeHint() const {
    return m_size.isEmpty() ? QPushButton::sizeHint() : m_size;
}

void BitmapButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ButtonPicture& picture = Picture(ShownState());
    // Drawn at its own size: a stretched line would be blurred.
    QRect place(QPoint(), m_size);
    place.moveTopLeft({(width() - place.width()) / 2, (height() - place.height()) / 2});
    // Active colours in every state: the picture of the disabled state is pale itself.
    QPalette colors = palette();
    colors.setCurrentColorGroup(QPalette::Active);
    picture.Draw(painter, place, colors);
}
