// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/EntryRules.h"
#include "Rules.h"
#include "base/EnglishAtof.h"
#include "base/FileReplace.h"
#include "base/Message.h"
#include "base/NumberText.h"
#include "grid/PasteRules.h"
#include "profiles/Coefficients.h"
#include "profiles/InsertPoints.h"
#include "profiles/ProfileFile.h"
#include "profiles/ProfileFolders.h"
#include "profiles/ProfileTable.h"

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

using enum ProfileKind;

// A path with the separators of this platform.
QString PathFrom(const QJsonValue& value) {
    return value.toString().replace(u'\\', u'/');
}

QJsonValue TextOrNull(const QString& text) {
    return text.isEmpty() ? QJsonValue() : text;
}

// The result of an entry, with the message that it brought up.
template <typename Check>
QJsonObject WithMessage(MessageIcon icon, const Check& check) {
    QString message;
    const MessageHandler former =
        SetMessageHandler({[&](const QString& text, MessageIcon shown, const QString&) {
                               message += shown == icon ? text : u"wrong icon: "_s + text;
                           },
                           {}});
    QJsonObject result = check();
    SetMessageHandler(former);
    result[u"message"_s] = TextOrNull(message);
    return result;
}

QJsonValue Separator(const QJsonValue& input, const QJsonObject&) {
    return WithMessage(MessageIcon::None, [&] {
        const auto text = CheckDecimalSeparator(input.toString());
        return text ? QJsonObject{{u"accepted"_s, true}, {u"text"_s, *text}}
                    : QJsonObject{{u"accepted"_s, false}};
    });
}

// Text typed into a cell passes the separator and has to keep the cell's bound too.
QJsonValue Typed(const QJsonValue& input, const QJsonObject& all) {
    std::optional<QString> text;
    const QJsonObject separated = WithMessage(MessageIcon::None, [&] {
        text = CheckDecimalSeparator(input.toString());
        return QJsonObject{{u"value"_s, text ? EnglishAtof(*text) : QJsonValue()}};
    });
    if (separated[u"value"].isNull())
        return separated;
    bool accepted = false;
    QJsonObject result = WithMessage(MessageIcon::Information, [&] {
        accepted = CheckTypedBound(VectorKind(all[u"kind"]), EnglishAtof(*text));
        return separated;
    });
    return accepted == result[u"message"].isNull() ? result : QJsonValue();
}

// Which row stands where is told by its value.
QJsonValue TimeMove(const QJsonValue&, const QJsonObject& input) {
    QStringList times;
    QStringList values;
    const QJsonArray rows = input[u"rows"].toArray();
    for (const QJsonValue& row : rows) {
        times.append(row[0].toString());
        values.append(row[1].toString());
    }
    return WithMessage(MessageIcon::None, [&] {
        const auto checked = CheckDecimalSeparator(input[u"entry"].toString());
        if (!checked)
            return QJsonObject{{u"target"_s, QJsonValue()}};
        const QString& entry = *checked;
        const int row = input[u"row"].toInt();
        const int target = TargetRow(times, row, EnglishAtof(entry));
        ProfileTable table(Function);
        table.ResetRows(times, values);
        // What is no number counts as 0; it is left to others to keep such entries out.
        table.SetCellText(row, 1, IsNumber(entry) ? entry : NumberText13(ParseNumber(entry)));
        table.MoveRow(row, target, RewrittenNumber);
        QJsonArray order;
        QJsonObject cells;
        for (int i = 1; i <= table.RowCount(); ++i) {
            const qsizetype from = values.indexOf(table.CellText(i, 2));
            order.append(from + 1);
            if (from >= 0)
                values[from].clear();
            if (row != target && i >= std::min(row, target) && i <= std::max(row, target))
                cells[QString::number(i)] = Array({table.CellText(i, 1), table.CellText(i, 2)});
        }
        return QJsonObject{{u"target"_s, target}, {u"order"_s, order}, {u"cells"_s, cells}};
    });
}

QJsonValue AddedPoint(const QJsonValue&, const QJsonObject& input) {
    const float time = EnglishAtof(input[u"x"].toString());
    const float value = EnglishAtof(input[u"y"].toString());
    return QJsonObject{
        {u"row"_s, InsertionRow(VectorStrings(input[u"times"]), time)},
        {u"cells"_s, Array({NumberText7(double{time}), NumberText7(double{value})})}};
}

QJsonValue Clipboard(const QJsonValue&, const QJsonObject& input) {
    const QList<int> rows = Numbers(input[u"rows"]);
    const QList<int> columns = Numbers(input[u"columns"]);
    QString message;
    QJsonObject result;
    if (input.contains(u"copied_column"_s)) {
        const PasteRequest request = {
            input[u"copied_column"].toInt(), input[u"copied_rows"].toInt(), rows, columns,
            input[u"row_count"].toInt(),     input[u"foreign"].toBool()};
        message = PasteRefusal(request);
        result[u"filled"_s] = message.isEmpty() ? PastedRowCount(request) : QJsonValue();
    } else if (input.contains(u"kind"_s)) {
        message = BulkRefusal(VectorKind(input[u"kind"]), VectorStrings(input[u"column"]));
    } else {
        message = CopyRefusal(rows, columns);
    }
    result[u"message"_s] = TextOrNull(message);
    return result;
}

