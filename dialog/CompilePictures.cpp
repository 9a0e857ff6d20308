// SPDX-License-Identifier: GPL-3.0-or-later
// Turns SVG drawings into shapes that the program paints: CompilePictures FOLDER SVG...
// writes FOLDER/NAME.picture for each NAME.svg, and FOLDER/function-editor.ico for the program's
// file on Windows.

#include "dialog/PictureShape.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPolygonF>
#include <QSaveFile>
#include <QSvgRenderer>

#include <cstdio>
#include <iterator>

namespace {

// Records paint calls as shapes, in the units of the drawing.
class ShapeRecorder : public QPaintEngine {
public:
    explicit ShapeRecorder(QList<PictureShape>& shapes)
        : QPaintEngine(QPaintEngine::PainterPaths | QPaintEngine::PrimitiveTransform |
                       QPaintEngine::AlphaBlend | QPaintEngine::ConstantOpacity |
                       QPaintEngine::Antialiasing),
          m_shapes(shapes) {}

    /// False after a paint call that no shape can represent.
    bool isWhole() const { return m_whole; }

    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }
    void updateState(const QPaintEngineState&) override {}

    void drawPath(const QPainterPath& path) override { Note(path, painter()->brush()); }

    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override {
        QPolygonF polygon;
        for (int i = 0; i < count; ++i)
            polygon << points[i];
        QPainterPath path;
        path.addPolygon(polygon);
        if (mode != PolylineMode)
            path.closeSubpath();
        Note(path, mode == PolylineMode ? QBrush() : painter()->brush());
    }

    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override { m_whole = false; }
    void drawTextItem(const QPointF&, const QTextItem&) override { m_whole = false; }

private:
    // A rotated or scaled shape would need another line width. Only plain colours are supported.
    void Note(const QPainterPath& path, const QBrush& fill) {
        const QPen line = painter()->pen();
        const QTransform& place = painter()->combinedTransform();
        m_whole = m_whole && place.type() <= QTransform::TxTranslate &&
                  fill.style() <= Qt::SolidPattern && line.brush().style() <= Qt::SolidPattern;
        if (fill.style() != Qt::NoBrush || line.style() != Qt::NoPen)
            m_shapes.append({place.map(path), fill, line, painter()->opacity()});
    }

    QList<PictureShape>& m_shapes;
    bool m_whole = true;
};

class ShapeDevice : public QPaintDevice {
public:
    ShapeDevice(QSize size, ShapeRecorder& recorder) : m_size(size), m_recorder(recorder) {}

    QPaintEngine* paintEngine() const override { return &m_recorder; }

protected:
    int metric(PaintDeviceMetric metric) const override {
        switch (metric) {
            case PdmWidth: return m_size.width();
            case PdmHeight: return m_size.height();
            case PdmDepth: return 32;
            case PdmDevicePixelRatio: return 1;
            case PdmDevicePixelRatioScaled: return static_cast<int>(devicePixelRatioFScale());
            default: return 96;
        }
    }

private:
    QSize m_size;
    ShapeRecorder& m_recorder;
};

bool Compile(const QString& source, const QString& target) {
    QSvgRenderer renderer;
    PictureShapes picture;
    if (!renderer.load(source))
        return false;
    picture.size = renderer.defaultSize();
    ShapeRecorder recorder(picture.shapes);
    ShapeDevice device(picture.size, recorder);
    QPainter painter(&device);
    renderer.render(&painter, QRectF(QPointF(), picture.size));
    painter.end();
    if (!recorder.isWhole() || picture.shapes.isEmpty())
        return false;
    QSaveFile file(target);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QDataStream stream(&file);
    stream << picture;
    return file.commit();
}

// Pictures of several sizes in one file, each as PNG.
bool WriteIcon(const QString& source, const QString& target) {
    constexpr int kSizes[] = {16, 24, 32, 48, 64, 256};
    constexpr int kHeader = 6;
    constexpr int kEntry = 16;
    QSvgRenderer renderer;
    QSaveFile file(target);
    if (!renderer.load(source) || !file.open(QIODevice::WriteOnly))
        return false;
    QDataStream stream(&file);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream << quint16{0} << quint16{1} << static_cast<quint16>(std::size(kSizes));
    QByteArray images;
    for (const int size : kSizes) {
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        renderer.render(&painter);
        painter.end();
        QBuffer png;
        image.save(&png, "PNG");
        const auto side = static_cast<quint8>(size);  // 0 stands for 256
        const auto place = static_cast<quint32>(
            kHeader + kEntry * static_cast<int>(std::size(kSizes)) + images.size());
        stream << side << side << quint16{0} << quint16{1} << quint16{32}
               << static_cast<quint32>(png.size()) << place;
        images += png.data();
    }
    return file.write(images) == images.size() && file.commit();
}

}  // namespace

int main(int argc, char* argv[]) {
    for (int i = 2; i < argc; ++i) {
        const QString source = QString::fromLocal8Bit(argv[i]);
        const QString target = QString::fromLocal8Bit(argv[1]) + u'/' +
                               QFileInfo(source).completeBaseName() + QStringLiteral(".picture");
        const bool is_icon = source.endsWith(QStringLiteral("/function-editor.svg"));
        const QString icon = QFileInfo(target).path() + QStringLiteral("/function-editor.ico");
        if (!Compile(source, target) || (is_icon && !WriteIcon(source, icon))) {
            std::fprintf(stderr, "%s: not a drawing of plain shapes, or %s cannot be written\n",
                         argv[i], qPrintable(target));
            return 1;
        }
    }
    return 0;
}
