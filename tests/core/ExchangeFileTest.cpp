// SPDX-License-Identifier: GPL-3.0-or-later
// The exchange file from bytes to points and back.

#include "MessageScript.h"
#include "TestFiles.h"
#include "VectorFile.h"
#include "app/CPlugExchangeFile.h"
#include "app/CPlugParameters.h"
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
#include <limits>
#include <stdexcept>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace Qt::StringLiterals;
using namespace std::string_literals;

// What another program does to the file, whose content is given.
using Change = void (*)(const QByteArray& content);
Q_DECLARE_METATYPE(Change)

namespace {

const QString kChanged = u"The exchange file was changed by another program.\nReplace it ?"_s;

CPlugPoint PointOf(const QJsonValue& pair) {
    return {FromCp1252(VectorBytes(pair[0])), FromCp1252(VectorBytes(pair[1]))};
}

QByteArray WithCrLf(QByteArray bytes) {
    return bytes.replace("\r\n", "\n").replace("\n", "\r\n");
}

// A file with one name in a folder of its own. Messages name it by `path`, whatever it is called.
class ScratchFile {
public:
    ScratchFile() : m_former(QDir::currentPath()) { QDir::setCurrent(m_folder.path()); }
    ~ScratchFile() { QDir::setCurrent(m_former); }
    QString Path() const { return QStringLiteral("run.txt"); }
    QStringList Entries() const { return QDir(m_folder.path()).entryList(QDir::Files); }

private:
    QString m_former;
    QTemporaryDir m_folder;
};

// The vectors name their file by a path of the host's; ours stands in the messages instead.
QString Localized(QString text, const QJsonObject& input, const QString& path) {
    const QString hosts = input[u"path"].toString();
    return hosts.isEmpty() ? text : text.replace(hosts, path);
}

void ExpectMessages(MessageScript& script, const QJsonObject& vector, const QString& path) {
    for (const QString& text : VectorStrings(vector[u"expected"][u"messages"]))
        script.Expect(Localized(text, vector[u"input"].toObject(), path));
}

}  // namespace

class ExchangeFileTest : public QObject {
    Q_OBJECT

private slots:
    void Lines_data() { AddVectorRows("exchange_lines"); }
    void Lines();
    void Files_data() { AddVectorRows("exchange_files"); }
    void Files();
    void Saves_data() { AddVectorRows("exchange_saves"); }
    void Saves();
    void IntegersSaturate();
    void ValueAccess();
    void SavedTwice();
    void RefusedWriteKeepsTheFile();
    void PathsMeanWhatTheSystemMeans_data();
    void PathsMeanWhatTheSystemMeans();
    void ChangedByAnotherProgram_data();
    void ChangedByAnotherProgram();
    void NothingToWrite();
};

void ExchangeFileTest::Lines() {
    QFETCH(QJsonObject, vector);
    const QJsonArray lines = vector[u"input"][u"lines"].toArray();
    const QJsonArray expected = vector[u"expected"].toArray();
    QCOMPARE(lines.size(), expected.size());
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const CPlugInstruction line(VectorBytes(lines[i]));
        QList<QByteArray> values;
        for (const QJsonValue& value : expected[i][u"values"].toArray())
            values.append(VectorBytes(value));
        QCOMPARE(line.values(), values);
        QCOMPARE(line.comment(), VectorBytes(expected[i][u"comment"]));
        QCOMPARE(line.getLine(), VectorBytes(expected[i][u"rebuilt"]));
    }
}

