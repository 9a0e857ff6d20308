// SPDX-License-Identifier: GPL-3.0-or-later
#include "HostRun.h"

#include <QProcess>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const Points kPoints = {{"0", "1.50"}, {"10", "4"}, {"20", "-3e0"}, {"30.25", "12"}};

// The centres of the point markers in the chart, from left to right.
QList<QPoint> MarkerCentres(const QImage& picture) {
    constexpr int kSmallest = 5;  // pixels, side of a marker
    constexpr QRgb kColours[] = {qRgb(255, 0, 0), qRgb(255, 207, 54)};
    QList<QRect> markers;
    for (int x = kChart.left(); x <= kChart.right(); ++x) {
        QRect column;  // ticks are shorter
        for (int y = kChart.top(); y <= kChart.bottom(); ++y) {
            if (std::ranges::count(kColours, picture.pixel(x, y)) > 0)
                column |= QRect(x, y, 1, 1);
            else if (column.height() >= kSmallest)
                break;
            else
                column = {};
        }
        if (column.height() < kSmallest)
            continue;
        if (markers.isEmpty() || markers.last().right() < x - 1)
            markers.append(column);
        markers.last() |= column;
    }
    QList<QPoint> centres;
    for (const QRect& marker : markers)
        centres.append(marker.center());
    return centres;
}

}  // namespace

/// What the user does in the dialog and what of it reaches the exchange file.
class EditingTest : public HostTest {
    Q_OBJECT

private slots:
    void init() { QVERIFY(WriteAll(m_file, HostFile(kPoints))); }

    // Each entry is to be seen in the file, or is one that must not be there.
    void StoresTypedEntries() {
        EditorRun host({m_file});
        QVERIFY(host.TypeInto(CellPlace(1, 2), u"8"_s));
        QVERIFY(host.Keys({u"Return"_s, u"9"_s, u"Return"_s}));  // moves down
        QVERIFY(host.TypeInto(CellPlace(2, 1), u"11.5"_s) && host.Keys({u"Tab"_s}));
        QVERIFY(host.TypeInto(CellPlace(3, 2), u"7"_s) && host.Keys({u"Escape"_s}));
        QVERIFY(host.TypeInto(CellPlace(3, 2), u"6"_s) && host.Keys({u"Return"_s, u"ctrl+z"_s}));
        QVERIFY(host.TypeInto(CellPlace(4, 2), u"5"_s));
        QVERIFY(host.Keys({u"Return"_s, u"ctrl+z"_s, u"ctrl+y"_s}));
        // OK takes the open entry.
        QVERIFY(host.TypeInto(CellPlace(4, 1), u"31,5"_s) && host.PressOk());
        QCOMPARE(ReadAll(m_file),
                 SavedFile({{"0", "8"}, {"11.5", "9"}, {"20", "-3e0"}, {"31.5", "5"}}));
    }

    void AddsAPointAndRemovesTheSelectedOne() {
        EditorRun host({m_file});
        QVERIFY(host.Keys({u"Insert"_s}));
        QVERIFY(host.WaitForWindow(u"Add a point"_s));
        QVERIFY(host.Keys({u"ctrl+a"_s}) && host.Type(u"12.5"_s));
        QVERIFY(host.Keys({u"Tab"_s, u"ctrl+a"_s}) && host.Type(u"x"_s));
        // The message and the dialog below it go at once; the keyboard comes back to the editor.
        QVERIFY(host.Keys({u"Return"_s}) && host.PassMessage() && host.WaitForDialog());
        QVERIFY(host.Type(u"-6"_s) && host.Keys({u"Return"_s}));
        QVERIFY(host.Click(CellPlace(2, 1)) && host.Keys({u"shift+Right"_s}));
        QVERIFY(host.Click(kRemoveButton) && host.PressOk());
        QCOMPARE(ReadAll(m_file),
                 SavedFile({{"0", "1.50"}, {"12.5", "-6"}, {"20", "-3e0"}, {"30.25", "12"}}));
    }

    // Pastes what another program holds, copies from the grid to others and within it.
    void SharesTheClipboard() {
        EditorRun host({m_file});
        QProcess other;
        other.start(u"xclip"_s, {u"-quiet"_s, u"-selection"_s, u"clipboard"_s});
        other.write("7.25\n8.5\n-3\n");
        other.closeWriteChannel();
        const auto clipboard = [] {
            return RunTool(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"clipboard"_s});
        };
        QTRY_COMPARE_WITH_TIMEOUT(clipboard(), "7.25\n8.5\n-3\n", 10000);
        QVERIFY(host.Click(CellPlace(2, 2)) && host.Keys({u"ctrl+v"_s}));
        QVERIFY(host.Click(CellPlace(3, 2)) && host.Keys({u"shift+Down"_s, u"ctrl+c"_s}));
        QTRY_COMPARE_WITH_TIMEOUT(clipboard(), "8.5\n-3", 10000);
        QVERIFY(other.waitForFinished());  // it no longer owns the clipboard
        QVERIFY(host.Click(CellPlace(1, 2)) && host.Keys({u"ctrl+v"_s}) && host.PressOk());
        QCOMPARE(ReadAll(m_file),
                 SavedFile({{"0", "8.5"}, {"10", "-3"}, {"20", "8.5"}, {"30.25", "-3"}}));
    }

    void LetsAPointBeDragged() {
        EditorRun host({m_file});
        const QList<QPoint> markers = MarkerCentres(host.Picture());
        QCOMPARE(markers.size(), kPoints.size());
        QVERIFY(host.Drag(markers[1], markers[1] - QPoint(0, 30)) && host.PressOk());

        // Thirty pixels in units of the value, from two markers that were not dragged.
        const double value_of_pixel = (12.0 - -3.0) / (markers[2].y() - markers[3].y());
        const QByteArray saved = ReadAll(m_file).split('\n')[16].split(' ')[0];
        const double value = saved.toDouble();
        QVERIFY2(std::abs(value - (4 + 30 * value_of_pixel)) < 2 * value_of_pixel,
                 saved.constData());
        QCOMPARE(ReadAll(m_file),
                 SavedFile({{"0", "1.50"}, {"10", saved}, {"20", "-3e0"}, {"30.25", "12"}}));
    }
};

QTEST_GUILESS_MAIN(EditingTest)
#include "EditingTest.moc"
