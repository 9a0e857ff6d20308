// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

/// Points as the texts of the table: lists of the same length.
struct PointTexts {
    QStringList times;
    QStringList values;
};
