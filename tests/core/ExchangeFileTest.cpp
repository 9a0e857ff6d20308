// SPDX-License-Identifier: GPL-3.0-or-later
// The exchange file from bytes to points and back.

#include "MessageScript.h"
#include "SystemSkips.h"
#include "TestFiles.h"
#include "TestRows.h"
#include "VectorFile.h"
#include "app/CPlugExchangeFile.h"
#include "app/CPlugParameters.h"
#include "app/CommandLine.h"
#include "base/Cp1252.h"
#include "base/FileReplace.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <utility>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#else
#include <QScopeGuard>
#include <QSemaphore>

#include <thread>

#include <windows.h>
#endif

using namespace Qt::StringLiterals;
using namespace std::string_literals;

namespace {

const QString kChanged = u"The exchange file was changed by another program.\nReplace it ?"_s;

// The file of each test, alone in a folder, which is the working folder.
const QString kPath = u"run.txt"_s;

struct ScratchFolder {
    ScratchFolder() { QDir::setCurrent(folder.path()); }
    ~ScratchFolder() { QDir::setCurrent(former); }

    const QString former = QDir::currentPath();
    const QTemporaryDir folder;
};

QList<CPlugPoint> PointsOf(const QJsonValue& pairs) {
    QList<CPlugPoint> points;
    const QJsonArray array = pairs.toArray();
    for (const QJsonValue& pair : array)
        points.append({FromCp1252(VectorBytes(pair[0])), FromCp1252(VectorBytes(pair[1]))});
    return points;
}

// Whether the file is written with CR LF.
bool EndsInCrLf(const QByteArray& content) {
    const qsizetype end = content.indexOf('\n');
    return (end > 0 && content[end - 1] == '\r') || kPlatformLineEnd == "\r\n";
}

// Times and values, with a time that has no value.
void SetPoints(CPlugParameters& parameters, const QJsonValue& pairs) {
    QStringList times;
    QStringList values;
    for (const CPlugPoint& point : PointsOf(pairs)) {
        times.append(point.time);
        values.append(point.value);
    }
    parameters.setPoints(times + QStringList{u"x"_s}, values);
}

const QByteArray kLong = "! x\n!" + QByteArray(3'000'000, 'y');  // of several pieces

#ifdef _WIN32
// How another program shares the file that it keeps open, for how long, and whether OK saves then.
struct Kept {
    DWORD share = 0;
    int milliseconds = 10'000;
    bool saved = true;
};
#endif

// What another program does to a file with that content.
struct Change {
    void (*make)();
    bool asks = true;
    bool refused = false;  // nothing can be written then
};

}  // namespace

class ExchangeFileTest : public QObject {
    Q_OBJECT

private slots:
    void init() { SkipOnThisSystem(); }

    void Lines_data() { AddVectorRows("exchange_lines"); }
    void Lines() {
        QFETCH(QJsonObject, vector);
        for (const auto& [bytes, expected] :
             VectorPairs(vector[u"input"][u"lines"], vector[u"expected"])) {
            const CPlugInstruction line(VectorBytes(bytes));
            QList<QByteArray> values;
            const QJsonArray array = expected[u"values"].toArray();
            for (const QJsonValue& value : array)
                values.append(VectorBytes(value));
            QCOMPARE(line.values(), values);
            QCOMPARE(line.comment(), VectorBytes(expected[u"comment"]));
            QCOMPARE(line.getLine(), VectorBytes(expected[u"rebuilt"]));
            const QJsonArray integers = expected[u"integers"].toArray();
            for (int i = 0; i < integers.size(); ++i)
                QCOMPARE(line.getIntValue(i), integers[i].toInt());
        }
    }

    // Files as read, and written back without a change.
    void Files_data() { AddVectorRows("exchange_files"); }
    void Files() { ReadAndSave(); }

    // Files with other points at OK.
    void Saves_data() { AddVectorRows("exchange_saves"); }
    void Saves() { ReadAndSave(); }

