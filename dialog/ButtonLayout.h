// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

/// An explicit position that stands for "centred" on its axis.
inline constexpr int kCentred = -1;

/// Where a picture button puts its image and its caption. Pixels throughout.
struct ButtonLayout {
    bool beside_text = true;  ///< side by side; otherwise at the two positions below
    QPoint image_position;
    QPoint text_position;
    int image_margin = 4;    ///< left of the image
    int image_text_gap = 8;  ///< between image and caption
};

/// The parts to place.
struct ButtonContent {
    QSize client;                ///< of the whole button
    int frame_left = 0;          ///< left edge of the button's frame
    std::optional<QSize> image;  ///< nothing: no image
    std::optional<QSize> text;   ///< extent of the caption; nothing: no caption
    bool pressed = false;        ///< moves both by one pixel to the right and down
};

/// Top left corner of the image.
QPoint ImagePlace(const ButtonLayout& layout, const ButtonContent& content);

/// Top left corner of the caption. A vertically centred caption sits one pixel higher.
QPoint TextPlace(const ButtonLayout& layout, const ButtonContent& content);

/// The states that a button shows.
struct ButtonState {
    bool pressed = false;
    bool disabled = false;
    bool focused = false;

    friend bool operator==(const ButtonState&, const ButtonState&) = default;
};

/// Why a button is repainted: completely, or only because the focus changed.
enum class DrawAction { None, Entire, Focus };

/// The reason to repaint a button that shows `last` when its state becomes `state`.
DrawAction ActionFor(ButtonState state, ButtonState last);

/// Distance in pixels between the edges of a button of `size` and its focus rectangle.
int FocusInset(QSize size);
