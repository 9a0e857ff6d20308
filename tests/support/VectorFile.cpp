// SPDX-License-Identifier: GPL-3.0-or-later
#include "VectorFile.h"

#include "base/Cp1252.h"

#include <QFile>
#include <QJsonDocument>
#include <QTest>

using namespace Qt::StringLiterals;

QList<QJsonObject> VectorCases(const char* name, const char* key) {
    QList<QJsonObject> found;
    for (const QLatin1StringView folder : {"vectors"_L1, "cases"_L1}) {
        QFile file(QStringLiteral(TESTS_DIR "/%1/%2.json").arg(folder, QLatin1StringView(name)));
        if (!file.exists())
            continue;
        const QJsonDocument document = file.open(QIODevice::ReadOnly)
                                           ? QJsonDocument::fromJson(file.readAll())
                                           : QJsonDocument();
        const QJsonArray cases = document.object()[u"cases"].toArray();
        if (cases.isEmpty())
            return {};
        for (const QJsonValue& one : cases) {
            if (key == nullptr || one[u"input"].toObject().contains(QLatin1StringView(key)))
                found.append(one.toObject());
        }
    }
    return found;
}

void AddVectorRows(const char* name) {
    QTest::addColumn<QJsonObject>("vector");
    for (const QJsonObject& one : VectorCases(name))
        QTest::newRow(qPrintable(one[u"name"].toString())) << one;
}

QByteArray VectorBytes(const QJsonValue& value) {
    if (value.isObject())
        return QByteArray::fromBase64(value.toObject()[u"b64"].toString().toLatin1());
    return ToCp1252(value.toString());
}

QStringList VectorStrings(const QJsonValue& value) {
    QStringList strings;
    const QJsonArray array = value.toArray();
    for (const QJsonValue& one : array)
        strings.append(one.toString());
    return strings;
}

QList<std::pair<QJsonValue, QJsonValue>> VectorPairs(const QJsonValue& inputs,
                                                     const QJsonValue& results) {
    QList<std::pair<QJsonValue, QJsonValue>> pairs;
    if (inputs.toArray().size() != results.toArray().size() || inputs.toArray().isEmpty())
        QTest::qFail("the vector's lists do not fit", __FILE__, __LINE__);
    for (qsizetype i = 0; i < inputs.toArray().size(); ++i)
        pairs.append({inputs[i], results[i]});
    return pairs;
}