    void ChangedLines() {
        CPlugInstruction line("7");
        line.setCStringValue(3, u"x"_s);
        // A text with a blank stays one value although it will be read as two.
        line.setCStringValue(1, u"a b"_s);
        line.setCStringValue(0, u"\u20AC\u65E5"_s);
        QCOMPARE(line.getCStringValue(1), u"a b"_s);
        QCOMPARE(line.getLine(), "\x80? a b 0 x "_ba);
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, line.getIntValue(-1));
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, line.setIntValue(-1, 0));
    }

    void PathsBehindSwitches() {
        QCOMPARE(FirstFile({u"-a"_s, u"//computer/share/a.txt"_s, u"b"_s}),
                 u"//computer/share/a.txt"_s);
        QCOMPARE(FirstFile({u"-a"_s}), QString());
    }

    void NothingRead() {
        const ScratchFolder scratch;
        MessageScript script;
        script.Expect(u"cplug: unable to open exchange file ! (run.txt)"_s);
        CPlugExchangeFile file(kPath);
        file.readFile();
        QVERIFY(WriteAll(kPath, "not read\n") && file.writeFile());
        QCOMPARE(ReadAll(kPath), "not read\n"_ba);
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, file.getInstruction(-1));
        script.Expect(u"CPlugInstruction::setCStringValue: value not found"_s);
        QVERIFY(file.getInstruction(0) == nullptr);
    }

    // The name that is given and the file that it means.
    void PathsMeanWhatTheSystemMeans_data() {
        AddRows<std::pair<QByteArray, std::string>>(
            {{"link", {"link.txt", "far/link.txt"}},
             {"link to a link and up", {"far/up.txt", "far/run.txt"}},
             {"up from a link", {"deep/../run.txt", "far/run.txt"}},
             {"resource prefix", {":run.txt", ":run.txt"}},
             {"resource path", {":/run.txt", ":/run.txt"}},
             {"not UTF-8", {"\xFC-\xC3\xA9.txt", "\xFC-\xC3\xA9.txt"}},
             {"mark of UTF-8 first", {"\xEF\xBB\xBF.txt", "\xEF\xBB\xBF.txt"}}});
    }
    // Read and written through a link or under an odd name, also from another working folder.
    void PathsMeanWhatTheSystemMeans() {
        using Names = std::pair<QByteArray, std::string>;
        QFETCH(const Names, row);
        const auto& [given, meant] = row;
        namespace fs = std::filesystem;
        const ScratchFolder scratch;
        fs::create_directories("far/deep");
        fs::create_directory(":");
        fs::create_directory_symlink("far/deep", "deep");
        fs::create_symlink("far/link.txt", "link.txt");
        fs::create_symlink("../deep/../run.txt", "far/up.txt");
        QVERIFY(WriteAll(kPath, "no\n"));
        std::ofstream(meant, std::ios::binary) << "yes\n";
        fs::permissions(meant, fs::perms(0640));

        const auto entries = [] {
            return std::distance(fs::recursive_directory_iterator("."), {});
        };
        const auto before = entries();
        CPlugExchangeFile file(PathFromBytes(given));
        file.readFile();
        QCOMPARE(file.instructionCount(), 2);
        QCOMPARE(file.line(0).toByteArray(), "yes"_ba);
        fs::current_path("far");
        QVERIFY(file.writeFile());
        fs::current_path("..");
        std::ifstream written(meant, std::ios::binary);
        QCOMPARE(std::string(std::istreambuf_iterator<char>(written), {}), "yes \n\n"s);
        QCOMPARE(fs::status(meant).permissions(), fs::perms(0640));
        QVERIFY(fs::is_symlink("link.txt") && fs::is_symlink("far/up.txt"));
        QCOMPARE(ReadAll(kPath), "no\n"_ba);
        QCOMPARE(entries(), before);
    }

    void ChangedByAnotherProgram_data() {
        AddRows<Change>(
            {{"same bytes", {[] { WriteAll(kPath, kLong); }, false}},
             {"last byte", {[] { WriteAll(kPath, kLong.chopped(1) + '!'); }}},
             {"shorter", {[] { WriteAll(kPath, kLong.first(2)); }}},
             {"gone", {[] { QFile::remove(kPath); }}},
             {"link to other bytes", {[] {
                  WriteAll(u"other.txt"_s, "other");
                  QFile::remove(kPath);
                  QFile::link(u"other.txt"_s, kPath);
              }}},
#ifdef Q_OS_UNIX
             // It has no end that could be waited for.
             {"pipe",
              { [] { QFile::remove(kPath) && mkfifo("run.txt", 0666) == 0; },
                true,
                true }},
#endif
             {"folder", {[] { QFile::remove(kPath) && QDir().mkdir(kPath); }, true, true}}});
    }
    // Before OK: the user is asked once, and again after a No and after a write that was refused.
    void ChangedByAnotherProgram() {
        QFETCH(const Change, row);
        const ScratchFolder scratch;
        QVERIFY(WriteAll(kPath, kLong));
        CPlugExchangeFile file(kPath);
        file.readFile();
        row.make();
        const QByteArray others = row.refused ? QByteArray() : ReadAll(kPath);
        MessageScript script;
        if (row.asks) {
            script.ExpectQuestion(kChanged, u"Exchange file"_s, false);
            QVERIFY(!file.writeFile());
            QVERIFY(row.refused || ReadAll(kPath) == others);
            script.ExpectQuestion(kChanged, u"Exchange file"_s, true);
        }
        if (row.refused) {
            script.Expect(u"cplug: unable to open exchange file for writing ! (run.txt)"_s);
            QVERIFY(!file.writeFile());
            // What was read is back: no question.
            QVERIFY((QFile::remove(kPath) || QDir().rmdir(kPath)) && WriteAll(kPath, kLong));
        }
        // What was written last is no change of another program.
        for (int round = 0; round < 2; ++round) {
            QVERIFY(file.writeFile());
            QVERIFY(WithPlainEnds(ReadAll(kPath)) == kLong + "\n");
        }
        QVERIFY2(script.Done(), qPrintable(script.Report()));
    }

