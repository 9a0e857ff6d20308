// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/FittedText.h"

#include <QFontMetrics>
#include <QStringList>
#include <QTextLayout>

#include <algorithm>

namespace {

QStringList WrappedLines(const QString& text, const QFont& font, int width) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QStringList lines;
    for (const QString& line : text.split(u'\n')) {
        QTextLayout layout(line, font);
        layout.setTextOption(option);
        layout.beginLayout();
        for (QTextLine part = layout.createLine(); part.isValid(); part = layout.createLine()) {
            part.setLineWidth(width);
            lines.append(line.mid(part.textStart(), part.textLength()));
        }
        layout.endLayout();
    }
    return lines;
}

}  // namespace

FittedText FitText(const QString& text, QFont font, int largest, int smallest, QSize room) {
    for (int pixels = largest;; --pixels) {
        font.setPixelSize(pixels);
        const QFontMetrics metrics(font);
        QStringList lines = WrappedLines(text, font, room.width());
        const qsizetype most = std::max(room.height() / metrics.lineSpacing(), 1);
        if (lines.size() > most && pixels > smallest)
            continue;
        if (lines.size() > most) {
            lines.resize(most);
            lines.last() = metrics.elidedText(lines.last() + u'…', Qt::ElideRight, room.width());
        }
        return {lines.join(u'\n'), font};
    }
}
