#include "VectorFile.h"

#include "base/Cp1252.h"

#include <QFile>
#include <QJsonDocument>
#include <QTest>

namespace {

QJsonArray Cases(const char* name) {
    QFile file(QStringLiteral(VECTOR_DIR "/%1.json").arg(QLatin1StringView(name)));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object()[u"cases"].toArray();
}

}  // namespace

void AddVectorRows(const char* name, const char* key) {
    QTest::addColumn<QJsonObject>("vector");
    const QJsonArray cases = Cases(name);
    for (const QJsonValue& value : cases) {
        const QJsonObject one = value.toObject();
        if (key == nullptr || one[u"input"].toObject().contains(QLatin1StringView(key)))
            QTest::newRow(qPrintable(one[u"name"].toString())) << one;
    }
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
