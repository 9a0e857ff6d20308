// SPDX-License-Identifier: GPL-3.0-or-later
// The chart in files, read back as other programs do.
#include "ChartWindow.h"
#include "TestFiles.h"
#include "TestRows.h"
#include "chart/ChartExport.h"

#include <QHash>
#include <QProcess>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

using enum ProfileKind;

// What an SVG file holds.
struct Drawing {
    explicit Drawing(const QByteArray& file) {
        QXmlStreamReader xml(file);
        for (; !xml.atEnd(); xml.readNext()) {
            if (xml.isStartElement())
                ++elements[xml.name().toString()];
            else if (xml.isCharacters())
                text += xml.text();
        }
        valid = !xml.hasError();
    }

    QHash<QString, int> elements;
    QString text;
    bool valid = false;
};

}  // namespace

class ChartFilesTest : public QObject {
    Q_OBJECT

private slots:
    // Files hold what the screen shows, on white and without the mark of the current row.
    void files_data() { AddKinds(); }
    void files() {
        QFETCH(const ProfileKind, row);
        ChartWindow window(row, u"0|10|20"_s, u"4|8|4"_s);
        window.view->setPalette(QPalette(Qt::black));
        window.control->SetTitle(u"Pompe\nd'été"_s);
        window.control->SetHighlighted(1, true);
        window.Picture();
        const ChartPicture picture = window.Exported();
        const CDocControl& chart = window.control->document();

        const Drawing svg(ChartSvg(picture));
        QVERIFY(svg.valid);
        QVERIFY(svg.elements[u"path"_s] + svg.elements[u"polyline"_s] > 10);
        QVERIFY(!svg.elements.contains(u"image"_s));
        QVERIFY(WriteAll(window.Path(u"chart.pdf"_s), ChartPdf(picture)));
        QProcess reader;
        reader.start(u"pdftotext"_s, {window.Path(u"chart.pdf"_s), u"-"_s});
        QVERIFY(reader.waitForFinished());
        // Some fonts draw "ffi" as one sign.
        const QString pdf_text = QString::fromUtf8(reader.readAllStandardOutput())
                                     .normalized(QString::NormalizationForm_KC);
        for (const QString& text : {svg.text, pdf_text}) {
            for (const QString& title :
                 {u"Pompe"_s, u"d'été"_s, chart.value_label.text, chart.index_label.text})
                QVERIFY2(text.contains(title), qPrintable(text));
        }

        const double middle = row == Function ? 8.0 : chart.items.Value(1, 0) / 2.0;
        const QColor colour = row == Function ? QColor(Qt::red) : QColor(115, 170, 232);
        for (const int scale : {1, 2, 4}) {
            const QImage png = QImage::fromData(ChartPng(picture, scale), "PNG");
            QCOMPARE(png.size(), window.view->size() * scale);
            QCOMPARE(png.pixelColor(window.At(1, middle) * scale), colour);
            QCOMPARE(png.pixelColor(0, 0), QColor(Qt::white));
        }
        window.Wheel(window.At(1), 240);
        QVERIFY(ChartPng(window.Exported(), 1) != ChartPng(picture, 1));
        window.view->Zoom().ShowAll();
        QCOMPARE(ChartPng(window.Exported(), 1), ChartPng(picture, 1));
        window.control->SetLineForm(LineForm::Steps);
        QCOMPARE(ChartPng(window.Exported(), 1) != ChartPng(picture, 1), row == Function);
    }

    // What cannot be seen makes no file larger.
    void filesOfManyPoints() {
        QStringList texts;
        for (int i = 0; i < 20000; ++i)
            texts.append(QString::number(i * 7919 % 100000));
        const ChartWindow window(Function, texts.join(u'|'), texts.join(u'|'));
        QVERIFY(ChartSvg(window.Exported()).size() < 400000);
        QVERIFY(ChartPdf(window.Exported()).size() < 400000);
    }
};

QTEST_MAIN(ChartFilesTest)
#include "ChartFilesTest.moc"
