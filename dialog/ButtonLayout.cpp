// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/ButtonLayout.h"

#include <algorithm>

namespace {

constexpr int kLargestInset = 3;

// Rounds down, also when the object is larger than the room.
int Centred(int room, int object) {
    return (room - object) >> 1;
}

int Resolved(int position, int room, int object) {
    return position == kCentred ? Centred(room, object) : position;
}

}  // namespace

QPoint ImagePlace(const ButtonLayout& layout, const ButtonContent& content) {
    QPoint place = layout.image_position;
    if (layout.beside_text)
        place = {content.text ? layout.image_margin + content.frame_left : kCentred, kCentred};
    const QSize image = content.image.value_or(QSize(0, 0));
    const int offset = content.pressed ? 1 : 0;
    return {Resolved(place.x(), content.client.width(), image.width()) + offset,
            Resolved(place.y(), content.client.height(), image.height()) + offset};
}

QPoint TextPlace(const ButtonLayout& layout, const ButtonContent& content) {
    const QSize text = content.text.value_or(QSize(0, 0));
    QPoint place = layout.text_position;
    if (layout.beside_text) {
        place = {kCentred, kCentred};
        if (content.image) {
            const int left = layout.image_margin + content.image->width() + layout.image_text_gap;
            place.setX(left + std::max(0, content.client.width() - text.width() - left) / 2);
        }
    }
    const int offset = content.pressed ? 1 : 0;
    const int lift = place.y() == kCentred ? 1 : 0;
    return {Resolved(place.x(), content.client.width(), text.width()) + offset,
            Resolved(place.y(), content.client.height(), text.height()) + offset - lift};
}

DrawAction ActionFor(ButtonState state, ButtonState last) {
    last.focused = !last.focused;
    return state == last ? DrawAction::Focus : DrawAction::Entire;
}

int FocusInset(QSize size) {
    return std::min(std::min(size.width(), size.height()) / 4, kLargestInset);
}
