// SPDX-License-Identifier: GPL-3.0-or-later
#include "ExchangeText.h"

namespace {

constexpr int kHeaderLines = 13;

QByteArray Header(const Points& points) {
    return "! Written by the host\n"
           "7 ! Number|any|0|+Inf\n"
           "\n"
           "4 2 flow ! Component\n"
           "0 8760 ! Span|hr|0|+Inf\n"
           "0 45 ! Bounds|m\xb3/h|-Inf|+Inf\n"
           "\n"
           "\n"
           "\n"
           "! The function\n"
           "1 ! Cycles\n" +
           QByteArray::number(points.size() - 1) + " ! Points less one\n" +
           QByteArray::number(2 * points.size()) + " ! Point lines\n";
}

void AppendPoint(QByteArray& text, const std::pair<QByteArray, QByteArray>& point,
                 const QByteArray& time_comment, const QByteArray& value_comment) {
    text += point.first + " !" + time_comment + '\n';
    text += point.second + " !" + value_comment + '\n';
}

const QByteArray kHostTime = " Time|hr|0|100";
const QByteArray kHostValue =
    " D\xe9"
    "bit|m\xb3/h|0|45";
const QByteArray kEnd = "! End\n";

}  // namespace

QByteArray HostFile(const Points& points) {
    QByteArray text = Header(points);
    for (const auto& point : points)
        AppendPoint(text, point, kHostTime, kHostValue);
    return text + kEnd;
}

QByteArray SavedFile(const Points& points) {
    QByteArray text = Header(points);
    AppendPoint(text, points.front(), kHostTime, kHostValue);
    for (const auto& point : points.sliced(1))
        AppendPoint(text, point, " Time at point|hr|0|+Inf", " Value at point |any|-Inf|+Inf");
    return text + kEnd + '\n';
}

Points PointsOf(const QByteArray& file) {
    const QList<QByteArray> lines = file.split('\n');
    const auto word = [&](qsizetype line) { return lines.value(line).split(' ').front(); };
    Points points;
    for (int i = 0; i < word(kHeaderLines - 1).toInt(); i += 2)
        points.append({word(kHeaderLines + i), word(kHeaderLines + i + 1)});
    return points;
}
