// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLineEdit>

#include <optional>

/// A field for one number. It takes a point or a comma as the decimal sign.
class NumberField : public QLineEdit {
    Q_OBJECT

public:
    using QLineEdit::QLineEdit;

    /// Nothing when the text is no finite number.
    std::optional<double> number() const;

    void SetNumber(double number);
};