void ExchangeFileTest::Files() {
    QFETCH(QJsonObject, vector);
    const QJsonObject input = vector[u"input"].toObject();
    const QJsonObject expected = vector[u"expected"].toObject();
    const ScratchFile scratch;
    const QString path = input[u"path"].toString().isEmpty() ? QString() : scratch.Path();
    QByteArray content;
    if (!input[u"file"].isNull()) {
        content = VectorBytes(input[u"file"]);
        QVERIFY(WriteAll(path, content));
    }
    MessageScript script;
    ExpectMessages(script, vector, path);
    CPlugExchangeFile file(path);
    CPlugParameters parameters;
    parameters.setParameters(&file);
    QVERIFY2(script.Done(), qPrintable(script.Report()));
    QCOMPARE(file.instructionCount(), expected[u"instructions"].toInteger());
    QCOMPARE(file.isLoaded(), !input[u"file"].isNull());
    const QJsonArray points = expected[u"points"].toArray();
    QCOMPARE(parameters.getPointCount(), points.size());
    for (qsizetype i = 0; i < points.size(); ++i)
        QCOMPARE(parameters.getPoint(i), PointOf(points[i]));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, parameters.getPoint(points.size()));
    if (!expected[u"point_line_count"].isNull())
        QCOMPARE(parameters.pointLineCount(), expected[u"point_line_count"].toInt());
    if (expected[u"written_back"].isNull())
        return;
    file.writeFile();
    QVERIFY2(script.Done(), qPrintable(script.Report()));
    const qsizetype first_end = content.indexOf('\n');
    const bool cr_lf = first_end > 0 && content[first_end - 1] == '\r';
    const QByteArray written = VectorBytes(expected[u"written_back"]);
    QCOMPARE(ReadAll(path), cr_lf ? WithCrLf(written) : written);
}

void ExchangeFileTest::Saves() {
    QFETCH(QJsonObject, vector);
    const QJsonObject input = vector[u"input"].toObject();
    const QJsonObject expected = vector[u"expected"].toObject();
    // Each file is saved with both line ends: nothing but the ends may differ.
    for (const bool cr_lf : {false, true}) {
        const ScratchFile scratch;
        QByteArray content;
        if (!input[u"file"].isNull()) {
            content = VectorBytes(input[u"file"]).replace("\r\n", "\n");
            content = cr_lf ? WithCrLf(content) : content;
            QVERIFY(WriteAll(scratch.Path(), content));
        }
        MessageScript script;
        ExpectMessages(script, vector, scratch.Path());
        CPlugExchangeFile file(scratch.Path());
        CPlugParameters parameters;
        parameters.setParameters(&file);
        parameters.clearPoints();
        for (const QJsonValue& point : input[u"points"].toArray())
            parameters.addPoint(PointOf(point));
        if (expected[u"error"].toString() == u"invalid-argument")
            QVERIFY_THROWS_EXCEPTION(std::invalid_argument, parameters.writeFile());
        else
            parameters.writeFile();
        QVERIFY2(script.Done(), qPrintable(script.Report()));
        if (!expected[u"file"].isNull()) {
            const QByteArray written = VectorBytes(expected[u"file"]);
            QCOMPARE(ReadAll(scratch.Path()), cr_lf ? WithCrLf(written) : written);
        } else if (!input[u"file"].isNull()) {
            QCOMPARE(ReadAll(scratch.Path()), content);
        } else {
            QVERIFY(scratch.Entries().isEmpty());
        }
    }
}

void ExchangeFileTest::IntegersSaturate() {
    const CPlugInstruction line(
        "99999999999999999999 -99999999999999999999 -2147483648 2147483647 +7x - \t8");
    QCOMPARE(line.getIntValue(0), std::numeric_limits<int>::max());
    QCOMPARE(line.getIntValue(1), std::numeric_limits<int>::min());
    QCOMPARE(line.getIntValue(2), std::numeric_limits<int>::min());
    QCOMPARE(line.getIntValue(3), std::numeric_limits<int>::max());
    QCOMPARE(line.getIntValue(4), 7);
    QCOMPARE(line.getIntValue(5), 0);
    QCOMPARE(line.getIntValue(6), 8);
}

void ExchangeFileTest::ValueAccess() {
    CPlugInstruction line("7");
    line.setCStringValue(3, QStringLiteral("x"));
    QCOMPARE(line.getLine(), QByteArray("7 0 0 x "));
    // A text with a blank stays one value although it will be read as two.
    line.setCStringValue(1, QStringLiteral("a b"));
    QCOMPARE(line.getCStringValue(1), QStringLiteral("a b"));
    line.setCStringValue(0, QString::fromUtf8("\u20AC\u65E5"));
    QCOMPARE(line.getLine(), QByteArray("\x80? a b 0 x "));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, line.getIntValue(-1));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, line.setIntValue(-1, 0));

    MessageScript script;
    CPlugExchangeFile file(QStringLiteral("nowhere.txt"));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, file.getInstruction(-1));
    script.Expect(QStringLiteral("CPlugInstruction::setCStringValue: value not found"));
    QVERIFY(file.getInstruction(0) == nullptr);
    QVERIFY2(script.Done(), qPrintable(script.Report()));
}

