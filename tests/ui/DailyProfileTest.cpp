// SPDX-License-Identifier: GPL-3.0-or-later
// The list of daily profiles in a monthly profile, with its two commands.

#include "FileDialogScript.h"
#include "KindDialog.h"
#include "MessageScript.h"
#include "TestFiles.h"

#include <QComboBox>
#include <QPointer>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using enum ProfileKind;

namespace {

// A folder with the daily profiles "calme" and "week-end", and dialogs over it that are handed the
// name "calme" for each row. A week takes no names.
struct ProfileFolder {
    ProfileFolder() {
        const QByteArray bytes = "HEURES =" + QByteArray(" 0").repeated(24) +
                                 "\nCOEFFICIENT =" + QByteArray(" 0.50 1.50").repeated(12) + "\n";
        for (const QString& name : {u"/calme.dat"_s, u"/week-end.dat"_s})
            QVERIFY(WriteAll(daily + name, bytes));
    }

    // What stands in the third column of `row`.
    QString Name(int row) const { return shown->Column(3).value(row - 1); }
    const ProfileSession& Session() const { return shown->dialog->session(); }

    void Run(ProfileKind kind, const std::function<void()>& steps) {
        SessionSetup setup;
        setup.kind = kind;
        setup.name = u"Mois"_s;
        setup.values = QStringList(12, u"1800"_s);
        setup.names = QStringList(12, u"calme"_s);
        setup.folders = ProfileFolders(folder.path());
        shown = std::make_unique<KindDialog>(std::make_unique<CDlgGridChart>(std::move(setup)));
        shown->Run(steps);
    }

    // The list of the cell, opened with the keyboard; nullptr when none opens.
    QComboBox* OpenList(int row) const {
        shown->Grid()->SelectCell(row, 3);
        QTest::keyClick(shown->Grid(), Qt::Key_F2);
        const auto opened = [] {
            const QWidget* const popup = QApplication::activePopupWidget();
            return popup != nullptr ? qobject_cast<QComboBox*>(popup->parentWidget()) : nullptr;
        };
        return QTest::qWaitFor([&] { return opened() != nullptr; }) ? opened() : nullptr;
    }

    void Choose(int row, const QString& choice) const {
        QComboBox* const list = OpenList(row);
        QVERIFY(list != nullptr);
        const int index = list->findText(choice);
        QVERIFY2(index >= 0, qPrintable(choice));
        list->view()->setCurrentIndex(list->model()->index(index, 0));
        QTest::keyClick(list->view(), Qt::Key_Return);
    }

    // Does `steps` in the dialog that opens over the first one, and waits for its end.
    void InNestedDialog(const std::function<void(CDlgGridChart&)>& steps) const {
        bool done = false;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
            auto* const nested = qobject_cast<CDlgGridChart*>(QApplication::activeModalWidget());
            if (nested == nullptr || nested == shown->dialog.get() || done)
                return;
            done = true;
            steps(*nested);
            if (nested->isVisible())
                nested->done(CDlgGridChart::kCancelled);
        });
        timer.start(0);
        QTRY_VERIFY(done);
        QTRY_COMPARE(QApplication::activeModalWidget(), shown->dialog.get());
    }

    const QTemporaryDir folder;
    const QString daily = folder.path() + u"/Data/Profils/Journalier"_s;
    MessageScript messages;
    FileDialogScript files;
    std::unique_ptr<KindDialog> shown;
};

}  // namespace

class DailyProfileTest : public QObject {
    Q_OBJECT

private slots:
    void ChoosesAListedProfile() {
        ProfileFolder profiles;
        profiles.Run(Monthly, [&] {
            profiles.Choose(2, u"week-end"_s);
            QCOMPARE(profiles.Name(2), u"week-end"_s);
            QVERIFY(profiles.Session().canUndo());
            // A list that is left without a choice changes nothing.
            const QPointer<QComboBox> list = profiles.OpenList(3);
            QVERIFY(list != nullptr);
            QTest::keyClick(list->view(), Qt::Key_Down);
            QTest::keyClick(list->view(), Qt::Key_Escape);
            QTRY_VERIFY(list == nullptr);
            QCOMPARE(profiles.Name(3), u"calme"_s);
        });
    }

