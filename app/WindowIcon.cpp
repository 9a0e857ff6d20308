// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowIcon.h"

#include "dialog/ButtonPicture.h"

#include <QGuiApplication>

QIcon WindowIcon() {
    const ButtonPicture picture(QStringLiteral("function-editor"));
    QIcon icon;
    for (const int side : {16, 24, 32, 48, 64, 128}) {
        icon.addPixmap(
            QPixmap::fromImage(picture.Image({side, side}, 1.0, QGuiApplication::palette())));
    }
    return icon;
}