#ifdef _WIN32
    void KeptOpenByAnotherProgram_data() {
        constexpr DWORD kReading = FILE_SHARE_READ;
        AddRows<Kept>({{"shared",
                        { kReading | FILE_SHARE_WRITE }},
                       {"a scanner",
                        { kReading,
                          200 }},
                       {"a scanner that lets nobody read",
                        { 0,
                          200 }},
                       {"read by all",
                        { kReading,
                          10'000,
                          false }},
                       { "read by nobody",
                         { 0,
                           10'000,
                           false } }});
    }
    // Written in place, at once or after a moment, or refused with one message. The attributes
    // stay.
    void KeptOpenByAnotherProgram() {
        QFETCH(const Kept, row);
        const ScratchFolder scratch;
        QVERIFY(WriteAll(kPath, "x\r\n"));
        QVERIFY(SetFileAttributesW(L"run.txt", FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM));
        const DWORD attributes = GetFileAttributesW(L"run.txt");
        CPlugExchangeFile file(kPath);
        file.readFile();
        MessageScript script;
        {
            const HANDLE kept = CreateFileW(L"run.txt", GENERIC_READ, row.share, nullptr,
                                            OPEN_EXISTING, 0, nullptr);
            QVERIFY(kept != INVALID_HANDLE_VALUE);
            QSemaphore ends;
            std::thread other([&] {
                ends.tryAcquire(1, row.milliseconds);
                CloseHandle(kept);
            });
            const auto ended = qScopeGuard([&] {
                ends.release();
                other.join();
            });
            if (!row.saved)
                script.Expect(u"cplug: unable to open exchange file for writing ! (run.txt)"_s);
            QCOMPARE(file.writeFile(), row.saved);
        }
        QCOMPARE(ReadAll(kPath), row.saved ? "x \r\n\r\n" : "x\r\n");
        QVERIFY(file.writeFile());
        QCOMPARE(ReadAll(kPath), "x \r\n\r\n");
        QCOMPARE(GetFileAttributesW(L"run.txt"), attributes);
        QVERIFY2(script.Done(), qPrintable(script.Report()));
    }
