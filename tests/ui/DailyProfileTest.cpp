// The list of daily profiles in a monthly profile, with its two commands.

#include "FileDialogScript.h"
#include "MessageScript.h"
#include "RunDialog.h"
#include "grid/CGridControl.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

void WriteDaily(const QString& path) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("HEURES =");
    for (int hour = 0; hour < 24; ++hour)
        file.write(" " + QByteArray::number(hour));
    file.write("\nCOEFFICIENT =");
    for (int hour = 0; hour < 24; ++hour)
        file.write(hour % 2 == 0 ? " 0.50" : " 1.50");
    file.write("\n");
}

}  // namespace

class DailyProfileTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    QString m_daily;
    QString m_name = u"Mois"_s;
    QStringList m_values = QStringList(12, u"1800"_s);
    QStringList m_names = QStringList(12, u"calme"_s);

    SessionSetup Setup(ProfileKind kind) {
        SessionSetup setup;
        setup.kind = kind;
        setup.name = &m_name;
        setup.values = &m_values;
        setup.names = &m_names;
        setup.folders = ProfileFolders(m_folder.path());
        return setup;
    }

    // The list of the cell, opened with the keyboard; nullptr when none opens.
    static QComboBox* OpenList(CDlgGridChart& dialog, int row) {
        dialog.activateWindow();
        auto* const grid = dialog.findChild<CGridControl*>();
        QComboBox* opened = nullptr;
        const auto is_open = [&] {
            for (QComboBox* const list : grid->findChildren<QComboBox*>()) {
                if (list->view()->isVisible())
                    opened = list;
            }
            return opened != nullptr;
        };
        if (!QTest::qWaitForWindowActive(&dialog))
            return nullptr;
        grid->setFocus();
        grid->SelectCell(row, 3);
        QTest::keyClick(grid, Qt::Key_F2);
        return QTest::qWaitFor(is_open) ? opened : nullptr;
    }

    static void Choose(CDlgGridChart& dialog, int row, const QString& choice) {
        QComboBox* const list = OpenList(dialog, row);
        QVERIFY(list != nullptr);
        const int index = list->findText(choice);
        QVERIFY2(index >= 0, qPrintable(choice));
        list->view()->setCurrentIndex(list->model()->index(index, 0));
        QTest::keyClick(list->view(), Qt::Key_Return);
    }

    // Does `steps` in the dialog that opens over `dialog`.
    static void InNestedDialog(const CDlgGridChart& dialog,
                               const std::function<void(CDlgGridChart&)>& steps) {
        bool done = false;
        QTimer timer;
        connect(&timer, &QTimer::timeout, &timer, [&] {
            auto* const nested = qobject_cast<CDlgGridChart*>(QApplication::activeModalWidget());
            if (nested == nullptr || nested == &dialog || done)
                return;
            done = true;
            steps(*nested);
            if (nested->isVisible())
                nested->done(CDlgGridChart::kCancelled);
        });
        timer.start(0);
        QTRY_VERIFY(done);
    }

