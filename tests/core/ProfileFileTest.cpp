#include "MessageScript.h"
#include "TestFiles.h"
#include "VectorFile.h"
#include "profiles/ProfileFile.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <array>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace Qt::StringLiterals;

namespace {

// A vector's path with the separators of this platform.
QString PathFrom(const QJsonValue& value) {
    return value.toString().replace(u'\\', u'/');
}

const QByteArray kWeeklyHead = "JOURS = L M M J V S D\nCONSOMMATION = ";
const QByteArray kWeekly = kWeeklyHead + "1 2 3 4 5 6 7\n";
const QByteArray kSixNames = R"("a" "b" "c" "d" "e" "f" )";

}  // namespace

class ProfileFileTest : public QObject {
    Q_OBJECT

private slots:
    void read_data() { AddVectorRows("dat_read"); }
    void read() {
        QFETCH(QJsonObject, vector);
        const QJsonObject input = vector[u"input"].toObject();
        const QJsonObject expected = vector[u"expected"].toObject();
        const ProfileKind kind = VectorKind(input[u"kind"]);
        const QTemporaryDir folder;
        const QString path = folder.filePath(QFileInfo(PathFrom(input[u"path"])).fileName());
        if (!input[u"file"].isNull()) {
            const QByteArray bytes = VectorBytes(input[u"file"]);
            QVERIFY(WriteBytes(path, bytes));
            QCOMPARE(HeaderIsValid(kind, bytes), expected[u"header_ok"].toBool());
        }

        MessageScript script;
        for (QString message : VectorStrings(expected[u"messages"]))
            script.Expect(message.replace(input[u"path"].toString(), path));
        const ProfileReading reading = ReadProfile(kind, path);
        const bool refused = !expected[u"messages"].toArray().isEmpty();
        const ProfileFileStatus refusal = input[u"file"].isNull() ? ProfileFileStatus::CannotOpen
                                          : expected[u"header_ok"].toBool()
                                              ? ProfileFileStatus::WrongLine
                                              : ProfileFileStatus::WrongHeader;
        QCOMPARE(reading.status, refused ? refusal : ProfileFileStatus::Read);
        QCOMPARE(reading.content.labels, VectorStrings(expected[u"times"]));
        QCOMPARE(reading.content.values, VectorStrings(expected[u"values"]));
        QCOMPARE(reading.content.names, VectorStrings(expected[u"names"]));
    }

