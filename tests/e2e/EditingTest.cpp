// SPDX-License-Identifier: GPL-3.0-or-later
#include "HostTest.h"

#include <QProcess>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const Points kPoints = {{"0", "1.50"}, {"10", "4"}, {"20", "-3e0"}, {"30.25", "12"}};

constexpr QRgb kMarker = qRgb(255, 0, 0);
constexpr QRgb kCurrentMarker = qRgb(255, 207, 54);

// The centres of the point markers in the chart, from left to right.
QList<QPoint> MarkerCentres(const QImage& picture) {
    constexpr int kSmallest = 5;  // pixels, side of a marker
    const auto is_marker = [&](int x, int y) {
        if (!picture.valid(x, y))
            return false;
        const QRgb colour = picture.pixel(x, y);
        return colour == kMarker || colour == kCurrentMarker;
    };
    QList<QPoint> centres;
    for (int x = kChart.left(); x <= kChart.right(); ++x) {
        for (int y = kChart.top(); y <= kChart.bottom(); ++y) {
            // The top left pixel of a marker has no marker pixel above it or to its left.
            if (!is_marker(x, y) || is_marker(x - 1, y) || is_marker(x, y - 1))
                continue;
            int width = 1;
            int height = 1;
            while (is_marker(x + width, y))
                ++width;
            while (is_marker(x, y + height))
                ++height;
            if (width >= kSmallest && height >= kSmallest)
                centres.append({x + width / 2, y + height / 2});
        }
    }
    return centres;
}

}  // namespace

/// What the user does in the dialog and what of it reaches the exchange file.
class EditingTest : public HostTest {
    Q_OBJECT

private slots:
    void initTestCase() { StartScreen(); }

    void init() { QVERIFY(WriteAll(m_file, HostFile(kPoints))); }

    // Each entry is to be seen in the file, or is one that must not be there.
    void StoresTypedEntries() {
        EditorRun host(m_screen, {m_file});
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
        EditorRun host(m_screen, {m_file});
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
        EditorRun host(m_screen, {m_file});
        QProcess other;
        other.setProcessEnvironment(m_screen.Environment());
        other.start(u"xclip"_s, {u"-quiet"_s, u"-selection"_s, u"clipboard"_s});
        other.write("7.25\n8.5\n-3\n");
        other.closeWriteChannel();
        const auto clipboard = [this] {
            return m_screen.Run(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"clipboard"_s})
                .value_or("");
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

    void ShowsAMarkerForEachPointAndLetsItBeDragged() {
        EditorRun host(m_screen, {m_file});
        const QList<QPoint> before = MarkerCentres(host.Picture());
        QCOMPARE(before.size(), kPoints.size());
        for (qsizetype i = 1; i < before.size(); ++i) {
            const bool rises = kPoints[i].second.toDouble() > kPoints[i - 1].second.toDouble();
            QCOMPARE(before[i].y() < before[i - 1].y(), rises);
        }

        const QPoint target = before[1] - QPoint(0, 30);
        QVERIFY(host.Drag(before[1], target));
        const QList<QPoint> after = MarkerCentres(host.Picture());
        QCOMPARE(after.size(), before.size());
        QVERIFY(std::abs(after[1].y() - target.y()) <= 2);
        QVERIFY(host.PressOk());

        // Thirty pixels in units of the value, from two markers that were not dragged.
        const double value_of_pixel = (12.0 - -3.0) / (before[2].y() - before[3].y());
        Points saved = PointsOf(ReadAll(m_file));
        QCOMPARE(saved.size(), kPoints.size());
        const double value = saved[1].second.toDouble();
        QVERIFY2(std::abs(value - (4 + 30 * value_of_pixel)) < 2 * value_of_pixel,
                 saved[1].second.constData());
        QCOMPARE(
            ReadAll(m_file),
            SavedFile({{"0", "1.50"}, {"10", saved[1].second}, {"20", "-3e0"}, {"30.25", "12"}}));
    }
};

QTEST_GUILESS_MAIN(EditingTest)
#include "EditingTest.moc"
