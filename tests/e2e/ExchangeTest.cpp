// SPDX-License-Identifier: GPL-3.0-or-later
#include "HostRun.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QScopeGuard>
#include <QTest>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

const Points kPoints = {{"0", "1.50"}, {"10", "4"}, {"20", "-3e0"}};

// The ends of a standard stream, ours and the program's; -1 when there is none. What is written to
// it stays unread until the end.
using Ends = std::array<int, 2>;

Ends Pipe() {
    Ends ends = {-1, -1};
    (void)!pipe2(ends.data(), O_CLOEXEC);
    return ends;
}

Ends Terminal() {
    const int ours = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    (void)(grantpt(ours) + unlockpt(ours));
    return {ours, open(ptsname(ours), O_RDWR | O_NOCTTY | O_CLOEXEC)};
}

// A further write would wait.
Ends Full(Ends ends) {
    const int flags = fcntl(ends[1], F_GETFL);
    (void)fcntl(ends[1], F_SETFL, flags | O_NONBLOCK);
    for (const QByteArray& piece : {QByteArray(4096, 'x'), QByteArray("x")}) {
        while (write(ends[1], piece.constData(), static_cast<size_t>(piece.size())) > 0) {
        }
    }
    (void)fcntl(ends[1], F_SETFL, flags);
    return ends;
}

Ends File() {
    const int file = memfd_create("stream", MFD_CLOEXEC);
    return {dup(file), file};
}

// A standard stream as a host may hand it over.
struct Stream {
    const char* name = "";
    Ends (*open)() = nullptr;
    bool is_read = false;  // at the end
};

const Stream kStreams[] = {{"closed",
                            [] {
                                return Ends{-1, -1};
                            }},
                           {"an unread pipe", Pipe, true},
                           {"a full pipe", [] { return Full(Pipe()); }},
                           {"a full terminal", [] { return Full(Terminal()); }},
                           {"/dev/full",
                            [] {
                                return Ends{-1, open("/dev/full", O_RDWR)};
                            }},
                           {"a file", File, true}};

}  // namespace

Q_DECLARE_METATYPE(Stream)

/// What a run leaves in the exchange file, byte for byte, and how it ends.
class ExchangeTest : public HostTest {
    Q_OBJECT

private slots:
    // The file is named from the working folder, or behind a switch.
    void RewritesAnUnchangedFunction() {
        for (const QStringList& arguments :
             {QStringList{u"exchange file.txt"_s}, QStringList{u"-quiet"_s, m_file}}) {
            QVERIFY(WriteAll(m_file, HostFile(kPoints)));
            EditorRun host(arguments, [this](QProcess& program) {
                program.setWorkingDirectory(m_folder.path());
            });
            QVERIFY(host.PressOk());
            QCOMPARE(ReadAll(m_file), SavedFile(kPoints));
        }
    }

