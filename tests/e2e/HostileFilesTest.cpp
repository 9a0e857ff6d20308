// SPDX-License-Identifier: GPL-3.0-or-later
// Exchange files that no host should write: huge, endless, broken. The core reads each and writes
// it back within bounds of memory and messages; the program does so with two of them.

#include "FaultTable.h"
#include "HostTest.h"
#include "app/CPlugExchangeFile.h"
#include "app/CPlugParameters.h"
#include "base/Message.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

constexpr double kMegabyte = 1e6;
constexpr double kMaxMemoryRatio = 4.0;  // peak memory by size of the file
constexpr double kSmall = 10.0;          // MB; below it the toolkit's own memory counts more
constexpr int kMaxMessages = 12;
constexpr int kMessageBase = 16;
constexpr rlim_t kMaxSeconds = 240;  // of the processor; only a run without an end needs them

// A content made of a piece repeated between two ends. It is held as a whole only in passing.
struct HostileFile {
    const char* name = "";
    QByteArray head;
    QByteArray piece;
    qint64 count = 0;
    QByteArray tail;
    bool is_refused = false;  // by the save, which leaves it as it is
    QByteArray saved_piece = piece;

    QByteArray Content() const { return head + piece.repeated(count) + tail; }
    QByteArray Saved() const {
        return head + saved_piece.repeated(count) + tail + (is_refused ? "" : "\n");
    }
};

QByteArray SmallFile() {
    return SavedFile({{"0", "1"}, {"10", "4"}, {"20", "-3e0"}}).chopped(1);
}
const QByteArrayList kThroughProgram = {"count of 2,000,000,000", "comment lines"};

// The small file with what stands in the place of `mark`.
HostileFile Spread(const char* name, const QByteArray& mark, const QByteArray& before,
                   const QByteArray& piece, qint64 count, const QByteArray& behind = {},
                   bool is_refused = false) {
    const qsizetype at = SmallFile().indexOf(mark);
    return {name,
            SmallFile().first(at) + before,
            piece,
            count,
            behind + SmallFile().sliced(at + mark.size()),
            is_refused,
            piece};
}

QList<HostileFile> HostileFiles() {
    bool is_set = false;
    const int wanted = qEnvironmentVariableIntValue("HOSTILE_MEGABYTES", &is_set);
    const auto bytes = static_cast<qint64>((is_set ? wanted : kSanitized ? 2 : 20) * kMegabyte);
    const QByteArray first = "! Written by the host\n";
    QByteArray utf16 = "\xFF\xFE";
    for (const char c : SmallFile())
        utf16 += QByteArray(1, c) + '\0';
    QByteArray empty_points = SmallFile()
                                  .replace("6 ! Point lines", "1000002 ! Point lines")
                                  .replace("2 ! Points less", "500000 ! Points less");
    empty_points.truncate(empty_points.indexOf("10 !"));
    return {
        {"small file", SmallFile(), {}, 0, {}},
        Spread("count of 2,000,000,000", "6 ! P", "2000000000 ! P", {}, 0, {}, true),
        Spread("one line, one word", first, {}, "x", bytes, " \n"),
        Spread("one line of words", first, {}, "x ", bytes / 2, "\n"),
        Spread("one line, one comment", first, "!", "x", bytes, "\n"),
        Spread("comment lines", "! End\n", {}, "! a comment line of thirty bytes\n", bytes / 33),
        Spread("a million comment lines", "! End\n", {}, "! one\n", 1'000'000),
        Spread("a line of markers", first, {}, "!", bytes, "\n"),
        Spread("NUL bytes", first, {}, QByteArray(1, '\0'), bytes, " \n"),
        Spread("lone carriage returns", first, {}, "\r", bytes, "x \n"),
        Spread("UTF-8 mark", first, "\xEF\xBB\xBFx \n", {}, 0),
        {"UTF-16", utf16, {}, 0, {}, true},
        {"a million empty point lines", empty_points, "\n\n", 500'000, "! End\n", false,
         " ! Time at point|hr|0|+Inf\n ! Value at point |any|-Inf|+Inf\n"},
        Spread("a value in a point line", "-3e0 !", {}, "7", bytes, " !"),
        Spread("a word in a point line", "10 !", {}, "w", bytes, " !"),
        Spread("a comment without a count", "6 ! Point lines", "!", "c", bytes, {}, true),
        Spread("a word instead of a count", "6 !", {}, "w", bytes, " !", true),
        Spread("a third word on the fourth line", "flow", {}, "w", bytes)};
}