// What was written stays as it is, and can still be changed and written again.
void ExchangeFileTest::SavedTwice() {
    for (const QByteArray line_end : {"\n", "\r\n"}) {
        const ScratchFile scratch;
        // A comment may end with a CR of its own.
        const QByteArray cr(line_end == "\n" ? 2 : 1, '\r');
        const QByteArray head = "\n\n\n1  2 x!a!b\n\n\n\n\n\n\n1\n";
        const QByteArray written = "\n\n\n1 2 x !a\n\n\n\n\n\n\n1 \n";
        const auto with_ends = [&](QByteArray text) { return text.replace("\n", line_end); };
        QVERIFY(WriteAll(scratch.Path(),
                         with_ends(head + "1\n4\n0\n1\n2\n3\n! tail" + cr + "\n !t\r")));
        MessageScript script;
        CPlugExchangeFile file(scratch.Path());
        CPlugParameters parameters;
        parameters.setParameters(&file);
        // A longer list of times has no partners; an empty text and one with blanks stay as given.
        parameters.setPoints({u"7"_s, QString(), u"9"_s, u"x"_s}, {u"8"_s, u" 5 6"_s, u"!"_s});
        const QByteArray points =
            "7 \n8 \n ! Time at point|hr|0|+Inf\n 5 6 ! Value at point |any|-Inf|+Inf\n"
            "9 ! Time at point|hr|0|+Inf\n! ! Value at point |any|-Inf|+Inf\n";
        for (int round = 0; round < 2; ++round) {
            parameters.writeFile();
            QCOMPARE(ReadAll(scratch.Path()),
                     with_ends(written + "2 \n6 \n" + points + "! tail\r\n!t\r\n"));
        }
        file.getInstruction(3)->setIntValue(1, 5);
        parameters.setPoints({u"1"_s}, {u"2"_s});
        parameters.writeFile();
        QCOMPARE(ReadAll(scratch.Path()),
                 with_ends("\n\n\n1 5 x !a\n\n\n\n\n\n\n1 \n0 \n2 \n1 \n2 \n! tail\r\n!t\r\n"));
        QVERIFY2(script.Done(), qPrintable(script.Report()));
    }
}

void ExchangeFileTest::RefusedWriteKeepsTheFile() {
    const ScratchFile scratch;
    QVERIFY(WriteAll(scratch.Path(), "old ! content\n"));
    CPlugExchangeFile file(scratch.Path());
    file.readFile();
    MessageScript script;
    QVERIFY(QFile::rename(scratch.Path(), QStringLiteral("moved.txt")));
    const auto is_refused = [&] {
        script.ExpectQuestion(kChanged, u"Exchange file"_s, true);
        script.Expect(u"cplug: unable to open exchange file for writing ! (run.txt)"_s);
        return !file.writeFile() && script.Done();
    };
#ifdef Q_OS_UNIX
    // A pipe has no end that could be waited for.
    QCOMPARE(mkfifo("run.txt", 0666), 0);
    QVERIFY(is_refused() && QFile::remove(scratch.Path()));
#endif
    // A folder of the same name can be neither overwritten nor replaced.
    QVERIFY(QDir().mkdir(scratch.Path()));
    QVERIFY2(is_refused(), qPrintable(script.Report()));
    QCOMPARE(scratch.Entries(), QStringList{QStringLiteral("moved.txt")});
    // The same file back in its place is written without a question.
    QVERIFY(QDir().rmdir(scratch.Path()));
    QVERIFY(QFile::rename(QStringLiteral("moved.txt"), scratch.Path()));
    QVERIFY(file.writeFile());
    QCOMPARE(ReadAll(scratch.Path()), QByteArray("old ! content\n\n"));
}