QJsonValue Adjusted(const QJsonValue&, const QJsonObject& input) {
    const ProfileKind kind = VectorKind(input[u"kind"]);
    const QStringList column = VectorStrings(input[u"column"]);
    const float sum = RoundedSum(kind, column);
    QJsonObject result = {{u"S"_s, FormatValue(sum, 2)}, {u"question"_s, QJsonValue()}};
    if (SumIsRight(kind, sum))
        return result;
    const QStringList adjusted = AdjustCoefficients(kind, column, sum);
    result[u"question"_s] = AdjustQuestion(kind, sum);
    result[u"adjusted"_s] = adjusted == column ? QJsonValue() : Array(adjusted);
    return result;
}

QJsonValue Rebalanced(const QJsonValue&, const QJsonObject& input) {
    const ProfileKind kind = VectorKind(input[u"kind"]);
    const QStringList rebalanced =
        RebalanceCoefficients(kind, VectorStrings(input[u"column"]), input[u"index"].toInt(),
                              EnglishAtof(input[u"value"].toString()));
    return QJsonObject{{u"rebalanced"_s, Array(rebalanced)},
                       {u"settled"_s, Array(SettleRemainder(kind, rebalanced))}};
}

QJsonValue Written(const QJsonValue&, const QJsonObject& input) {
    ProfileContent content;
    const QJsonArray rows = input[u"rows"].toArray();
    for (const QJsonValue& row : rows) {
        content.labels += row[0].toString();
        content.values += row[1].toString();
        content.names += row[2].toString();
    }
    const ProfileKind kind = VectorKind(input[u"kind"]);
    QByteArray bytes = WriteProfile(kind, content, "\n");
    const QString text = QString::fromLatin1(bytes);
    const QJsonObject coded = {{u"b64"_s, QString::fromLatin1(bytes.toBase64())}};
    const QJsonValue file = text.toUtf8() == bytes ? QJsonValue(text) : coded;
    const bool crlf = WriteProfile(kind, content, "\r\n") == bytes.replace("\n", "\r\n");
    return QJsonObject{{u"file"_s, crlf ? file : QJsonValue()}};
}

QJsonValue NameSaved(const QJsonValue& save, const QJsonObject&) {
    return NameAfterSave(VectorKind(save[0]), PathFrom(save[1]), save[2].toString(),
                         save[3].toBool());
}

using Value = const QJsonValue&;
using All = const QJsonObject&;

}  // namespace

QList<Rule> EntryRules() {
    return {
        {"numbers", "atof", [](Value in, All) -> QJsonValue { return EnglishAtof(in.toString()); }},
        {"numbers", "format",
         [](Value in, All) -> QJsonValue {
             return FormatValue(EnglishAtof(in[0].toString()), in[1].toInt());
         }},
        {"numbers", "round2",
         [](Value in, All) -> QJsonValue {
             return FormatValue(Round2(EnglishAtof(in.toString())), 2);
         }},
        {"numbers", "whole",
         [](Value in, All) -> QJsonValue {
             return FormatValue(RoundWhole(EnglishAtof(in.toString())), 0);
         }},
        {"numbers", "text13",
         [](Value in, All) -> QJsonValue { return NumberText13(ParseNumber(in.toString())); }},
        {"numbers", "text7",
         [](Value in, All) -> QJsonValue {
             return NumberText7(double{EnglishAtof(in.toString())});
         }},
        {"numbers", "rewritten",
         [](Value in, All) -> QJsonValue { return RewrittenNumber(in.toString()); }},
        {"numbers", "separator", Separator},
        {"numbers", "typed", Typed},
        {"coefficients", nullptr, Adjusted},
        {"rebalance", nullptr, Rebalanced},
        {"time_moves", nullptr, TimeMove},
        {"add_points", nullptr, AddedPoint},
        {"clipboard", nullptr, Clipboard},
        {"dat_write", "rows", Written},
        {"dat_write", "saves", NameSaved, "names"},
        {"dat_write", "chosen",
         [](Value in, All) -> QJsonValue {
             return WithExtension(PathFrom(in)).replace(u'/', u'\\');
         },
         "written"},
        {"dat_write", "inside",
         [](Value in, All) -> QJsonValue {
             const ProfileFolders folders(u"/p"_s);
             const QString file = in[1].toString();
             const bool inside = folders.IsInKindFolder(VectorKind(in[0]), file);
             // On Windows a path may name its drive or not.
             return inside == folders.IsInKindFolder(VectorKind(in[0]), AbsolutePath(file))
                        ? QJsonValue(inside)
                        : QJsonValue();
         },
         "inside"}};
}
