// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>

class ChartPicture;

/// A chart as pixels, that many along each pixel of the picture. A null image when the memory does
/// not suffice.
QImage ChartImage(const ChartPicture& picture, int scale);

// A chart as the content of a file; empty when the memory does not suffice. SVG and PDF hold
// shapes and texts, in the size of the picture at 96 pixels per inch.

QByteArray ChartPng(const ChartPicture& picture, int scale);
#ifdef EDITOR_WRITES_SVG
QByteArray ChartSvg(const ChartPicture& picture);
#endif
QByteArray ChartPdf(const ChartPicture& picture);
