// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/DragRules.h"

#include "base/EnglishAtof.h"
#include "base/NumberText.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr double kHundredthsSlack = 0.0005;

// Tolerance of a press around a point, in axis units. Each axis includes its upper bound and
// excludes its lower one.
constexpr double kLeftOpen = -3.6;
constexpr double kRightClosed = 3.0;
constexpr double kBelowOpen = -2.6;
constexpr double kAboveClosed = 2.1;
constexpr double kPickSlack = 1e-6;

// The first hundredth that is not below `value`, as a number of hundredths.
double HundredthsFrom(double value) {
    const double nearest = std::round(value * 100.0);
    return nearest / 100.0 < value ? nearest + 1.0 : nearest;
}

bool IsBetween(double distance, double open, double closed) {
    return distance > open + kPickSlack && distance <= closed + kPickSlack;
}

}  // namespace

double CutToHundredths(double value) {
    const double hundredths = value * 100.0;
    const double nearest = std::round(hundredths);
    const bool is_whole = std::abs(hundredths - nearest) <= kHundredthsSlack;
    // Adding 0 turns -0 into 0.
    return (is_whole ? nearest : std::trunc(hundredths)) / 100.0 + 0.0;
}

std::optional<QString> AcceptDrag(ProfileKind kind, double value) {
    const KindDescriptor& facts = Describe(kind);
    const double cut = CutToHundredths(value);
    if (facts.columns == 0 || !std::isfinite(static_cast<float>(cut)))
        return {};
    if (facts.coefficients && cut > double{facts.typed_bound})
        return {};
    if (facts.hasNames())
        return QString::number(std::trunc(cut) + 0.0, 'f', 0);
    // Single precision would lose the hundredths of numbers above 131,072.
    return QString::number(cut, 'f', 2);
}

std::optional<QString> AcceptDraggedTime(double time, double low, double high) {
    const double first = HundredthsFrom(low);
    const double last = -HundredthsFrom(-high);
    if (!(first <= last))
        return {};
    // Adding 0 turns -0 into 0.
    const double bounded = std::clamp(CutToHundredths(time), first / 100.0, last / 100.0) + 0.0;
    if (!std::isfinite(static_cast<float>(bounded)))
        return {};
    return QString::number(bounded, 'f', 2);
}

double DragStep(ProfileKind kind) {
    return Describe(kind).hasNames() ? 1.0 : 0.01;
}

std::optional<qsizetype> PickPoint(const QList<QPointF>& points, QPointF press) {
    const auto picked = std::find_if(points.cbegin(), points.cend(), [press](QPointF point) {
        return IsBetween(press.x() - point.x(), kLeftOpen, kRightClosed) &&
               IsBetween(press.y() - point.y(), kBelowOpen, kAboveClosed);
    });
    if (picked == points.cend())
        return {};
    return picked - points.cbegin();
}

QString FunctionTip(double time, double value) {
    return u"(%1°, %2°)"_s.arg(FormatValue(static_cast<float>(time), 2),
                               FormatValue(static_cast<float>(value), 2));
}

QString ProfileTip(ProfileKind kind, const QString& label, const QString& value,
                   const QString& name) {
    const KindDescriptor& facts = Describe(kind);
    const float number = EnglishAtof(value);
    // Plain concatenation: a label or a name may itself hold a place marker such as "%2".
    if (facts.coefficients)
        return label + u", Coefficient = "_s + FormatValue(number, 2);
    return label + u", Consommation = "_s + FormatValue(number, 0) + u", "_s + name;
}
