#include "ChildRun.h"
#include "ExchangeText.h"
#include "FaultTable.h"
#include "HostRun.h"
#include "VirtualScreen.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <sys/resource.h>
#include <sys/types.h>

#include <chrono>
#include <csignal>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

constexpr int kKills = kSanitized ? 5 : 25;
constexpr int kManyPoints = 30'000;
constexpr qint64 kDiskSize = 1 << 20;

enum class Fault { DiskFull, SizeLimit, FolderGone };

bool LimitFileSizeOf(qint64 process, rlim_t bytes) {
    const rlimit limits = {bytes, RLIM_INFINITY};
    return prlimit(static_cast<pid_t>(process), RLIMIT_FSIZE, &limits, nullptr) == 0;
}

QString Command() {
    return u"`e2e/ProgramFaultsTest \"%1%2\"`"_s.arg(
        QLatin1StringView(QTest::currentTestFunction()),
        QTest::currentDataTag() != nullptr ? u':' + QLatin1StringView(QTest::currentDataTag())
                                           : QString());
}

}  // namespace

/// The built program when the system fails it, or ends it, at the moment the user presses OK.
class ProgramFaultsTest : public QObject {
    Q_OBJECT

    VirtualScreen m_screen;
    QTemporaryDir m_parent;
    QString m_folder = m_parent.filePath(u"host"_s);
    QString m_file = m_folder + u"/exchange.txt"_s;

private slots:
    void initTestCase() {
        QVERIFY(m_parent.isValid());
        const QString problem = m_screen.Start();
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }

    void init() { QVERIFY(QDir().mkpath(m_folder)); }

    // A program that is killed leaves the old content or the new one; the next one starts from it.
    void Kills() {
        Points points;
        for (int i = 0; i < kManyPoints; ++i)
            points.append({QByteArray::number(i), QByteArray::number(i % 7)});
        const QByteArray contents[] = {HostFile(points), SavedFile(points)};
        QRandomGenerator random(815);
        int whole_save = 0;  // ms from OK to the end, taken from a run that is left alone
        int saved = 0;
        for (int i = 0; i <= kKills; ++i) {
            QVERIFY(WriteAll(m_file, contents[0]));
            HostRun host(m_screen);
            host.Start({m_file});
            QVERIFY(host.WaitForDialog());
            if (i == 0) {
                QElapsedTimer timer;
                timer.start();
                QVERIFY(host.PressOk());
                whole_save = static_cast<int>(timer.elapsed());
                QVERIFY(ReadAll(m_file) == contents[1]);
                continue;
            }
            const auto process = static_cast<pid_t>(host.Program().processId());
            std::thread killer([process, delay = random.bounded(whole_save + 1)] {
                std::this_thread::sleep_for(std::chrono::milliseconds(delay));
                kill(process, SIGKILL);
            });
            (void)host.Click(kOkButton);  // the window may be gone by then
            killer.join();
            host.Program().waitForFinished();
            const QByteArray left = ReadAll(m_file);
            QVERIFY2(left == contents[0] || left == contents[1], "neither old nor new");
            saved += left == contents[1] ? 1 : 0;
        }
        qInfo("%d kills within %d ms of OK, %d after the save", kKills, whole_save, saved);
        AddTableRow("saves", {u"program killed at a random moment after OK"_s,
                              QString::number(kKills), u"nothing"_s, Command()});
    }

    void FaultsAtOk_data() {
        QTest::addColumn<Fault>("fault");
        QTest::newRow("program, size limit at OK") << Fault::SizeLimit;
        QTest::newRow("program, folder gone at OK") << Fault::FolderGone;
        QTest::newRow("program, disk full at OK") << Fault::DiskFull;
    }
    void FaultsAtOk() {
        QFETCH(const Fault, fault);
        const QByteArray content = HostFile({{"0", "1.50"}, {"10", "4"}});
        const bool mounted = fault == Fault::DiskFull && MountSmallDisk(m_folder, kDiskSize);
        const auto unmounted = qScopeGuard([&] {
            if (mounted)
                UnmountDisk(m_folder);
        });
        QVERIFY(WriteAll(m_file, content));
        HostRun host(m_screen);
        host.Start({m_file});
        QVERIFY(host.WaitForDialog());
        QVERIFY(host.TypeInto(CellPlace(2, 2), u"9"_s) && host.Keys({u"Return"_s}));
        if (fault == Fault::FolderGone)
            QVERIFY(QDir(m_folder).removeRecursively());
        else if (mounted)
            FillDisk(m_folder);
        else
            QVERIFY(LimitFileSizeOf(host.Program().processId(), 32));
        const QStringList entries = QDir(m_folder).entryList(QDir::AllEntries | QDir::Hidden);
        // A file that has vanished is not the one that was read.
        const auto press_ok = [&] {
            return host.Click(kOkButton) && (fault != Fault::FolderGone ||
                                             (host.WaitForWindow(u"Exchange file"_s) &&
                                              host.Keys({u"Return"_s}) && host.WaitUntilClosed()));
        };
        QVERIFY(press_ok());
        QVERIFY(host.PassMessage());
        QVERIFY(host.WaitForDialog());
        QCOMPARE(ReadAll(m_file), fault == Fault::FolderGone ? QByteArray() : content);
        QCOMPARE(QDir(m_folder).entryList(QDir::AllEntries | QDir::Hidden), entries);
        if (fault == Fault::FolderGone)
            QVERIFY(QDir().mkdir(m_folder));
        else if (mounted)
            QVERIFY(QFile::remove(m_folder + u"/filler"_s));
        else
            QVERIFY(LimitFileSizeOf(host.Program().processId(), RLIM_INFINITY));
        QVERIFY(press_ok());
        QVERIFY(host.HasEnded());
        QCOMPARE(ReadAll(m_file), SavedFile({{"0", "1.50"}, {"10", "9"}}));
        if (fault == Fault::DiskFull)
            qInfo("made by: %s", mounted ? "mounted disk" : "size limit");
        AddTableRow("saves", {QString::fromLatin1(QTest::currentDataTag()), u"1"_s,
                              u"nothing; one message, the next OK saves"_s, Command()});
    }

    void SaysThatMemoryDoesNotSuffice() {
        if (kSanitized)
            QSKIP("the sanitizers need more room than there is");
        constexpr rlim_t kRoom = rlim_t{2} << 30;
        QFile file(m_file);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(2 * qint64{kRoom}));
        const QDateTime written = QFileInfo(file).lastModified();
        HostRun host(m_screen);
        host.Program().setProcessChannelMode(QProcess::SeparateChannels);
        host.Program().setChildProcessModifier([] {
            const rlimit limits = {kRoom, kRoom};
            (void)setrlimit(RLIMIT_AS, &limits);
        });
        host.Start({m_file});
        QVERIFY(host.PassMessage());
        QVERIFY(!host.HasEnded());
        QCOMPARE(host.Program().exitStatus(), QProcess::NormalExit);
        QCOMPARE(host.Program().exitCode(), 1);
        const QByteArray error = host.Program().readAllStandardError();
        QVERIFY2(error.contains("not enough memory"), error.constData());
        QCOMPARE(QFileInfo(file).lastModified(), written);
    }
};

QTEST_GUILESS_MAIN(ProgramFaultsTest)
#include "ProgramFaultsTest.moc"
