// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/IndexLabels.h"

#include <QFontMetricsF>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

// Pixels.
constexpr int kLabelMargin = 4;
constexpr double kLabelGap = 6.0;

double SignedAngle(double degrees) {
    return degrees > 180.0 ? degrees - 360.0 : degrees;
}

// Of labels that do not fit side by side.
double TurnedAngle(const CDocControl& chart, double distance, double label_height) {
    const ChartScale& scale = chart.index_scale;
    if (scale.labels != ScaleLabels::ItemTexts)
        return scale.labels_turn ? SignedAngle(scale.label_angle) : 0.0;
    const bool upright =
        chart.item_style.label_turn == ItemLabelTurn::Upright || distance < label_height * 1.5;
    return upright ? -90.0 : -45.0;
}

// The plot leaves no room for what stands beyond the axis of its first and its last label, and
// shows no label that would be cut. Labels turned to the left end at their marks.
QMargins LabelMargins(double first, double last, double angle, double label_height) {
    const double turn = std::abs(angle) * std::numbers::pi / 180.0;
    const double before =
        angle == 0.0 ? first / 2.0 : first * std::cos(turn) + label_height / 2.0 * std::sin(turn);
    const double after = angle == 0.0 ? last / 2.0 : 0.0;
    return {static_cast<int>(std::ceil(before)) + kLabelMargin, kPlotMargin + kLabelMargin,
            std::max(static_cast<int>(std::ceil(after)), kPlotMargin) + kLabelMargin, 0};
}

}  // namespace

IndexLabels PlaceIndexLabels(const CDocControl& chart, const AxisPlan& plan, int width,
                             const QFont& font) {
    const bool texts = chart.index_scale.labels == ScaleLabels::ItemTexts;
    const QFontMetricsF metrics(font);
    std::vector<double> lengths;
    for (double tick : plan.Ticks()) {
        lengths.push_back(metrics.horizontalAdvance(
            texts ? chart.items.Label(static_cast<int>(tick)) : plan.LabelText(tick)));
    }
    if (lengths.empty())
        return {0.0, LabelMargins(0.0, 0.0, 0.0, 0.0)};
    const double widest = *std::max_element(lengths.cbegin(), lengths.cend());
    const double distance = width * plan.step / (plan.high - plan.low);
    const double angle =
        widest + kLabelGap > distance ? TurnedAngle(chart, distance, metrics.height()) : 0.0;
    return {angle, LabelMargins(lengths.front(), lengths.back(), angle, metrics.height())};
}
