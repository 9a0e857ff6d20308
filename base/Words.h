// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/EnglishAtof.h"

#include <QByteArrayView>

#include <algorithm>

/// Takes the first word off `rest`; empty when nothing but white space is left.
inline QByteArrayView TakeWord(QByteArrayView& rest) {
    const auto begin = std::find_if_not(rest.begin(), rest.end(), IsBlank);
    const auto end = std::find_if(begin, rest.end(), IsBlank);
    rest = QByteArrayView(end, rest.end());
    return QByteArrayView(begin, end);
}
