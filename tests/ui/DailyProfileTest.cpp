// The list of daily profiles in a monthly profile, with its two commands.

#include "FileDialogScript.h"
#include "KindDialog.h"
#include "MessageScript.h"
#include "TestFiles.h"

#include <QComboBox>
#include <QPointer>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

class DailyProfileTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    QString m_daily = m_folder.path() + u"/Data/Profils/Journalier"_s;
    QString m_name = u"Mois"_s;
    QStringList m_values = QStringList(12, u"1800"_s);
    QStringList m_names = QStringList(12, u"calme"_s);
    std::unique_ptr<CDlgGridChart> m_dialog;
    std::unique_ptr<MessageScript> m_messages;
    std::unique_ptr<FileDialogScript> m_files;

    // What stands in the third column of `row`.
    QString Name(int row) const { return m_dialog->session().table().CellText(row, 3); }

    void Run(ProfileKind kind, const std::function<void()>& steps) {
        SessionSetup setup;
        setup.kind = kind;
        setup.name = m_name;
        setup.values = m_values;
        setup.names = m_names;
        setup.folders = ProfileFolders(m_folder.path());
        m_dialog = std::make_unique<CDlgGridChart>(std::move(setup));
        RunDialog(*m_dialog, steps);
    }

    static void Click(const QWidget& dialog, const QString& name) {
        QTest::mouseClick(dialog.findChild<QWidget*>(name), Qt::LeftButton);
    }

    // The list of the cell, opened with the keyboard; nullptr when none opens.
    QComboBox* OpenList(int row) {
        m_dialog->activateWindow();
        auto* const grid = m_dialog->findChild<CGridControl*>();
        QComboBox* opened = nullptr;
        const auto is_open = [&] {
            for (QComboBox* const list : grid->findChildren<QComboBox*>()) {
                if (list->view()->isVisible())
                    opened = list;
            }
            return opened != nullptr;
        };
        if (!QTest::qWaitForWindowActive(m_dialog.get()))
            return nullptr;
        grid->setFocus();
        grid->SelectCell(row, 3);
        QTest::keyClick(grid, Qt::Key_F2);
        return QTest::qWaitFor(is_open) ? opened : nullptr;
    }

    void Choose(int row, const QString& choice) {
        QComboBox* const list = OpenList(row);
        QVERIFY(list != nullptr);
        const int index = list->findText(choice);
        QVERIFY2(index >= 0, qPrintable(choice));
        list->view()->setCurrentIndex(list->model()->index(index, 0));
        QTest::keyClick(list->view(), Qt::Key_Return);
    }

    // Does `steps` in the dialog that opens over the first one, and waits for its end.
    void InNestedDialog(const std::function<void(CDlgGridChart&)>& steps) {
        bool done = false;
        QTimer timer;
        connect(&timer, &QTimer::timeout, &timer, [&] {
            auto* const nested = qobject_cast<CDlgGridChart*>(QApplication::activeModalWidget());
            if (nested == nullptr || nested == m_dialog.get() || done)
                return;
            done = true;
            steps(*nested);
            if (nested->isVisible())
                nested->done(CDlgGridChart::kCancelled);
        });
        timer.start(0);
        QTRY_VERIFY(done);
        QTRY_COMPARE(QApplication::activeModalWidget(), m_dialog.get());
    }

