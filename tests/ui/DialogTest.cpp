// SPDX-License-Identifier: GPL-3.0-or-later
// The main dialog under real keys and clicks. What users do and then see stands in
// tests/cases/dialog.json and, for copy and paste, in tests/cases/pastes.json.

#include "DialogUser.h"
#include "SystemSkips.h"
#include "dialog/PrintedPages.h"

#include <QDate>
#include <QHelpEvent>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <QToolTip>

#include <algorithm>

using namespace Qt::StringLiterals;

class DialogTest : public QObject {
    Q_OBJECT

private slots:
    void init() { SkipOnThisSystem(); }

    void Cases_data() {
        AddVectorRows("dialog");
        for (const QJsonObject& one : VectorCases("pastes"))
            QTest::newRow(qPrintable(one[u"name"].toString())) << one;
    }
    void Cases() {
        QFETCH(const QJsonObject, vector);
        // The platform of the tests has no windows to raise.
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s));
        Surroundings around;
        const QString start = QDir::currentPath();
        SessionSetup setup;
        setup.kind = VectorKind(vector[u"kind"]);
        setup.mode = static_cast<DisplayMode>(vector[u"mode"].toInt(3));
        setup.name = u"Logement"_s;
        setup.times = Texts(vector[u"times"].toString());
        setup.values = Texts(vector[u"values"].toString());
        setup.names = Texts(vector[u"names"].toString());
        setup.folders = ProfileFolders(around.folder.path());
        const KindDialog shown =
            vector.contains(u"values")
                ? KindDialog(std::make_unique<CDlgGridChart>(std::move(setup)))
                : KindDialog(setup.kind, setup.mode, vector[u"points"].toInt(13));
        QGuiApplication::clipboard()->clear();
        int refusals = vector[u"refusals"].toInt();
        shown.dialog->SetAcceptance([&refusals] { return refusals-- <= 0; });
        const int result = shown.Run([&] {
            const QAbstractItemModelTester tester(shown.Grid()->model());
            User(*shown.dialog, around).Follow(vector[u"steps"].toArray());
        });
        QCOMPARE(result, vector[u"result"].toInt(2));
        QDir::setCurrent(start);
    }

    // The toolkit's own dialog tells which type of file was chosen, though all end in ".csv".
    void ChosenTypeOfFile() {
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        const UserPrompts prompts;
        const QTemporaryDir folder;
        QTimer::singleShot(0, qApp, [] {
            auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            dialog->findChild<QComboBox*>(u"fileTypeCombo"_s)->setCurrentIndex(1);
            dialog->selectFile(u"out"_s);
            QTest::keyClick(dialog->findChild<QLineEdit*>(), Qt::Key_Return);
        });
        const FileRequest::FileType types[] = {{u"A"_s, u"*.csv"_s}, {u"B"_s, u"*.csv"_s}};
        const ChosenFile file = AskSaveFile({folder.path(), {types[0], types[1]}, u"csv"_s});
        QCOMPARE(file.path, folder.filePath(u"out.csv"_s));
        QCOMPARE(file.type, 1);
    }

    // A bar shows itself when the reading takes long, and not before.
    void ReadingIsCancelled() {
        QVERIFY(ReadProgress(nullptr).Show(50));
        QVERIFY(QApplication::activeModalWidget() == nullptr);
        ReadProgress progress(nullptr, 0);
        QTRY_VERIFY(progress.Show(50) && QApplication::activeModalWidget() != nullptr);
        QTest::mouseClick(QApplication::activeModalWidget()->findChild<QPushButton*>(),
                          Qt::LeftButton);
        QVERIFY(!progress.Show(51));
    }

    // Where each control stands at the start and in a window that is larger by 200 x 115 pixels,
    // and back again: no window is smaller than at the start.
    void Places_data() { AddVectorRows("places"); }
    void Places() {
        QFETCH(const QJsonObject, vector);
        const KindDialog shown(VectorKind(vector[u"kind"]), DisplayMode::Edit,
                               vector[u"points"].toInt());
        shown.Run([&] {
            const QSize size = shown.dialog->size();
            const auto places = [&shown] {
                QJsonObject all;
                for (const ControlTemplate& control : kMainDialog) {
                    const QRect place = shown.Place(control.id);
                    if (shown.Control(control.id)->isVisible() || control.id == kChartFrame)
                        all[shown.Control(control.id)->objectName()] =
                            QJsonArray{place.x(), place.y(), place.width(), place.height()};
                }
                all[u"dialog"] = QJsonArray{shown.dialog->width(), shown.dialog->height()};
                return all;
            };
            QCOMPARE(places(), vector[u"start"].toObject());
            shown.dialog->resize(size + QSize(200, 115));
            QCOMPARE(places(), vector[u"larger"].toObject());
            shown.dialog->resize(100, 100);
            QCOMPARE(places(), vector[u"start"].toObject());
            QCOMPARE(shown.Grid()->horizontalScrollBar()->maximum(), 0);
            QCOMPARE(shown.Grid()->verticalScrollBar()->maximum(), vector[u"hidden rows"].toInt());
        });
    }

    // A number that does not fit is not shown in part. The table takes the room for it from the
    // chart, by the grip or by the command, and gives it back; a larger window has the room.
    void RoomForTheTable_data() { AddRows<int>({{"few points", 4}, {"many points", 40}}); }
    void RoomForTheTable() {
        QFETCH(const int, row);
        SessionSetup setup;
        setup.values = Texts(u"####|-123456789.123456|this is no number|7*%1"_s.arg(row - 3));
        setup.times = QStringList(row, u"0"_s);
        const KindDialog shown(std::make_unique<CDlgGridChart>(setup));
        shown.Run([&] {
            QWidget& cells = *shown.Grid()->viewport();
            const auto cell = [&shown](int cell_row, int column) {
                return shown.Grid()->visualRect(shown.Grid()->model()->index(cell_row, column));
            };
            const auto looks = [&](int cell_row) {
                return cells.grab(cell(cell_row, 1)).toImage();
            };
            const auto is_hidden = [&] { return looks(1) == looks(0); };
            const QRect table = shown.Place(kGrid);
            const QRect chart = shown.Place(kChartFrame);
            const auto is_at_start = [&] {
                return is_hidden() && shown.Place(kGrid) == table &&
                       shown.Place(kChartFrame) == chart;
            };
            const auto command = [&shown] {
                QMenu& menu = *shown.dialog->findChild<QMenu*>();
                menu.popup({});
                menu.close();
                const QList<QAction*> entries = menu.findChildren<QMenu*>()[1]->actions();
                return entries.last();
            };
            QVERIFY(is_at_start() && looks(2) != looks(0));
            QHelpEvent asks(QEvent::ToolTip, cell(1, 1).center(), {});
            QCoreApplication::sendEvent(&cells, &asks);
            QCOMPARE(QToolTip::text(), setup.values[1]);

            QWidget* const grip = shown.Control(kTableGrip);
            const auto double_click = [grip] {
                QTest::mouseDClick(grip, Qt::LeftButton);
                QTest::mouseRelease(grip, Qt::LeftButton);
            };
            double_click();
            QVERIFY(!is_hidden());
            QCOMPARE(shown.Place(kGrid).right(), table.right());
            QCOMPARE(chart.right() - shown.Place(kChartFrame).right(),
                     table.left() - shown.Place(kGrid).left());
            const int fitting = shown.Place(kGrid).width();
            double_click();
            QVERIFY(is_at_start());
            command()->trigger();
            QCOMPARE(shown.Place(kGrid).width(), fitting);
            command()->trigger();
            QVERIFY(is_at_start());

            QTest::mousePress(grip, Qt::LeftButton, {}, {2, 50});
            QTest::mouseMove(grip, {-38, 50});
            QCOMPARE(shown.Place(kGrid).width(), table.width() + 40);
            QTest::mouseMove(grip, {-2000, 50});
            QCOMPARE(shown.Place(kGrid).width(), shown.dialog->width() / 2);
            // The columns follow a text that needs more of the same room.
            const int times = shown.Grid()->columnWidth(0);
            QVERIFY(shown.Grid()->ValidateEntry(1, 1, u"-1234567890.125678"_s));
            QVERIFY(shown.Grid()->columnWidth(0) > times && !is_hidden());
            QVERIFY(shown.Grid()->ValidateEntry(1, 1, u"0"_s));
            QTest::mouseMove(grip, {2000, 50});
            QTest::mouseRelease(grip, Qt::LeftButton, {}, {2, 50});
            QVERIFY(is_at_start());

            shown.dialog->resize(shown.dialog->size() + QSize(400, 0));
            QVERIFY(!is_hidden() && !command()->isEnabled());
            QCOMPARE(shown.Place(kGrid).width(), fitting);
            QCOMPARE(shown.Place(kChartFrame).width(),
                     chart.width() + 400 - fitting + table.width());
            // Another text asks for more of it.
            QVERIFY(shown.Grid()->ValidateEntry(1, 1, u"-1234567890.5"_s));
            QVERIFY(!is_hidden() && !command()->isEnabled());
            QVERIFY(shown.Place(kGrid).width() > fitting);
        });
    }

    // Every row is on paper once, and each page tells its title, its date and its number.
    void Print_data() {
        AddRows<QPoint>({{"one row", {1, 1}}, {"a page", {40, 1}}, {"many", {10000, 57}}});
    }
    void Print() {
        QFETCH(const QPoint, row);
        SessionSetup setup;
        setup.name = u"Pompe"_s;
        for (int i = 0; i < row.x(); ++i) {
            setup.times.append(QString::number(i) + u".253"_s);
            setup.values.append(QString::number(i) + u".759"_s);
        }
        const KindDialog shown(std::make_unique<CDlgGridChart>(setup));
        const QTemporaryDir folder;
        shown.Run([&] {
            QPrinter printer(QPrinter::HighResolution);
            printer.setOutputFileName(folder.filePath(u"pages.pdf"_s));
            printer.setPageSize(QPageSize(QPageSize::A4));
            PrintedPages(&shown.dialog->session(),
                         ChartPicture(shown.Document(), {400, 300}, QGuiApplication::font()),
                         PrintedPages::Table::All)
                .Print(&printer);
        });
        QProcess reader;
        reader.start(u"pdftotext"_s, {folder.filePath(u"pages.pdf"_s), u"-"_s});
        QVERIFY(reader.waitForFinished());
        QStringList pages = QString::fromUtf8(reader.readAllStandardOutput()).split(u'\f');
        QVERIFY(pages.takeLast().isEmpty());
        QCOMPARE(pages.size(), row.y());
        for (int page = 0; page < pages.size(); ++page) {
            for (const QString& text : {u"Pompe"_s, QDate::currentDate().toString(u"dd/MM/yyyy"_s),
                                        u"Value"_s, u"Page %1 / %2"_s.arg(page + 1).arg(row.y())})
                QVERIFY2(pages[page].contains(text), qPrintable(text));
        }
        QStringList printed;
        for (const QString& word : pages.join(u' ').split(QRegularExpression(u"\\s"_s))) {
            if (word.endsWith(u".253") || word.endsWith(u".759"))
                printed.append(word);
        }
        QStringList all = setup.times + setup.values;
        std::sort(all.begin(), all.end());
        std::sort(printed.begin(), printed.end());
        QCOMPARE(printed, all);
    }

    // A host may drop the dialog while it is shown, with a value half way by keyboard.
    void EndsWithTheKeyboardOnTheChart() {
        KindDialog shown(4);
        shown.Run([] {});
        shown.dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(shown.dialog.get()));
        auto* const view = shown.dialog->findChild<CGraphView*>();
        view->setFocus();
        QTest::keyClick(view, Qt::Key_Up);
        QVERIFY(shown.dialog->session().isDragging());
        shown.dialog.reset();
    }

    void GridWindow_data() { AddVectorRows("add_points"); }
    void GridWindow() {
        QFETCH(QJsonObject, vector);
        const QStringList times = VectorStrings(vector[u"input"][u"times"]);
        const KindDialog shown(static_cast<int>(times.size()));
        shown.Run([&] {
            shown.Add(u"1"_s, u"1"_s);
            const QJsonArray window = vector[u"expected"][u"window"].toArray();
            QCOMPARE(shown.Place(kGrid), QRect(window[0].toInt(), window[1].toInt(),
                                               window[2].toInt(), window[3].toInt()));
        });
    }
};

QTEST_MAIN(DialogTest)
#include "DialogTest.moc"
