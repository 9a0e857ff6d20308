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

    void RewritesAnUnchangedFunction() {
        const QByteArray host_file = HostFile(kPoints);
        const QByteArray saved = SavedFile(kPoints);
        const QByteArray sample = ReadAll(QStringLiteral(SAMPLES_DIR "pump-start.txt"));
        const std::tuple<QByteArray, QByteArray, QStringList> cases[] = {
            {host_file, saved, {u"exchange file.txt"_s}},
            {host_file, saved, {u"-quiet"_s, m_file}},
            {QByteArray(host_file).replace("\n", "\r\n"),
             QByteArray(saved).replace("\n", "\r\n"),
             {m_file}},
            {" 1   2 3\n!x!y\n !x\n3  0 x !! note\na ! b ! c\n1\t2\n\n\n\n\n1!\n  1  0 ! n\n4\n"
             "0!t\n 1 !y\n2.50 x ! t\n3\nlast",
             "1 2 3 \n!x!y\n!x\n3 0 x ! note\na ! b \n1\t2 \n\n\n\n\n1 \n1 0 ! n\n4 \n"
             "0 !t\n1 !y\n2.50 ! Time at point|hr|0|+Inf\n"
             "3 ! Value at point |any|-Inf|+Inf\nlast \n",
             {m_file}},
            {sample, sample + '\n', {m_file}}};
        for (const auto& [content, expected, arguments] : cases) {
            QVERIFY(!content.isEmpty() && WriteAll(m_file, content));
            EditorRun host(m_screen, arguments, [this](QProcess& program) {
                program.setWorkingDirectory(m_folder.path());
            });
            QVERIFY(host.PressOk());
            QCOMPARE(ReadAll(m_file), expected);
        }
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

    void OpensEmptyWithoutPoints() {
        const QByteArray no_file;
        const std::tuple<QByteArray, QStringList, int> cases[] = {
            {no_file, {m_folder.filePath(u"none.txt"_s)}, 2},
            {no_file, {m_folder.path()}, 2},
            {no_file, {}, 2},
            {HostFile(kPoints).replace("\n1 ! Cycles", "\n2 ! Cycles"), {m_file}, 1},
            {"1\n2\n3\n4 2 x\n5", {m_file}, 1}};
        for (const auto& [content, arguments, messages] : cases) {
            QVERIFY(WriteAll(m_file, content));
            HostRun host(m_screen);
            host.Start(arguments);
            for (int i = 0; i < messages; ++i)
                QVERIFY2(host.PassMessage(), qPrintable(u"message %1"_s.arg(i + 1)));
            QVERIFY(host.WaitForDialog());
            QVERIFY(host.Click(kOkButton));
            QVERIFY2(host.PassMessage(), "an empty function cannot be saved");
            QVERIFY(host.HasEnded());
            QVERIFY(!QFileInfo::exists(m_folder.filePath(u"none.txt"_s)));
            QCOMPARE(ReadAll(m_file), content);
        }
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