struct Child {
    int status = 0;
    double megabytes = 0.0;  // peak memory
};

// Does `work` in a child, whose memory goes with it; nothing when that did not end by itself.
std::optional<Child> InChild(const std::function<int()>& work) {
    const int child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
        const rlimit limit = {kMaxSeconds, kMaxSeconds};
        setrlimit(RLIMIT_CPU, &limit);
        _exit(work());
    }
    int status = 0;
    rusage usage = {};
    if (wait4(child, &status, 0, &usage) != child || !WIFEXITED(status))
        return std::nullopt;
    return Child{WEXITSTATUS(status), static_cast<double>(usage.ru_maxrss) * 1024 / kMegabyte};
}

// Reads the file and writes it back. The messages of both, of each at most kMessageBase less one.
int ReadAndWrite(const QString& path) {
    int messages = 0;
    SetMessageHandler({[&](const QString&, MessageIcon, const QString&) { ++messages; }, {}});
    CPlugExchangeFile file(path);
    CPlugParameters parameters;
    parameters.setParameters(&file);
    const int opening = std::min(messages, kMessageBase - 1);
    try {
        parameters.writeFile();
    } catch (const std::invalid_argument&) {
        ++messages;
    }
    return opening * kMessageBase + std::min(messages - opening, kMessageBase - 1);
}

}  // namespace

class HostileFilesTest : public HostTest {
    Q_OBJECT

    double m_base = 0.0;  // megabytes that a small file takes

    std::optional<Child> RunCore() {
        return InChild([this] { return ReadAndWrite(m_file); });
    }
    bool Write(const HostileFile& hostile) {
        return InChild([&] { return WriteAll(m_file, hostile.Content()) ? 1 : 0; })->status == 1;
    }
    bool IsSaved(const HostileFile& hostile) {
        return InChild([&] { return ReadAll(m_file) == hostile.Saved() ? 1 : 0; })->status == 1;
    }

private slots:
    void initTestCase() {
        StartScreen();
        QVERIFY(WriteAll(m_file, SmallFile()));
        const std::optional<Child> run = RunCore();
        QVERIFY(run);
        m_base = run->megabytes;
    }

    void Survives_data() {
        QTest::addColumn<HostileFile>("hostile");
        for (const HostileFile& hostile : HostileFiles())
            QTest::newRow(hostile.name) << hostile;
    }
    void Survives() {
        QFETCH(const HostileFile, hostile);
        QVERIFY(Write(hostile));
        const double size = static_cast<double>(QFileInfo(m_file).size()) / kMegabyte;
        const std::optional<Child> run = RunCore();
        QVERIFY2(run, "did not end by itself");
        QVERIFY(IsSaved(hostile));
        const int opening = run->status / kMessageBase;
        const int closing = run->status % kMessageBase;
        QVERIFY(opening + closing <= kMaxMessages);
        const double memory = run->megabytes - m_base;
        QVERIFY2(kSanitized || size < kSmall || memory < kMaxMemoryRatio * size,
                 qPrintable(u"%1 MB of memory"_s.arg(memory)));
        AddTableRow("hostile",
                    {QLatin1StringView(hostile.name), QString::number(size, 'f', 1),
                     QString::number(memory, 'f', 0), QString::number(opening + closing)});
        if (!kThroughProgram.contains(hostile.name))
            return;

        QVERIFY(Write(hostile));
        HostRun host(m_screen);
        host.Start({m_file});
        for (int i = 0; i < opening; ++i)
            QVERIFY(host.PassMessage());
        QVERIFY(host.WaitForDialog() && host.Click(kOkButton));
        for (int i = 0; i < closing; ++i)
            QVERIFY(host.PassMessage());
        QVERIFY(host.HasEnded());
        QVERIFY(IsSaved(hostile));
    }
};

QTEST_GUILESS_MAIN(HostileFilesTest)
#include "HostileFilesTest.moc"