    void CancelsOnlyWhenSure() {
        const QByteArray content = HostFile(kPoints).replace("12 ! Num", "12   ! Num");
        QVERIFY(WriteAll(m_file, content));
        EditorRun host({m_file});
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

    void OpensEmptyWithoutPoints() {
        const std::pair<QStringList, int> cases[] = {{{m_folder.filePath(u"none.txt"_s)}, 2},
                                                     {{m_folder.path()}, 2},
                                                     {{}, 2},
                                                     {{m_file}, 1}};
        const QByteArray content = "1\n2\n3\n4 2 x\n5";
        QVERIFY(WriteAll(m_file, content));
        for (const auto& [arguments, messages] : cases) {
            HostRun host;
            host.Start(arguments);
            for (int i = 0; i < messages; ++i)
                QVERIFY2(host.PassMessage(), qPrintable(u"message %1"_s.arg(i + 1)));
            QVERIFY(host.WaitForDialog() && host.Click(kOkButton));
            QVERIFY2(host.PassMessage(), "an empty function cannot be saved");
            QVERIFY(host.HasEnded());
            QVERIFY(!QFileInfo::exists(m_folder.filePath(u"none.txt"_s)));
            QCOMPARE(ReadAll(m_file), content);
        }
    }

    // The dialog comes back with the edit, and the next OK saves it.
    void KeepsFileAndEditsWhenWritingIsRefused() {
        QVERIFY(WriteAll(m_file, HostFile(kPoints)));
        EditorRun host({m_file});
        QVERIFY(host.TypeInto(CellPlace(1, 2), u"9"_s) && host.Keys({u"Return"_s}));
        const QStringList entries =
            QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden);
        const auto limit_files = [&host](rlim_t size) {
            const rlimit limits = {size, RLIM_INFINITY};
            const auto process = static_cast<pid_t>(host.Program().processId());
            return prlimit(process, RLIMIT_FSIZE, &limits, nullptr) == 0;
        };
        QVERIFY(limit_files(100) && host.Click(kOkButton));
        QVERIFY(host.PassMessage() && host.WaitForDialog());
        QCOMPARE(ReadAll(m_file), HostFile(kPoints));
        QCOMPARE(QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden), entries);
        QVERIFY(limit_files(RLIM_INFINITY) && host.PressOk());
        QCOMPARE(ReadAll(m_file), SavedFile({{"0", "9"}, {"10", "4"}, {"20", "-3e0"}}));
    }

    void SaysThatMemoryDoesNotSuffice() {
        if (kSanitized)
            QSKIP("the sanitizers need more room than there is");
        constexpr rlim_t kRoom = rlim_t{2} << 30;
        QFile file(m_file);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(2 * qint64{kRoom}));
        const QDateTime written = QFileInfo(file).lastModified();
        HostRun host;
        host.Program().setProcessChannelMode(QProcess::SeparateChannels);
        host.Program().setChildProcessModifier([] {
            const rlimit limits = {kRoom, kRoom};
            (void)setrlimit(RLIMIT_AS, &limits);
        });
        host.Start({m_file});
        QVERIFY(host.PassMessage() && host.HasEnded(1));
        const QByteArray error = host.Program().readAllStandardError();
        QVERIFY2(error.contains("not enough memory"), error.constData());
        QCOMPARE(QFileInfo(file).lastModified(), written);
    }

    // The toolkit's texts do not hold such a name: a shell hands it over.
    void FindsAFileWhoseNameIsNotUtf8() {
        QVERIFY(WriteAll(m_file, HostFile(kPoints)));
        HostRun host;
        host.Program().setWorkingDirectory(m_folder.path());
        host.Program().start(u"/bin/sh"_s, {u"-c"_s,
                                            u"f=$(printf '\\351.txt'); mv \"$1\" \"$f\"; "
                                            "\"$2\" \"$f\"; mv \"$f\" \"$1\""_s,
                                            u"sh"_s, m_file, HostRun::ProgramPath()});
        QVERIFY(host.WaitForDialog() && host.PressOk());
        QCOMPARE(ReadAll(m_file), SavedFile(kPoints));
    }

    void NoStreamStopsOrDelaysARun_data() {
        QTest::addColumn<Stream>("stream");
        QTest::addColumn<QList<int>>("numbers");
        const std::pair<const char*, QList<int>> handed_over[] = {{"standard input", {0}},
                                                                  {"standard output", {1}},
                                                                  {"standard error", {2}},
                                                                  {"all three", {0, 1, 2}}};
        for (const Stream& stream : kStreams) {
            for (const auto& [name, numbers] : handed_over)
                QTest::addRow("%s %s", name, stream.name) << stream << numbers;
        }
    }
    // The trace of 8,760 points is several times what a pipe holds, and the toolkit talks too.
    void NoStreamStopsOrDelaysARun() {
        QFETCH(const Stream, stream);
        QFETCH(const QList<int>, numbers);
        const QByteArray sample = ReadAll(QStringLiteral(SAMPLES_DIR "year-hourly.txt"));
        for (int i = std::max(1, qEnvironmentVariableIntValue("STREAM_STARTS")); i > 0; --i) {
            QVERIFY(WriteAll(m_file, sample));
            const Ends ends = stream.open();
            const auto closed =
                qScopeGuard([&] { std::for_each(ends.begin(), ends.end(), close); });
            EditorRun host({m_file}, [&](QProcess& program) {
                QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
                environment.insert(u"QT_LOGGING_RULES"_s, u"qt.qpa.*=true"_s);
                program.setProcessEnvironment(environment);
                program.setProcessChannelMode(QProcess::SeparateChannels);
                program.setStandardErrorFile(QProcess::nullDevice());
                program.setChildProcessModifier([&] {
                    for (const int number : numbers)
                        (void)(ends[1] < 0 ? close(number) : dup2(ends[1], number));
                });
            });
            QVERIFY(!QTest::currentTestFailed() && host.PressOk());
            QCOMPARE(ReadAll(m_file), sample + '\n');
            if (!stream.is_read || !numbers.contains(STDOUT_FILENO))
                continue;
            QByteArray written(1 << 16, '\0');
            (void)lseek(ends[0], 0, SEEK_SET);
            QVERIFY(read(ends[0], written.data(), 1 << 16) > 0);
            QVERIFY(written.contains("Resulting token: "));
        }
    }
};

QTEST_GUILESS_MAIN(ExchangeTest)
#include "ExchangeTest.moc"
