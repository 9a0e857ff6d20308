// Exchange files that no host should write: huge, endless, broken. Each is read and written back by
// the core alone and by the program, within bounds of time and memory.

#include "ExchangeText.h"
#include "FaultTable.h"
#include "HostRun.h"
#include "VirtualScreen.h"
#include "app/CPlugExchangeFile.h"
#include "app/CPlugParameters.h"
#include "app/Message.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

#ifdef __OPTIMIZE__
constexpr bool kOptimised = true;
#else
constexpr bool kOptimised = false;
#endif

constexpr double kMegabyte = 1e6;
constexpr double kSecondsPerMegabyte = 0.02;  // of the processor
constexpr double kSlackSeconds = 1.0;
constexpr double kMostOfSize = 4.0;  // peak memory by size of the file
constexpr double kSmall = 10.0;      // MB; below it the toolkit's own memory counts more

// A content made of a piece repeated between two ends. It is never held as a whole.
struct Content {
    QByteArray head;
    QByteArray piece;
    qint64 count = 0;
    QByteArray tail;

    // Hands out the content block by block until `take` returns false.
    template <typename Take>
    bool Each(Take take) const {
        const qint64 in_block = std::max<qint64>(1, (1 << 20) / std::max<qint64>(1, piece.size()));
        const QByteArray block = piece.repeated(std::min(in_block, count));
        if (!take(head))
            return false;
        for (qint64 left = count; left > 0; left -= in_block) {
            if (!take(left >= in_block ? block : piece.repeated(left)))
                return false;
        }
        return take(tail);
    }

    bool WriteTo(const QString& path) const {
        QFile file(path);
        return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
               Each([&](const QByteArray& block) { return file.write(block) == block.size(); });
    }

    bool IsIn(const QString& path) const {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) &&
               Each([&](const QByteArray& block) { return file.read(block.size()) == block; }) &&
               file.atEnd();
    }
};

struct HostileFile {
    const char* name;
    Content content;
    std::optional<Content> saved = {};  // where it is not the same with an empty line behind it
};

constexpr qint64 kEmptyPoints = 500'000;
constexpr int kMostMessages = 12;

const Points kPoints = {{"0", "1"}, {"10", "4"}, {"20", "-3e0"}};

QByteArray Replaced(QByteArray text, const QByteArray& from, const QByteArray& to) {
    return text.replace(from, to);
}

// The saved form of a small file, with `piece` `count` times in the place of `mark`.
Content Spread(const QByteArray& mark, const QByteArray& before, const QByteArray& piece,
               qint64 count, const QByteArray& behind = {}) {
    const QByteArray file = SavedFile(kPoints).chopped(1);
    const qsizetype at = file.indexOf(mark);
    Q_ASSERT(at >= 0);
    return {file.first(at) + before, piece, count, behind + file.sliced(at + mark.size())};
}

