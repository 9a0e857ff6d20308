// SPDX-License-Identifier: GPL-3.0-or-later
#include "ChildRun.h"
#include "FaultTable.h"
#include "HostTest.h"

#include <QDateTime>
#include <QFileInfo>
#include <QScopeGuard>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

const Points kPoints = {{"0", "1.50"}, {"10", "4"}, {"20", "-3e0"}};

enum class State { Closed, Pipe, FullPipe, FullTerminal, FullDevice, File };

constexpr std::pair<const char*, State> kStates[] = {
    {"closed", State::Closed},        {"an unread pipe", State::Pipe},
    {"a full pipe", State::FullPipe}, {"a full terminal", State::FullTerminal},
    {"/dev/full", State::FullDevice}, {"a file", State::File},
};

// A standard stream as a host may hand it over. What is written to it stays unread until the end.
class HandedOver {
public:
    HandedOver(State state, const QString& file) {
        int ends[] = {-1, -1};
        switch (state) {
            case State::Closed: break;
            case State::Pipe:
            case State::FullPipe: (void)!pipe2(ends, O_CLOEXEC); break;
            case State::FullTerminal:
                ends[0] = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
                if (grantpt(ends[0]) == 0 && unlockpt(ends[0]) == 0)
                    ends[1] = open(ptsname(ends[0]), O_RDWR | O_NOCTTY | O_CLOEXEC);
                break;
            case State::FullDevice: ends[1] = open("/dev/full", O_RDWR | O_CLOEXEC); break;
            case State::File:
                ends[1] = open(QFile::encodeName(file).constData(),
                               O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
                ends[0] = dup(ends[1]);
                break;
        }
        m_ours = ends[0];
        m_theirs = ends[1];
        if (state == State::FullPipe || state == State::FullTerminal)
            Fill();
    }
    ~HandedOver() {
        close(m_ours);
        close(m_theirs);
    }
    HandedOver(const HandedOver&) = delete;
    HandedOver& operator=(const HandedOver&) = delete;

    // For the child before it becomes the program.
    void TakePlaceOf(const QList<int>& streams) const {
        for (const int stream : streams)
            (void)(m_theirs < 0 ? close(stream) : dup2(m_theirs, stream));
    }

    // The first of it.
    QByteArray Written() const {
        QByteArray bytes(1 << 16, '\0');
        (void)lseek(m_ours, 0, SEEK_SET);
        bytes.resize(std::max<qsizetype>(0, read(m_ours, bytes.data(), 1 << 16)));
        return bytes;
    }

private:
    void Fill() const {
        const int flags = fcntl(m_theirs, F_GETFL);
        (void)fcntl(m_theirs, F_SETFL, flags | O_NONBLOCK);
        for (const QByteArray& piece : {QByteArray(4096, 'x'), QByteArray("x")}) {
            while (write(m_theirs, piece.constData(), static_cast<size_t>(piece.size())) > 0) {
            }
        }
        (void)fcntl(m_theirs, F_SETFL, flags);
    }

    int m_ours = -1;
    int m_theirs = -1;
};

bool SetMode(const QString& path, unsigned mode) {
    return chmod(QFile::encodeName(path).constData(), mode) == 0;
}

// A reason for which a write is refused, and its end.
struct Refusal {
    // False where the system does not let it.
    bool (*prepare)(const QString& folder);
    bool (*begin)(const QString& folder, const QString& file);
    bool (*end)(const QString& folder, const QString& file);
    bool asks = false;  // the file no longer is what was read
};

bool Nothing(const QString&) {
    return true;
}

const std::pair<const char*, Refusal> kRefusals[] = {
    {"program, file and folder read-only at OK",
     {Nothing,
      [](const QString& folder, const QString& file) {
          return SetMode(file, 0444) && SetMode(folder, 0555);
      },
      [](const QString&, const QString& file) { return SetMode(file, 0666); }}},
    {"program, folder gone at OK",
     {Nothing,
      [](const QString& folder, const QString&) { return QDir(folder).removeRecursively(); },
      [](const QString& folder, const QString&) {
          return QDir().mkdir(folder) && SetMode(folder, 0777);
      },
      true}},
    {"program, disk full at OK",
     {[](const QString& folder) { return MountSmallDisk(folder, 1 << 20); },
      [](const QString& folder, const QString&) {
          FillDisk(folder);
          return true;
      },
      [](const QString& folder, const QString&) { return QFile::remove(folder + u"/filler"_s); }}},
};

}  // namespace