private slots:
    void init() {
        const QByteArray bytes = "HEURES =" + QByteArray(" 0").repeated(24) +
                                 "\nCOEFFICIENT =" + QByteArray(" 0.50 1.50").repeated(12) + "\n";
        for (const QString& name : {u"/calme.dat"_s, u"/week-end.dat"_s})
            QVERIFY(WriteAll(m_daily + name, bytes));
        m_messages = std::make_unique<MessageScript>();
        m_files = std::make_unique<FileDialogScript>();
    }
    void cleanup() {
        m_messages.reset();
        m_files.reset();
    }

    void ChoosesAListedProfile() {
        Run(ProfileKind::Monthly, [&] {
            Choose(2, u"week-end"_s);
            QCOMPARE(Name(2), u"week-end"_s);
            QVERIFY(m_dialog->session().canUndo());
            // A list that is left without a choice changes nothing.
            QPointer<QComboBox> list = OpenList(3);
            QVERIFY(list != nullptr);
            QTest::keyClick(list->view(), Qt::Key_Down);
            QTest::keyClick(list->view(), Qt::Key_Escape);
            QTRY_VERIFY(list == nullptr);
            QCOMPARE(Name(3), u"calme"_s);
        });
    }

    void AddsASavedProfile() {
        m_files->ExpectSave(m_daily + u"/atelier"_s);
        Run(ProfileKind::Monthly, [&] {
            Choose(4, u"AJOUTER"_s);
            QCOMPARE(Name(4), u"calme"_s);
            InNestedDialog([](CDlgGridChart& nested) {
                QCOMPARE(nested.windowTitle(), u"Profil Journalier : Nouveau Profil"_s);
                QCOMPARE(nested.session().table().Column(2), QStringList(24, u"1"_s));
                Click(nested, u"5017_ENREGSOUS"_s);
                QCOMPARE(nested.windowTitle(), u"Profil Journalier : atelier"_s);
                Click(nested, u"5022_OK"_s);
            });
            QTRY_COMPARE(Name(4), u"atelier"_s);
            QVERIFY(m_dialog->session().table().Choices().contains(u"atelier"_s));
            Click(*m_dialog, u"5018_UNDO"_s);
            QCOMPARE(Name(4), u"calme"_s);
        });
        QVERIFY(QFile::exists(m_daily + u"/atelier.dat"_s));
    }

    void AddsNothingThatWasNotSavedHere() {
        const std::pair<bool, QString> cases[] = {
            {false, u"5022_OK"_s}, {true, u"5022_OK"_s}, {true, u"5011_Cancel"_s}};
        for (const auto& one : cases) {
            const bool saved_elsewhere = one.first;
            const QString last_button = one.second;
            if (saved_elsewhere) {
                m_files->ExpectSave(m_folder.path() + u"/ailleurs"_s);
                m_messages->Expect(
                    u"Ce profil n'est pas enregistré dans le répertoire par défaut\n"
                    "il ne sera pas enregistré dans les paramètres de la simulation."_s,
                    u"Attention !"_s);
            }
            if (last_button == u"5011_Cancel")
                m_messages->ExpectQuestion(u"Do you really want to cancel ?"_s, u"Cancelling"_s,
                                           true);
            Run(ProfileKind::Weekly, [&] {
                const QStringList choices = m_dialog->session().table().Choices();
                Choose(1, u"AJOUTER"_s);
                InNestedDialog([&](CDlgGridChart& nested) {
                    if (saved_elsewhere)
                        Click(nested, u"5017_ENREGSOUS"_s);
                    Click(nested, last_button);
                });
                QCOMPARE(Name(1), QString());
                QCOMPARE(m_dialog->session().table().Choices(), choices);
                QVERIFY(!m_dialog->session().canUndo());
            });
        }
    }

    void ViewsTheProfileOfTheCell() {
        m_messages->ExpectQuestion(u"Do you really want to cancel ?"_s, u"Cancelling"_s, true);
        Run(ProfileKind::Monthly, [&] {
            Choose(1, u"VOIR"_s);
            InNestedDialog([](CDlgGridChart& nested) {
                QCOMPARE(nested.windowTitle(), u"Profil Journalier : calme"_s);
                QVERIFY(nested.session().isViewOnly());
                QCOMPARE(nested.session().table().CellText(2, 2), u"1.50"_s);
                QVERIFY(nested.findChild<QWidget*>(u"5001_Chart"_s) == nullptr);
                QTest::keyClick(&nested, Qt::Key_Escape);
            });
            QCOMPARE(Name(1), u"calme"_s);
            QVERIFY(!m_dialog->session().canUndo());
        });
        // Without a name there is nothing to open.
        Run(ProfileKind::Weekly, [&] {
            Choose(1, u"VOIR"_s);
            QTest::qWait(50);
            QCOMPARE(QApplication::activeModalWidget(), m_dialog.get());
        });
    }
};

QTEST_MAIN(DailyProfileTest)
#include "DailyProfileTest.moc"