QList<HostileFile> HostileFiles(double megabytes) {
    const auto bytes = static_cast<qint64>(megabytes * kMegabyte);
    const QByteArray first = "! Written by the host\n";
    const QByteArray file = SavedFile(kPoints).chopped(1);
    QByteArray utf16 = "\xFF\xFE";
    for (const char c : file)
        utf16 += QByteArray(1, c) + '\0';
    QByteArray empty_points = Replaced(file, "6 ! Point lines", "1000002 ! Point lines");
    empty_points = Replaced(empty_points, "2 ! Points less", "500000 ! Points less");
    empty_points.truncate(empty_points.indexOf("10 !"));
    const Content huge_count = {
        Replaced(file, "6 ! Point lines", "2000000000 ! Point lines"), {}, 0, {}};
    const Content no_count = Spread("6 ! Point lines", "!", "c", bytes);
    const Content no_number = Spread("6 !", {}, "w", bytes, " !");

    return {
        {"small file", {file, {}, 0, {}}},
        {"count of 2,000,000,000", huge_count, huge_count},
        {"one line, one word", Spread(first, {}, "x", bytes, " \n")},
        {"one line of words", Spread(first, {}, "x ", bytes / 2, "\n")},
        {"one line, one comment", Spread(first, "!", "x", bytes, "\n")},
        {"comment lines", Spread("! End\n", {}, "! a comment line of thirty bytes\n", bytes / 33)},
        {"a million comment lines", Spread("! End\n", {}, "! one\n", 1'000'000)},
        {"a line of 10,000 markers", Spread(first, {}, "!", 10'000, "\n")},
        {"a line of markers", Spread(first, {}, "!", bytes, "\n")},
        {"NUL bytes", Spread(first, {}, QByteArray(1, '\0'), bytes, " \n")},
        {"lone carriage returns", Spread(first, {}, "\r", bytes, "x \n")},
        {"UTF-8 mark", {"\xEF\xBB\xBFx \n" + file.sliced(first.size()), {}, 0, {}}},
        {"UTF-16", {utf16, {}, 0, {}}, Content{utf16, {}, 0, {}}},
        {"a million empty point lines",
         {empty_points, "\n", kEmptyPoints * 2, "! End\n"},
         Content{empty_points, " ! Time at point|hr|0|+Inf\n ! Value at point |any|-Inf|+Inf\n",
                 kEmptyPoints, "! End\n\n"}},
        {"a value in a point line", Spread("-3e0 !", {}, "7", bytes, " !")},
        {"a word in a point line", Spread("10 !", {}, "w", bytes, " !")},
        {"a comment without a count", no_count, no_count},
        {"a word instead of a count", no_number, no_number},
        {"a third word on the fourth line", Spread("flow", {}, "w", bytes)},
    };
}

double Megabytes() {
    bool is_set = false;
    const int wanted = qEnvironmentVariableIntValue("HOSTILE_MEGABYTES", &is_set);
    return is_set ? wanted : kSanitized ? 2.0 : 20.0;
}

struct Figures {
    double open_seconds = 0.0;
    double save_seconds = 0.0;
    double processor_seconds = 0.0;
    double peak_megabytes = 0.0;
    int messages = 0;
};

double Seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

// Reads the file and writes it back in a child; its messages are counted.
std::optional<Figures> RunCore(const QString& path) {
    int ends[2];
    if (pipe(ends) != 0)
        return std::nullopt;
    const int child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
        Figures figures;
        MessageHandler handler;
        handler.show = [&](const QString&, MessageIcon, const QString&) { ++figures.messages; };
        SetMessageHandler(handler);
        QElapsedTimer timer;
        timer.start();
        CPlugExchangeFile file(path);
        CPlugParameters parameters;
        parameters.setParameters(&file);
        figures.open_seconds = static_cast<double>(timer.restart()) / 1000.0;
        try {
            parameters.writeFile();
        } catch (const std::invalid_argument&) {
            ++figures.messages;
        }
        figures.save_seconds = static_cast<double>(timer.elapsed()) / 1000.0;
        _exit(write(ends[1], &figures, sizeof figures) == sizeof figures ? 0 : 1);
    }
    close(ends[1]);
    Figures figures;
    const bool came = read(ends[0], &figures, sizeof figures) == sizeof figures;
    close(ends[0]);
    int status = 0;
    rusage usage = {};
    if (wait4(child, &status, 0, &usage) != child || status != 0 || !came)
        return std::nullopt;
    figures.processor_seconds = Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
    figures.peak_megabytes = static_cast<double>(usage.ru_maxrss) * 1024 / kMegabyte;
    return figures;
}

}  // namespace

class HostileFilesTest : public QObject {
    Q_OBJECT

    VirtualScreen m_screen;
    QTemporaryDir m_folder;
    QString m_file = m_folder.filePath(u"exchange.txt"_s);
    QList<HostileFile> m_files;
    Figures m_core_base;
    Figures m_program_base;