Q_DECLARE_METATYPE(State)
Q_DECLARE_METATYPE(const Refusal*)

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

    void KeepsFileAndEditsWhenWritingIsRefused_data() {
        QTest::addColumn<const Refusal*>("refusal");
        for (const auto& [name, refusal] : kRefusals)
            QTest::newRow(name) << &refusal;
    }
    // The dialog comes back with the edit, and the next OK saves it.
    void KeepsFileAndEditsWhenWritingIsRefused() {
        QFETCH(const Refusal*, refusal);
        const QTemporaryDir parent;
        const QString folder = parent.filePath(u"host"_s);
        const QString file = folder + u"/exchange.txt"_s;
        const QString program = parent.filePath(u"function-editor"_s);
        QVERIFY(QDir().mkdir(folder) && SetMode(parent.path(), 0755) && SetMode(folder, 0777));
        QVERIFY(QFile::copy(HostRun::ProgramPath(), program));
        if (!refusal->prepare(folder))
            QSKIP("the system does not let this user do that");
        const auto restored = qScopeGuard([&] {
            UnmountDisk(folder);
            SetMode(folder, 0755);
        });
        QVERIFY(WriteAll(file, HostFile(kPoints)));
        // As the stranger's own the file can be replaced by a new one.
        (void)!chown(QFile::encodeName(file).constData(), kNobody, kNobody);

        HostRun host(m_screen);
        host.StartAsStranger(program, {file});
        QVERIFY(host.WaitForDialog());
        QVERIFY(host.TypeInto(CellPlace(1, 2), u"9"_s) && host.Keys({u"Return"_s}));
        QVERIFY(refusal->begin(folder, file));
        const QByteArray content = ReadAll(file);
        const QStringList entries = QDir(folder).entryList(QDir::AllEntries | QDir::Hidden);
        const auto press_ok = [&] {
            return host.Click(kOkButton) &&
                   (!refusal->asks || (host.WaitForWindow(u"Exchange file"_s) &&
                                       host.Keys({u"Return"_s}) && host.WaitUntilClosed()));
        };
        QVERIFY(press_ok() && host.PassMessage() && host.WaitForDialog());
        QCOMPARE(ReadAll(file), content);
        QCOMPARE(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden), entries);
        QVERIFY(refusal->end(folder, file));
        QVERIFY(press_ok() && host.HasEnded());
        QCOMPARE(ReadAll(file), SavedFile({{"0", "9"}, {"10", "4"}, {"20", "-3e0"}}));
        const QString row = QLatin1StringView(QTest::currentDataTag());
        AddTableRow(
            "saves",
            {row, u"1"_s, u"nothing; one message, the next OK saves"_s,
             u"`e2e/ExchangeTest \"KeepsFileAndEditsWhenWritingIsRefused:%1\"`"_s.arg(row)});
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

    // The toolkit's texts do not hold such a name: a shell hands it over.
    void FindsAFileWhoseNameIsNotUtf8() {
        const QString script = m_folder.filePath(u"start"_s);
        QVERIFY(WriteAll(script, "cd '" + QFile::encodeName(m_folder.path()) + "' && cp " +
                                     "'exchange file.txt' \xE9.txt && '" +
                                     QFile::encodeName(HostRun::ProgramPath()) +
                                     "' \xE9.txt && mv \xE9.txt 'exchange file.txt'\n"));
        QVERIFY(WriteAll(m_file, HostFile(kPoints)));
        HostRun host(m_screen);
        host.Program().start(u"/bin/sh"_s, {script});
        QVERIFY(host.WaitForDialog());
        QVERIFY(host.PressOk());
        QCOMPARE(ReadAll(m_file), SavedFile(kPoints));
    }

    void NoStreamStopsOrDelaysARun_data() {
        QTest::addColumn<State>("state");
        QTest::addColumn<QList<int>>("streams");
        const std::pair<const char*, QList<int>> handed_over[] = {
            {"standard input", {STDIN_FILENO}},
            {"standard output", {STDOUT_FILENO}},
            {"standard error", {STDERR_FILENO}},
            {"all three", {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}}};
        for (const auto& [state_name, state] : kStates) {
            for (const auto& [stream_name, streams] : handed_over)
                QTest::addRow("%s %s", stream_name, state_name) << state << streams;
        }
    }
    // The trace of 8,760 points is several times what a pipe holds, and the toolkit talks too.
    void NoStreamStopsOrDelaysARun() {
        QFETCH(const State, state);
        QFETCH(const QList<int>, streams);
        const QByteArray sample = ReadAll(QStringLiteral(SAMPLES_DIR "year-hourly.txt"));
        const int starts = std::max(1, qEnvironmentVariableIntValue("STREAM_STARTS"));
        for (int i = 0; i < starts; ++i) {
            QVERIFY(WriteAll(m_file, sample));
            const HandedOver stream(state, m_folder.filePath(u"stream"_s));
            EditorRun host(m_screen, {m_file}, [&](QProcess& program) {
                QProcessEnvironment environment = program.processEnvironment();
                environment.insert(u"QT_LOGGING_RULES"_s, u"qt.qpa.*=true"_s);
                program.setProcessEnvironment(environment);
                program.setProcessChannelMode(QProcess::SeparateChannels);
                program.setStandardErrorFile(QProcess::nullDevice());
                program.setChildProcessModifier([&] { stream.TakePlaceOf(streams); });
            });
            QVERIFY(!QTest::currentTestFailed() && host.PressOk());
            QCOMPARE(ReadAll(m_file), sample + '\n');
            if (streams.contains(STDOUT_FILENO) && (state == State::Pipe || state == State::File))
                QVERIFY(stream.Written().contains("Resulting token: "));
        }
        AddTableRow("streams", {QString::fromLatin1(QTest::currentDataTag()),
                                QString::number(starts), u"window, right save"_s});
    }
};

QTEST_GUILESS_MAIN(ExchangeTest)
#include "ExchangeTest.moc"