private slots:
    void init() {
        m_daily = m_folder.path() + u"/Data/Profils/Journalier"_s;
        QVERIFY(QDir().mkpath(m_daily));
        WriteDaily(m_daily + u"/calme.dat"_s);
        WriteDaily(m_daily + u"/week-end.dat"_s);
    }

    void ChoosesAListedProfile() {
        CDlgGridChart dialog(Setup(ProfileKind::Monthly));
        RunDialog(dialog, [&] {
            Choose(dialog, 2, u"week-end"_s);
            QCOMPARE(dialog.session().table().CellText(2, 3), u"week-end"_s);
            QVERIFY(dialog.session().canUndo());
            // A list that is left without a choice changes nothing.
            QPointer<QComboBox> list = OpenList(dialog, 3);
            QVERIFY(list != nullptr);
            QTest::keyClick(list->view(), Qt::Key_Down);
            QTest::keyClick(list->view(), Qt::Key_Escape);
            QTRY_VERIFY(list == nullptr);
            QCOMPARE(dialog.session().table().CellText(3, 3), u"calme"_s);
        });
    }

    void AddsASavedProfile() {
        MessageScript messages;
        FileDialogScript files;
        files.ExpectSave(m_daily + u"/atelier"_s);
        CDlgGridChart dialog(Setup(ProfileKind::Monthly));
        RunDialog(dialog, [&] {
            Choose(dialog, 4, u"AJOUTER"_s);
            QCOMPARE(dialog.session().table().CellText(4, 3), u"calme"_s);
            InNestedDialog(dialog, [](CDlgGridChart& nested) {
                QCOMPARE(nested.windowTitle(), u"Profil Journalier : Nouveau Profil"_s);
                QCOMPARE(nested.session().table().Column(2), QStringList(24, u"1"_s));
                QTest::mouseClick(nested.findChild<QWidget*>(u"5017_ENREGSOUS"_s), Qt::LeftButton);
                QCOMPARE(nested.windowTitle(), u"Profil Journalier : atelier"_s);
                QTest::mouseClick(nested.findChild<QWidget*>(u"5022_OK"_s), Qt::LeftButton);
            });
            QTRY_COMPARE(dialog.session().table().CellText(4, 3), u"atelier"_s);
            QVERIFY(dialog.session().table().Choices().contains(u"atelier"_s));
            QTest::mouseClick(dialog.findChild<QWidget*>(u"5018_UNDO"_s), Qt::LeftButton);
            QCOMPARE(dialog.session().table().CellText(4, 3), u"calme"_s);
        });
        QVERIFY2(messages.Done(), qPrintable(messages.Report()));
        QVERIFY2(files.Done(), qPrintable(files.Report()));
        QVERIFY(QFile::exists(m_daily + u"/atelier.dat"_s));
    }

    void AddsNothingThatWasNotSavedHere_data() {
        QTest::addColumn<bool>("saved_elsewhere");
        QTest::addColumn<QString>("last_button");
        QTest::newRow("not saved") << false << u"5022_OK"_s;
        QTest::newRow("saved elsewhere") << true << u"5022_OK"_s;
        QTest::newRow("saved elsewhere, cancelled") << true << u"5011_Cancel"_s;
    }
    void AddsNothingThatWasNotSavedHere() {
        QFETCH(bool, saved_elsewhere);
        QFETCH(QString, last_button);
        MessageScript messages;
        FileDialogScript files;
        if (saved_elsewhere) {
            files.ExpectSave(m_folder.path() + u"/ailleurs"_s);
            messages.Expect(
                u"Ce profil n'est pas enregistré dans le répertoire par défaut\n"
                "il ne sera pas enregistré dans les paramètres de la simulation."_s,
                u"Attention !"_s);
        }
        if (last_button == u"5011_Cancel")
            messages.ExpectQuestion(u"Do you really want to cancel ?"_s, u"Cancelling"_s, true);
        CDlgGridChart dialog(Setup(ProfileKind::Weekly));
        RunDialog(dialog, [&] {
            const QStringList choices = dialog.session().table().Choices();
            Choose(dialog, 1, u"AJOUTER"_s);
            InNestedDialog(dialog, [&](CDlgGridChart& nested) {
                if (saved_elsewhere)
                    QTest::mouseClick(nested.findChild<QWidget*>(u"5017_ENREGSOUS"_s),
                                      Qt::LeftButton);
                QTest::mouseClick(nested.findChild<QWidget*>(last_button), Qt::LeftButton);
            });
            QTRY_COMPARE(QApplication::activeModalWidget(), &dialog);
            QCOMPARE(dialog.session().table().CellText(1, 3), QString());
            QCOMPARE(dialog.session().table().Choices(), choices);
            QVERIFY(!dialog.session().canUndo());
        });
        QVERIFY2(messages.Done(), qPrintable(messages.Report()));
        QVERIFY2(files.Done(), qPrintable(files.Report()));
    }

    void ViewsTheProfileOfTheCell() {
        MessageScript messages;
        messages.ExpectQuestion(u"Do you really want to cancel ?"_s, u"Cancelling"_s, true);
        CDlgGridChart dialog(Setup(ProfileKind::Monthly));
        RunDialog(dialog, [&] {
            Choose(dialog, 1, u"VOIR"_s);
            InNestedDialog(dialog, [](CDlgGridChart& nested) {
                QCOMPARE(nested.windowTitle(), u"Profil Journalier : calme"_s);
                QVERIFY(nested.session().isViewOnly());
                QCOMPARE(nested.session().table().CellText(2, 2), u"1.50"_s);
                QVERIFY(nested.findChild<QWidget*>(u"5001_Chart"_s) == nullptr);
                QTest::keyClick(&nested, Qt::Key_Escape);
            });
            QTRY_COMPARE(QApplication::activeModalWidget(), &dialog);
            QCOMPARE(dialog.session().table().CellText(1, 3), u"calme"_s);
            QVERIFY(!dialog.session().canUndo());
        });
        QVERIFY2(messages.Done(), qPrintable(messages.Report()));
        // Without a name there is nothing to open.
        CDlgGridChart weekly(Setup(ProfileKind::Weekly));
        RunDialog(weekly, [&] {
            Choose(weekly, 1, u"VOIR"_s);
            QTest::qWait(50);
            QCOMPARE(QApplication::activeModalWidget(), &weekly);
        });
    }
};

QTEST_MAIN(DailyProfileTest)
#include "DailyProfileTest.moc"
