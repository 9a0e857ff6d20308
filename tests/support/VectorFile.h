// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>
#include <QStringList>

#include "profiles/ProfileKind.h"

#include <utility>

/// The cases of tests/vectors/`name`.json and of tests/cases/`name`.json, or of the one there is,
/// each with input, expected and notes. With a `key` only those whose "input" holds it. None when
/// either file cannot be read.
QList<QJsonObject> VectorCases(const char* name, const char* key = nullptr);

/// The same as rows of the running data-driven test: each is named after its case and carries it in
/// the column "vector". Without a case the test has no data, which fails it.
void AddVectorRows(const char* name);

/// Bytes of a vector's byte string: ASCII text or {"b64": ...}.
QByteArray VectorBytes(const QJsonValue& value);

/// Strings of a JSON array of strings.
QStringList VectorStrings(const QJsonValue& value);

/// Each of the inputs with its result. Fails the running test when there are not as many of both.
QList<std::pair<QJsonValue, QJsonValue>> VectorPairs(const QJsonValue& inputs,
                                                     const QJsonValue& results);

inline ProfileKind VectorKind(const QJsonValue& value) {
    return static_cast<ProfileKind>(value.toInt());
}