#endif

private:
    // A case of "exchange_files" or of "exchange_saves". A file with LF alone is tried with CR LF
    // too: nothing but the line ends may differ.
    static void ReadAndSave() {
        QFETCH(const QJsonObject, vector);
        const QByteArray content = VectorBytes(vector[u"input"][u"file"]);
        Check(vector, content);
        if (content.contains('\n') && !content.contains('\r'))
            Check(vector, QByteArray(content).replace("\n", "\r\n"));
    }

    static void Check(const QJsonObject& vector, const QByteArray& content) {
        const QJsonObject input = vector[u"input"].toObject();
        const QJsonObject expected = vector[u"expected"].toObject();
        const ScratchFolder scratch;
        // The vectors name their file by a path of the host's.
        const QString path = input[u"path"].toString().isEmpty() ? QString() : kPath;
        const bool is_there = !input[u"file"].isNull();
        QVERIFY(!is_there || WriteAll(path, content));
        MessageScript script;
        for (QString text : VectorStrings(expected[u"messages"]))
            script.Expect(text.replace(input[u"path"].toString(), path));
        CPlugExchangeFile file(path);
        CPlugParameters parameters;
        parameters.setParameters(&file);
        QCOMPARE(file.isLoaded(), is_there);

        QJsonValue written = expected[u"file"];
        if (input.contains(u"points")) {
            SetPoints(parameters, input[u"points"]);
            if (expected[u"error"].toString() == u"invalid-argument")
                QVERIFY_THROWS_EXCEPTION(std::invalid_argument, parameters.writeFile());
            else
                parameters.writeFile();
        } else {
            written = expected[u"written_back"];
            QCOMPARE(file.instructionCount(), expected[u"instructions"].toInteger());
            const QList<CPlugPoint> points = PointsOf(expected[u"points"]);
            QCOMPARE(parameters.getPointCount(), points.size());
            for (qsizetype i = 0; i < points.size(); ++i)
                QCOMPARE(parameters.getPoint(i), points[i]);
            QVERIFY_THROWS_EXCEPTION(std::invalid_argument, parameters.getPoint(points.size()));
            if (!expected[u"point_line_count"].isNull())
                QCOMPARE(parameters.pointLineCount(), expected[u"point_line_count"].toInt());
            if (!written.isNull())
                file.writeFile();
        }
        QVERIFY2(script.Done(), qPrintable(script.Report()));
        const auto with_ends = [&](const QJsonValue& text) {
            const QByteArray bytes = VectorBytes(text);
            return EndsInCrLf(content) ? QByteArray(bytes).replace("\n", "\r\n") : bytes;
        };
        QCOMPARE(ReadAll(path), written.isNull() ? content : with_ends(written));
        QCOMPARE(QDir().isEmpty(), !is_there);

        // What was written stays as it is, and can still be changed and written again.
        if (!input.contains(u"again"))
            return;
        parameters.writeFile();
        QCOMPARE(ReadAll(path), with_ends(written));
        file.getInstruction(3)->setIntValue(1, 5);
        QVERIFY(file.writeFile() && ReadAll(path).contains("\n1 5 x "));
        SetPoints(parameters, input[u"again"]);
        parameters.writeFile();
        QCOMPARE(ReadAll(path), with_ends(expected[u"again"]));
    }
};

QTEST_GUILESS_MAIN(ExchangeFileTest)
#include "ExchangeFileTest.moc"
