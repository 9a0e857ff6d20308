// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialog/ButtonPicture.h"

#include <QPushButton>

#include <array>

/// A button that shows only a picture, one for each of its four states. The pictures include the
/// frame.
class BitmapButton : public QPushButton {
    Q_OBJECT

public:
    enum class State { Up, Down, Focused, Disabled };

    explicit BitmapButton(QWidget* parent = nullptr);

    /// Loads the pictures named after `caption` and a letter for the state: U, D, F or X. The
    /// picture of the state Up replaces a missing one. False when that is missing too: then the
    /// button keeps its pictures. The caption itself is never shown.
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