    void AddsASavedProfile() {
        ProfileFolder profiles;
        profiles.files.ExpectSave(profiles.daily + u"/atelier"_s);
        profiles.Run(Monthly, [&] {
            profiles.Choose(4, u"AJOUTER"_s);
            QCOMPARE(profiles.Name(4), u"calme"_s);
            profiles.InNestedDialog([](CDlgGridChart& nested) {
                QCOMPARE(nested.windowTitle(), u"Profil Journalier : Nouveau Profil"_s);
                QCOMPARE(nested.session().table().Column(2), QStringList(24, u"1"_s));
                KindDialog::Click(nested, kSaveAs);
                QCOMPARE(nested.windowTitle(), u"Profil Journalier : atelier"_s);
                KindDialog::Click(nested, kOk);
            });
            QTRY_COMPARE(profiles.Name(4), u"atelier"_s);
            QVERIFY(profiles.Session().table().Choices().contains(u"atelier"_s));
            profiles.shown->Click(kUndo);
            QCOMPARE(profiles.Name(4), u"calme"_s);
        });
        QVERIFY(QFile::exists(profiles.daily + u"/atelier.dat"_s));
    }

    void AddsNothingThatWasNotSavedHere() {
        for (const auto& [saved_elsewhere, last_button] :
             {std::pair(false, kOk), std::pair(true, kOk), std::pair(true, kCancel)}) {
            ProfileFolder profiles;
            if (saved_elsewhere) {
                profiles.files.ExpectSave(profiles.folder.path() + u"/ailleurs"_s);
                profiles.messages.Expect(
                    u"Ce profil n'est pas enregistré dans le répertoire par défaut\n"
                    "il ne sera pas enregistré dans les paramètres de la simulation."_s,
                    u"Attention !"_s);
            }
            if (last_button == kCancel)
                profiles.messages.ExpectQuestion(u"Do you really want to cancel ?"_s,
                                                 u"Cancelling"_s, true);
            profiles.Run(Weekly, [&, elsewhere = saved_elsewhere, last = last_button] {
                const QStringList choices = profiles.Session().table().Choices();
                profiles.Choose(1, u"AJOUTER"_s);
                profiles.InNestedDialog([&](CDlgGridChart& nested) {
                    if (elsewhere)
                        KindDialog::Click(nested, kSaveAs);
                    KindDialog::Click(nested, last);
                });
                QCOMPARE(profiles.Name(1), QString());
                QCOMPARE(profiles.Session().table().Choices(), choices);
                QVERIFY(!profiles.Session().canUndo());
            });
        }
    }

    void ViewsTheProfileOfTheCell() {
        ProfileFolder profiles;
        profiles.messages.ExpectQuestion(u"Do you really want to cancel ?"_s, u"Cancelling"_s,
                                         true);
        profiles.Run(Monthly, [&] {
            profiles.Choose(1, u"VOIR"_s);
            profiles.InNestedDialog([](CDlgGridChart& nested) {
                QCOMPARE(nested.windowTitle(), u"Profil Journalier : calme"_s);
                QVERIFY(nested.session().isViewOnly());
                QCOMPARE(nested.session().table().CellText(2, 2), u"1.50"_s);
                QVERIFY(nested.findChild<QWidget*>(u"5001_Chart"_s) == nullptr);
                QTest::keyClick(&nested, Qt::Key_Escape);
            });
            QCOMPARE(profiles.Name(1), u"calme"_s);
            QVERIFY(!profiles.Session().canUndo());
        });
        // Without a name there is nothing to open.
        profiles.Run(Weekly, [&] {
            profiles.Choose(1, u"VOIR"_s);
            QTest::qWait(50);
            QCOMPARE(QApplication::activeModalWidget(), profiles.shown->dialog.get());
        });
    }
};

QTEST_MAIN(DailyProfileTest)
#include "DailyProfileTest.moc"
