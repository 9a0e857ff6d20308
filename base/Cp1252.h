// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

/// Files hold text in code page 1252, one byte a character. Every byte sequence survives both
/// directions: the five bytes that the page leaves open are the control characters of that number.

/// The characters of `bytes`, as many as there are bytes.
QString FromCp1252(QByteArrayView bytes);

/// The bytes of `text`, one for each UTF-16 unit. A character that the page lacks becomes "?".
QByteArray ToCp1252(QStringView text);

/// Appends `ToCp1252(text)` to `bytes`.
void AppendCp1252(QByteArray& bytes, QStringView text);