    std::optional<Figures> RunProgram() {
        const QString usage = m_folder.filePath(u"usage"_s);
        HostRun host(m_screen);
        QElapsedTimer timer;
        timer.start();
        host.Program().start(u"time"_s, {u"--quiet"_s, u"--format=%M %U %S"_s,
                                         u"--output="_s + usage, HostRun::ProgramPath(), m_file});
        const std::optional<int> opening = host.PassMessagesUntilDialog();
        Figures figures;
        figures.open_seconds = static_cast<double>(timer.restart()) / 1000.0;
        if (!opening || !host.Click(kOkButton))
            return std::nullopt;
        const std::optional<int> closing = host.PassMessagesUntilEnd();
        if (!closing)
            return std::nullopt;
        figures.messages = *opening + *closing;
        figures.save_seconds = static_cast<double>(timer.elapsed()) / 1000.0;
        const QList<QByteArray> used = ReadAll(usage).trimmed().split(' ');
        figures.peak_megabytes = used.value(0).toDouble() * 1024 / kMegabyte;
        figures.processor_seconds = used.value(1).toDouble() + used.value(2).toDouble();
        return figures;
    }

    // What this file costs beyond a small one.
    void Judge(const char* by, const Figures& all, const Figures& base) {
        const double size = static_cast<double>(m_size) / kMegabyte;
        const double seconds = all.processor_seconds - base.processor_seconds;
        const double memory = all.peak_megabytes - base.peak_megabytes;
        qInfo(
            "%s: %.1f MB, opened in %.2f s, saved in %.2f s, %.2f s of the processor, "
            "%.0f MB of memory (%.1f times), %d messages",
            by, size, all.open_seconds, all.save_seconds, seconds, memory, memory / size,
            all.messages);
        if (kSanitized)
            return;
        if (kOptimised)
            QVERIFY2(seconds < kSecondsPerMegabyte * size + kSlackSeconds, "too slow");
        if (size > kSmall)
            QVERIFY2(memory < kMostOfSize * size, "too much memory");
        AddTableRow("hostile",
                    {QLatin1StringView(QTest::currentDataTag()), QLatin1StringView(by),
                     QString::number(size, 'f', 1), QString::number(all.open_seconds, 'f', 2),
                     QString::number(all.save_seconds, 'f', 2), QString::number(seconds, 'f', 2),
                     QString::number(memory, 'f', 0),
                     size > kSmall ? QString::number(memory / size, 'f', 1) : u"-"_s,
                     QString::number(all.messages)});
    }

private slots:
    void initTestCase() {
        QVERIFY(m_folder.isValid());
        const QString problem = m_screen.Start();
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        m_files = HostileFiles(Megabytes());
        QVERIFY(m_files.first().content.WriteTo(m_file));
        const std::optional<Figures> core = RunCore(m_file);
        const std::optional<Figures> program = RunProgram();
        QVERIFY(core && program);
        m_core_base = *core;
        m_program_base = *program;
    }

    void Survives_data() {
        QTest::addColumn<const HostileFile*>("hostile");
        for (const HostileFile& hostile : std::as_const(m_files))
            QTest::newRow(hostile.name) << &hostile;
    }
    void Survives() {
        QFETCH(const HostileFile*, hostile);
        Content expected = hostile->saved.value_or(hostile->content);
        if (!hostile->saved)
            expected.tail += '\n';
        int messages[] = {0, 0};
        for (const bool by_program : {false, true}) {
            const char* const by = by_program ? "program" : "core";
            QVERIFY(hostile->content.WriteTo(m_file));
            m_size = QFileInfo(m_file).size();
            const std::optional<Figures> figures = by_program ? RunProgram() : RunCore(m_file);
            QVERIFY2(figures, by);
            QVERIFY2(figures->messages <= kMostMessages, by);
            QVERIFY2(expected.IsIn(m_file), by);
            messages[by_program ? 1 : 0] = figures->messages;
            Judge(by, *figures, by_program ? m_program_base : m_core_base);
            if (QTest::currentTestFailed())
                return;
        }
        QCOMPARE(messages[1], messages[0]);
    }

private:
    qint64 m_size = 0;
};

QTEST_GUILESS_MAIN(HostileFilesTest)
#include "HostileFilesTest.moc"
