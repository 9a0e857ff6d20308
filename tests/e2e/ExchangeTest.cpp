#include "HostTest.h"

#include <QFileInfo>
#include <QScopeGuard>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const Points kPoints = {{"0", "1.50"}, {"10", "4"}, {"20", "-3e0"}};

}  // namespace

/// What a run leaves in the exchange file, byte for byte, and how it ends.
class ExchangeTest : public HostTest {
    Q_OBJECT

private slots:
    void initTestCase() { StartScreen(); }

    void RewritesAnUnchangedFunction_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QByteArray>("expected");
        QTest::addColumn<QStringList>("arguments");

        const QStringList absolute = {m_file};
        QTest::newRow("normal form")
            << HostFile(kPoints) << SavedFile(kPoints) << QStringList{u"exchange file.txt"_s};
        QTest::newRow("behind a switch")
            << HostFile(kPoints) << SavedFile(kPoints) << QStringList{u"-quiet"_s, m_file};
        QTest::newRow("carriage returns") << HostFile(kPoints).replace("\n", "\r\n")
                                          << SavedFile(kPoints).replace("\n", "\r\n") << absolute;
        QTest::newRow("uneven")
            << QByteArray(
                   " 1   2 3\n!x!y\n !x\n3  0 x !! note\na ! b ! c\n1\t2\n\n\n\n\n1!\n  1  0 ! "
                   "n\n4\n"
                   "0!t\n 1 !y\n2.50 x ! t\n3\nlast")
            << QByteArray(
                   "1 2 3 \n!x!y\n!x\n3 0 x ! note\na ! b \n1\t2 \n\n\n\n\n1 \n1 0 ! n\n4 \n"
                   "0 !t\n1 !y\n2.50 ! Time at point|hr|0|+Inf\n"
                   "3 ! Value at point |any|-Inf|+Inf\nlast \n")
            << absolute;
        const QByteArray sample = ReadAll(QStringLiteral(SAMPLES_DIR "pump-start.txt"));
        QTest::newRow("sample") << sample << sample + '\n' << absolute;
    }
    void RewritesAnUnchangedFunction() {
        QFETCH(const QByteArray, content);
        QFETCH(const QByteArray, expected);
        QFETCH(const QStringList, arguments);
        QVERIFY(WriteAll(m_file, content));

        EditorRun host(m_screen, arguments,
                       [this](QProcess& program) { program.setWorkingDirectory(m_folder.path()); });
        QVERIFY(host.PressOk());
        QCOMPARE(ReadAll(m_file), expected);
    }

    void CancelsOnlyWhenSure() {
        const QByteArray content =
            "1   2\n" + HostFile(kPoints).sliced(sizeof "! Written by the host");
        QVERIFY(WriteAll(m_file, content));
        EditorRun host(m_screen, {m_file});
        QVERIFY(host.TypeInto(CellPlace(2, 2), u"7"_s) && host.Keys({u"Return"_s}));
        // How it is asked for, "" for the button, and what is answered.
        const std::pair<QString, QString> attempts[] = {
            {{}, u"Escape"_s}, {u"Escape"_s, u"alt+F4"_s}, {u"alt+F4"_s, u"Return"_s}};
        for (const auto& [key, answer] : attempts) {
            QVERIFY(host.WaitForDialog());
            QVERIFY(key.isEmpty() ? host.Click(kCancelButton) : host.Keys({key}));
            QVERIFY(host.WaitForWindow(u"Cancelling"_s));
            QVERIFY(host.Keys({answer}) && host.WaitUntilClosed());
        }
        QVERIFY(host.HasEnded());
        QCOMPARE(ReadAll(m_file), content);
    }

    void KeepsTheEditsOfARefusedCancel() {
        QVERIFY(WriteAll(m_file, HostFile(kPoints)));
        EditorRun host(m_screen, {m_file});
        QVERIFY(host.TypeInto(CellPlace(2, 2), u"7"_s) && host.Keys({u"Return"_s, u"Escape"_s}));
        QVERIFY(host.WaitForWindow(u"Cancelling"_s));
        QVERIFY(host.Keys({u"Escape"_s}) && host.WaitUntilClosed() && host.WaitForDialog());
        QVERIFY(host.PressOk());
        QCOMPARE(ReadAll(m_file), SavedFile({{"0", "1.50"}, {"10", "7"}, {"20", "-3e0"}}));
    }

    void OpensEmptyWithoutPoints_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("argument");
        QTest::addColumn<int>("messages");

        QTest::newRow("no such file") << QByteArray() << m_folder.filePath(u"none.txt"_s) << 2;
        QTest::newRow("a folder") << QByteArray() << m_folder.path() << 2;
        QTest::newRow("no file name") << QByteArray() << QString() << 2;
        QTest::newRow("two cycles")
            << HostFile(kPoints).replace("\n1 ! Cycles", "\n2 ! Cycles") << m_file << 1;
        QTest::newRow("cut in the header") << QByteArray("1\n2\n3\n4 2 x\n5") << m_file << 1;
    }
    void OpensEmptyWithoutPoints() {
        QFETCH(const QByteArray, content);
        QFETCH(const QString, argument);
        QFETCH(const int, messages);
        if (!content.isNull())
            QVERIFY(WriteAll(m_file, content));

        HostRun host(m_screen);
        host.Start(argument.isNull() ? QStringList() : QStringList{argument});
        for (int i = 0; i < messages; ++i)
            QVERIFY2(host.PassMessage(), qPrintable(u"message %1"_s.arg(i + 1)));
        QVERIFY(host.WaitForDialog());
        QVERIFY(host.Click(kOkButton));
        QVERIFY2(host.PassMessage(), "an empty function cannot be saved");
        QVERIFY(host.HasEnded());
        QVERIFY(!QFileInfo::exists(m_folder.filePath(u"none.txt"_s)));
        if (!content.isNull())
            QCOMPARE(ReadAll(m_file), content);
    }

    void KeepsTheOldFileWhenWritingIsRefused() {
        QTemporaryDir folder;
        const QString file = folder.filePath(u"exchange.txt"_s);
        const QString program = folder.filePath(u"function-editor"_s);
        QVERIFY(WriteAll(file, HostFile(kPoints)));
        QVERIFY(QFile::copy(HostRun::ProgramPath(), program));
        QVERIFY(
            QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
        const QByteArray folder_path = QFile::encodeName(folder.path());
        QCOMPARE(chmod(folder_path.constData(), 0555), 0);
        const auto writable = qScopeGuard([&] { (void)chmod(folder_path.constData(), 0755); });

        HostRun host(m_screen);
        host.StartAsStranger(program, {file});
        QVERIFY(host.WaitForDialog());
        QVERIFY(host.TypeInto(CellPlace(1, 2), u"9"_s) && host.Keys({u"Return"_s}));
        QVERIFY(host.Click(kOkButton));
        QVERIFY(host.PassMessage());
        QVERIFY(host.HasEnded());
        QCOMPARE(ReadAll(file), HostFile(kPoints));
    }

    // The trace of 8,760 points is several times what a pipe holds.
    void DoesNotWaitForAHostThatNeverReadsItsOutput() {
        const QByteArray sample = ReadAll(QStringLiteral(SAMPLES_DIR "year-hourly.txt"));
        QVERIFY(WriteAll(m_file, sample));
        const QString pipe = m_folder.filePath(u"pipe"_s);
        const QByteArray pipe_path = QFile::encodeName(pipe);
        QCOMPARE(mkfifo(pipe_path.constData(), 0600), 0);
        const int reader = open(pipe_path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        QVERIFY(reader >= 0);
        const auto closed = qScopeGuard([&] { close(reader); });

        EditorRun host(m_screen, {m_file},
                       [&pipe](QProcess& program) { program.setStandardOutputFile(pipe); });
        QVERIFY(host.PressOk());
        QCOMPARE(ReadAll(m_file), sample + '\n');
        char first = 0;
        QVERIFY2(read(reader, &first, 1) == 1, "nothing was written to the pipe");
    }
};

QTEST_GUILESS_MAIN(ExchangeTest)
#include "ExchangeTest.moc"
