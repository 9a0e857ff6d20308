#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringList>

#include "profiles/ProfileKind.h"

#include <utility>

/// The cases of tests/vectors/`name`.json as rows of the running data-driven test: each row is
/// named after its case and carries the column "vector" (QJsonObject) with input, expected and
/// notes. The row "(file)" is never made, so an unreadable or empty file leaves the test without
/// data, which fails it.
/// With a `key` only cases whose "input" holds it.
void AddVectorRows(const char* name, const char* key = nullptr);

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
