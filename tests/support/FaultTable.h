// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>

#ifdef __SANITIZE_ADDRESS__
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif

/// Adds a line of `cells` to the table `name`, a file in the folder that the environment variable
/// FAULT_TABLES names; does nothing without one. A test calls it once the row has passed.
inline void AddTableRow(const char* name, const QStringList& cells) {
    const QString folder = qEnvironmentVariable("FAULT_TABLES");
    QFile table(folder + QLatin1Char('/') + QLatin1StringView(name) + QStringLiteral(".md"));
    if (!folder.isEmpty() && table.open(QIODevice::Append))
        table.write(QString(QStringLiteral("| ") + cells.join(QStringLiteral(" | ")) +
                            QStringLiteral(" |\n"))
                        .toUtf8());
}
