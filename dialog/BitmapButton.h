// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialog/ButtonPicture.h"

#include <QPushButton>

#include <array>

/// A button that is nothing but a picture, one for each of its four states. The pictures bring
/// their own frame.
class BitmapButton : public QPushButton {
    Q_OBJECT

public:
    enum class State { Up, Down, Focused, Disabled };

    explicit BitmapButton(QWidget* parent = nullptr);

    /// Takes the pictures that are named after `caption` and a letter for the state: U, D, F or X.
    /// A lacking picture is replaced by that of the state Up; false when that one lacks too, and
    /// then the button keeps what it had. The caption itself is never shown.
    bool AutoLoad(const QString& caption);

    State ShownState() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const ButtonPicture& Picture(State state) const {
        return m_pictures[static_cast<size_t>(state)];
    }

    std::array<ButtonPicture, 4> m_pictures;
    QSize m_size;  // of all of them
};