void ExchangeFileTest::PathsMeanWhatTheSystemMeans_data() {
#ifndef Q_OS_UNIX
    QSKIP("these names and links are a matter of Unix");
#endif
    QTest::addColumn<QByteArray>("given");
    QTest::addColumn<std::string>("meant");
    QTest::newRow("link") << "link.txt"_ba
                          << "far/link.txt"s;
    QTest::newRow("link to a link and up") << "far/up.txt"_ba
                                           << "far/run.txt"s;
    QTest::newRow("up from a link") << "deep/../run.txt"_ba
                                    << "far/run.txt"s;
    QTest::newRow("resource prefix") << ":run.txt"_ba
                                     << ":run.txt"s;
    QTest::newRow("resource path") << ":/run.txt"_ba
                                   << ":/run.txt"s;
    QTest::newRow("not UTF-8") << "\xFC-\xC3\xA9.txt"_ba
                               << "\xFC-\xC3\xA9.txt"s;
    QTest::newRow("mark of UTF-8 first") << "\xEF\xBB\xBF.txt"_ba
                                         << "\xEF\xBB\xBF.txt"s;
}

// Read and written through a link or under an odd name, also from another working folder.
void ExchangeFileTest::PathsMeanWhatTheSystemMeans() {
    QFETCH(const QByteArray, given);
    QFETCH(const std::string, meant);
    namespace fs = std::filesystem;
    const ScratchFile scratch;
    fs::create_directories("far/deep");
    fs::create_directory(":");
    fs::create_directory_symlink("far/deep", "deep");
    fs::create_symlink("far/link.txt", "link.txt");
    fs::create_symlink("../deep/../run.txt", "far/up.txt");
    QVERIFY(WriteAll(u"run.txt"_s, "no\n"));
    std::ofstream(meant, std::ios::binary) << "yes\n";
    fs::permissions(meant, fs::perms(0640));

    const auto entries = [] { return std::distance(fs::recursive_directory_iterator("."), {}); };
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
    QCOMPARE(ReadAll(u"run.txt"_s), "no\n"_ba);
    QCOMPARE(entries(), before);
}

void ExchangeFileTest::ChangedByAnotherProgram_data() {
    QTest::addColumn<Change>("change");
    QTest::addColumn<bool>("asks");
    QTest::newRow("same bytes") << Change([](const QByteArray& content) {
        WriteAll(u"run.txt"_s, content);
    }) << false;
    QTest::newRow("last byte") << Change([](const QByteArray& content) {
        WriteAll(u"run.txt"_s, content.chopped(1) + '!');
    }) << true;
    QTest::newRow("shorter") << Change([](const QByteArray& content) {
        WriteAll(u"run.txt"_s, content.first(2));
    }) << true;
    QTest::newRow("gone") << Change([](const QByteArray&) { QFile::remove(u"run.txt"_s); }) << true;
    QTest::newRow("link to other bytes") << Change([](const QByteArray&) {
        WriteAll(u"other.txt"_s, "other");
        QFile::remove(u"run.txt"_s);
        QFile::link(u"other.txt"_s, u"run.txt"_s);
    }) << true;
}

// Before OK, on a content of several pieces: the user is asked once, and again after a No.
void ExchangeFileTest::ChangedByAnotherProgram() {
    QFETCH(const Change, change);
    QFETCH(const bool, asks);
    const ScratchFile scratch;
    const QByteArray content = "! x\n" + QByteArray(3'000'000, 'y');
    QVERIFY(WriteAll(scratch.Path(), content));
    CPlugExchangeFile file(scratch.Path());
    file.readFile();
    change(content);
    const QByteArray others = ReadAll(scratch.Path());
    MessageScript script;
    if (asks) {
        script.ExpectQuestion(kChanged, u"Exchange file"_s, false);
        QVERIFY(!file.writeFile());
        QCOMPARE(ReadAll(scratch.Path()), others);
        script.ExpectQuestion(kChanged, u"Exchange file"_s, true);
    }
    // What was written last is no change of another program.
    for (int round = 0; round < 2; ++round) {
        QVERIFY(file.writeFile());
        QVERIFY(ReadAll(scratch.Path()) == content + " \n");
    }
    QVERIFY2(script.Done(), qPrintable(script.Report()));
}

void ExchangeFileTest::NothingToWrite() {
    const ScratchFile scratch;
    MessageScript script;
    script.Expect(u"cplug: unable to open exchange file ! (run.txt)"_s);
    CPlugExchangeFile file(scratch.Path());
    file.readFile();
    QVERIFY(WriteAll(scratch.Path(), "not read\n"));
    QVERIFY(file.writeFile());
    QCOMPARE(ReadAll(scratch.Path()), "not read\n"_ba);
}

QTEST_GUILESS_MAIN(ExchangeFileTest)
#include "ExchangeFileTest.moc"
