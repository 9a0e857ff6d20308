// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialog/ButtonLayout.h"
#include "dialog/ButtonPicture.h"

#include <QPushButton>

#include <optional>

/// A push button with a small picture and its caption. The picture is the button's icon if it has
/// one, drawn at its icon size, otherwise the bitmap given by `SetBitmap`.
/// Layout, mask, corner mark, black border and last action are part of the given interface; the
/// dialog uses none of them.
class CSXButton : public QPushButton {
    Q_OBJECT

public:
    /// Whether the mask colour of a bitmap is replaced: by the colour of button faces, and by white
    /// in the image of the disabled button.
    enum class ColorMapping { Off, On };

    explicit CSXButton(QWidget* parent = nullptr);

    const ButtonLayout& Layout() const { return m_layout; }
    void SetLayout(const ButtonLayout& layout);

    /// Takes the bitmap with the number `resource`, drawn `width` by `height` pixels large, and
    /// drops the icon. False, with nothing changed, when there is no such bitmap or no such size.
    bool SetBitmap(int resource, int width, int height);
    bool SetBitmap(int resource, int width, int height, QColor mask, ColorMapping mapping);

    /// A small triangle in the top left corner.
    void SetCornerMark(std::optional<QColor> color);

    /// A black line of one pixel around the button.
    void SetBlackBorder(bool on);

    /// Why the button was last repainted and the state it showed, also while disabled. The focus
    /// rectangle is visible if that state is focused and not disabled.
    DrawAction lastAction() const { return m_last_action; }
    ButtonState lastState() const { return m_last_state; }

protected:
    void paintEvent(QPaintEvent* event) override;

    /// Draws the whole button: border, frame, corner mark, image, caption and focus rectangle.
    virtual void DrawItem(QPainter& painter) const;

private:
    ButtonContent Content(QRect frame) const;
    void DrawCornerMark(QPainter& painter, QPoint corner) const;
    void DrawImage(QPainter& painter, QRect place) const;
    void DrawFocus(QPainter& painter) const;

    ButtonLayout m_layout;
    ButtonPicture m_bitmap;
    QSize m_image_size;
    std::optional<QColor> m_mask;  // of the bitmap, while its colours are mapped
    std::optional<QColor> m_corner_mark;
    bool m_black_border = false;
    DrawAction m_last_action = DrawAction::None;
    ButtonState m_last_state;
};
