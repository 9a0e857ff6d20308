#pragma once

#include "chart/PlotScale.h"

#include <QPointF>

#include <span>
#include <vector>

/// The line through the points (xs[i], ys[i]) in their order, in pixels, reduced to what can be
/// seen: of neighbours in the same pixel column only the first, the lowest, the highest and the
/// last stay. Points that are not finite are passed over. `columns` is the number of pixel columns
/// per pixel unit (more than 1 on a finely resolved screen).
///
/// Where the points jump about so much that thinning neighbours does not help, the line would cover
/// everything between its extremes; then each column's lowest and highest points are joined
/// instead, column by column. The result never holds more than a fixed number of points per column
/// of the scale.
std::vector<QPointF> ThinLine(std::span<const double> xs, std::span<const double> ys,
                              const PlotScale& scale, double columns = 1.0);
