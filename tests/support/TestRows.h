// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/ProfileKind.h"

#include <QTest>

#include <initializer_list>
#include <utility>

/// The rows of the running data-driven test, each in the column "row".
template <typename Row>
void AddRows(std::initializer_list<std::pair<const char*, Row>> rows) {
    QTest::addColumn<Row>("row");
    for (const auto& [name, row] : rows)
        QTest::newRow(name) << row;
}

/// A row for each kind.
inline void AddKinds() {
    AddRows<ProfileKind>({{"function", ProfileKind::Function},
                          {"annual", ProfileKind::Annual},
                          {"monthly", ProfileKind::Monthly},
                          {"weekly", ProfileKind::Weekly},
                          {"daily", ProfileKind::Daily}});
}

/// The texts between the bars of "a|b|c*3": a, b and three times c; none of "".
inline QStringList Texts(const QString& joined) {
    QStringList texts;
    for (const QString& part : joined.isEmpty() ? QStringList() : joined.split(u'|')) {
        const QStringList item = part.split(u'*');
        texts += QStringList(item.value(1, QStringLiteral("1")).toInt(), item.first());
    }
    return texts;
}
