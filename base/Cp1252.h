// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

/// Text of files is one byte a character in code page 1252. Both directions lose nothing: the five
/// bytes that the page leaves open stand for the control characters of the same number.

/// The characters of `bytes`, as many as there are bytes.
QString FromCp1252(QByteArrayView bytes);

/// The bytes of `text`, as many as there are UTF-16 units; what the page does not hold becomes "?".
QByteArray ToCp1252(QStringView text);

/// Adds what `ToCp1252` gives for `text` to `bytes`.
void AppendCp1252(QByteArray& bytes, QStringView text);
