#include "HostTest.h"

#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

const Points kPoints = {{"0", "1.50"}, {"10", "4"}, {"20", "-3e0"}, {"30.25", "12"}};

}  // namespace

/// The clipboard between the editor and other programs, and within one dialog.
class ClipboardTest : public HostTest {
    Q_OBJECT

    QByteArray Clipboard() const {
        return m_screen.Run(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"clipboard"_s}).value_or("");
    }

private slots:
    void initTestCase() { StartScreen(); }

    void init() { QVERIFY(WriteAll(m_file, HostFile(kPoints))); }

    void PastesAColumnOfASpreadsheet() {
        const QString sheet = m_folder.filePath(u"values.csv"_s);
        QVERIFY(WriteAll(sheet, "7.25\n8.5\n-3\n"));
        QProcess spreadsheet;
        spreadsheet.setProcessEnvironment(m_screen.Environment());
        spreadsheet.setStandardOutputFile(QProcess::nullDevice());
        spreadsheet.setStandardErrorFile(QProcess::nullDevice());
        spreadsheet.start(u"gnumeric"_s, {u"--no-splash"_s, sheet});
        QVERIFY(spreadsheet.waitForStarted());
        {
            HostRun host(m_screen);
            QVERIFY(host.WaitForWindow(u"values.csv - Gnumeric"_s));
            QVERIFY(host.Keys({u"ctrl+Home"_s, u"ctrl+shift+Down"_s, u"ctrl+c"_s}));
            // The spreadsheet owns the clipboard as soon as it has handled the keys.
            QTRY_COMPARE_WITH_TIMEOUT(Clipboard(), "7.25\n8.5\n-3", 10000);
            host.Start({m_file});
            QVERIFY(host.WaitForDialog());
            QVERIFY(host.Click(CellPlace(2, 2)) && host.Keys({u"ctrl+v"_s}));
            QVERIFY(host.PressOk());
        }
        spreadsheet.kill();
        QVERIFY(spreadsheet.waitForFinished());
        QCOMPARE(ReadAll(m_file),
                 SavedFile({{"0", "1.50"}, {"10", "7.25"}, {"20", "8.5"}, {"30.25", "-3"}}));
    }

    void CopiesWithinTheGridAndToOtherPrograms() {
        EditorRun host(m_screen, {m_file});
        QVERIFY(host.Click(CellPlace(2, 2)) && host.Keys({u"shift+Down"_s, u"ctrl+c"_s}));
        QTRY_COMPARE_WITH_TIMEOUT(Clipboard(), "4\n-3e0", 10000);
        QVERIFY(host.Click(CellPlace(3, 2)) && host.Keys({u"ctrl+v"_s}));
        QVERIFY(host.PressOk());
        QCOMPARE(ReadAll(m_file),
                 SavedFile({{"0", "1.50"}, {"10", "4"}, {"20", "4"}, {"30.25", "-3e0"}}));
    }
};

QTEST_GUILESS_MAIN(ClipboardTest)
#include "ClipboardTest.moc"