    void parse_data() {
        using enum ProfileFileStatus;
        QTest::addColumn<ProfileKind>("kind");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<ProfileFileStatus>("status");
        QTest::addColumn<QString>("values");
        QTest::addColumn<QString>("names");
        const auto add = [](const char* name, const QByteArray& bytes, ProfileFileStatus status,
                            const char* values = "", const char* names = "") {
            const bool function = bytes.startsWith("AZIMUT");
            QTest::newRow(name) << (function ? ProfileKind::Function : ProfileKind::Weekly) << bytes
                                << status << values << names;
        };
        const char* const values = "1|2|3|4|5|6|7";
        add("CR LF, blanks, no last line end",
            "\t JOURS\r\nCONSOMMATION ?\t= 1 2 3 4 5 6 7 \t\r\nP=" + kSixNames + "\"g\" \r", Read,
            values, "a|b|c|d|e|f|g");
        add("a name with = and blanks, further lines",
            kWeekly + "PROFIL = " + kSixNames + "\" g = h \"\n1 2\n", Read, values,
            "a|b|c|d|e|f| g = h ");
        add("beyond an int", kWeeklyHead + "3e9 2 3 4 5 6 -7.9\nP =\n", Read,
            "3000000000|2|3|4|5|6|-7");
        add("no-break space before a digit", kWeeklyHead + "\xA0" + "1 2 3 4 5 6 7\nP =\n", Read,
            values);
        add("no points", "AZIMUT =\nHAUTEUR =\n", Read);
        add("empty first line", "\n" + kWeekly + "PROFIL =\n", WrongHeader);
        add("a word that only begins as the keyword",
            "JOURS = 1\nCONSOMMATIONS = 1 2 3 4 5 6 7\nPROFIL =\n", WrongHeader);
        const std::pair<const char*, QByteArray> wrong_lines[] = {
            {"values without =", "JOURS\nCONSOMMATION 1 2 3 4 5 6 7\nPROFIL =\n"},
            {"= on the next line only", "JOURS =\nCONSOMMATION\n= 1 2 3 4 5 6 7\n"},
            {"names without =", kWeekly + "PROFIL " + kSixNames + "\"g\"\n"},
            {"last name not closed", kWeekly + "PROFIL = " + kSixNames + "\"g\n"},
            {"names go on on the next line", kWeekly + "PROFIL = " + kSixNames + "\n\"g\"\n"},
            {"a word behind the names", kWeekly + "PROFIL = " + kSixNames + "\"g\" h\n"},
            {"NUL", kWeeklyHead + QByteArray("1 2 3 4 5 6\0007\n", 14) + "P =\n"},
            {"not a number", kWeeklyHead + "1 2 3 nan 5 6 7\nP =\n"},
            {"beyond a float", kWeeklyHead + "1 2 3 1e39 5 6 7\nP =\n"},
            {"hexadecimal", kWeeklyHead + "1 2 3 0x10 5 6 7\nP =\n"},
            {"values only", "AZIMUT =\nHAUTEUR = 1\n"},
            {"a time that is no number", "AZIMUT = 1 x\nHAUTEUR = 1 2\n"},
            {"times without =", "AZIMUT 1 2\nHAUTEUR = 1 2\n"},
        };
        for (const auto& [name, bytes] : wrong_lines)
            add(name, bytes, WrongLine);
    }
    void parse() {
        QFETCH(ProfileKind, kind);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, values);
        QFETCH(QString, names);
        const ProfileReading reading = ParseProfile(kind, bytes);
        QTEST(reading.status, "status");
        QCOMPARE(reading.content.values.join(u'|'), values);
        QCOMPARE(reading.content.names.join(u'|'), names);
        const bool crlf = bytes.left(bytes.indexOf('\n')).endsWith('\r');
        QCOMPARE(reading.line_end, reading.status == ProfileFileStatus::Read && crlf ? "\r\n" : "");
    }

    void hostilePaths() {
        using enum ProfileFileStatus;
        const QTemporaryDir folder;
        const QString huge = folder.filePath(u"huge.dat"_s);
        QVERIFY(WriteBytes(huge, kWeekly + "PROFIL =\n"));
        QVERIFY(QFile::resize(huge, 8LL * 1024 * 1024 * 1024));
        QStringList paths = {huge, folder.path(), folder.filePath(u"missing.dat"_s), QString()};
#ifdef Q_OS_UNIX
        const QString pipe = folder.filePath(u"pipe.dat"_s);
        QCOMPARE(mkfifo(qPrintable(pipe), 0600), 0);
        paths += {u"/dev/zero"_s, pipe};
#endif
        for (const QString& path : paths) {
            MessageScript script;
            script.Expect(
                u"Le fichier \""_s + path +
                (path == huge ? u"\" n'est pas valable ici !"_s : u"\"n'a pas pu être ouvert!"_s));
            QCOMPARE(ReadProfile(ProfileKind::Weekly, path).status,
                     path == huge ? WrongHeader : CannotOpen);
        }
    }

    void write_data() {
        AddVectorRows("dat_write", "rows");
    }
    void write() {
        QFETCH(QJsonObject, vector);
        const QJsonObject input = vector[u"input"].toObject();
        ProfileContent content;
        const QJsonArray rows = input[u"rows"].toArray();
        for (const QJsonValue& row : rows) {
            content.labels += row[0].toString();
            content.values += row[1].toString();
            content.names += row[2].toString();
        }
        QByteArray expected = VectorBytes(vector[u"expected"][u"file"]);
        QCOMPARE(WriteProfile(VectorKind(input[u"kind"]), content, "\n"), expected);
        QCOMPARE(WriteProfile(VectorKind(input[u"kind"]), content, "\r\n"),
                 expected.replace("\n", "\r\n"));
    }

    void names_data() {
        AddVectorRows("dat_write", "saves");
    }
    void names() {
        QFETCH(QJsonObject, vector);
        for (const auto& [save, name] :
             VectorPairs(vector[u"input"][u"saves"], vector[u"expected"][u"names"]))
            QCOMPARE(NameAfterSave(VectorKind(save[0]), PathFrom(save[1]), save[2].toString(),
                                   save[3].toBool()),
                     name.toString());
        QCOMPARE(NameAfterSave(ProfileKind::Daily, u"/d/.dat"_s, u"old"_s, false), u"old"_s);
        QCOMPARE(NameAfterSave(ProfileKind::Weekly, u"/d.e/a.b"_s, u"old"_s, false), u"a"_s);
    }

    void extensions_data() {
        AddVectorRows("dat_write", "chosen");
    }
    void extensions() {
        QFETCH(QJsonObject, vector);
        for (const auto& [chosen, written] :
             VectorPairs(vector[u"input"][u"chosen"], vector[u"expected"][u"written"]))
            QCOMPARE(WithExtension(PathFrom(chosen)), PathFrom(written));
    }

    // What the editor wrote comes back to the letter, whatever the names hold.
    void writtenFilesAreRead() {
        const QString letters = u"abZ0 =!'\\/.é°€\t\x0081"_s;
        QRandomGenerator random(1);
        for (int round = 0; round < 600; ++round) {
            const ProfileKind kind = std::array{ProfileKind::Monthly, ProfileKind::Weekly,
                                                ProfileKind::Daily}[static_cast<size_t>(round % 3)];
            const KindDescriptor& facts = Describe(kind);
            ProfileContent content = {.labels = RowLabelTexts(kind), .values = {}, .names = {}};
            for (int row = 0; row < facts.rows; ++row) {
                content.values += QString::number(random.bounded(5000.0), 'f', facts.decimals);
                QString name;
                for (int length = random.bounded(6); length > 0; --length)
                    name += letters[random.bounded(letters.size())];
                content.names += name;
            }
            const ProfileReading reading =
                ParseProfile(kind, WriteProfile(kind, content, round % 2 == 0 ? "\n" : "\r\n"));
            QCOMPARE(reading.status, ProfileFileStatus::Read);
            QCOMPARE(reading.content.values, content.values);
            QCOMPARE(reading.content.names, facts.hasNames() ? content.names : QStringList());
        }
    }
};

QTEST_APPLESS_MAIN(ProfileFileTest)
#include "ProfileFileTest.moc"
