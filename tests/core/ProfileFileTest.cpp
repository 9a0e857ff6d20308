#include "MessageScript.h"
#include "TestFiles.h"
#include "VectorFile.h"
#include "profiles/Coefficients.h"
#include "profiles/ProfileFile.h"
#include "profiles/ProfileFolders.h"

#include <QTemporaryDir>
#include <QTest>

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

const ProfileFolders kShipped(QStringLiteral(RESOURCES_DIR));

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
            QVERIFY(WriteAll(path, bytes));
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
        QVERIFY(WriteAll(huge, kWeekly + "PROFIL =\n"));
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

    void dailyProfiles() {
        const QTemporaryDir program;
        const ProfileFolders folders(program.path());
        QCOMPARE(folders.DailyProfileList(), QStringList());

        const QDir daily(program.filePath(u"Data/Profils/Journalier"_s));
        QVERIFY(daily.mkpath(u"a folder.dat"_s));
        for (const QString& name :
             {u"zone"_s, u"Bureau"_s, u"été 1"_s, u"a.b"_s, u"a"_s, u"."_s, u""_s, u"quo\"te"_s,
              u"two\nlines"_s, u"Ω"_s, u"AJOUTER"_s, u"VOIR"_s}) {
            QVERIFY(WriteAll(daily.filePath(name + u".dat"_s), {}));
        }
        for (const QString& name : {u"other.txt"_s, u"OTHER.DAT"_s})
            QVERIFY(WriteAll(daily.filePath(name), {}));
        const QStringList expected = {u"a"_s, u"a.b"_s, u"Bureau"_s, u"zone"_s, u"été 1"_s};
        QCOMPARE(folders.DailyProfileList(), expected);
        QVERIFY(QFile::exists(folders.DailyProfilePath(u"a.b"_s)));
    }

    void foldersStayWhenTheWorkingFolderChanges() {
        const QString before = QDir::currentPath();
        const QTemporaryDir here;
        QVERIFY(QDir(here.path()).mkdir(u"program"_s) && QDir::setCurrent(here.path()));
        const ProfileFolders folders(u"program"_s);
        const QString expected = QDir::currentPath() + u"/program/Data/Profils/Mensuel"_s;
        QVERIFY(QDir::setCurrent(before));
        QCOMPARE(QDir::fromNativeSeparators(folders.KindFolder(ProfileKind::Monthly)), expected);
    }

    void inKindFolder() {
        using enum ProfileKind;
        const std::tuple<ProfileKind, QString, bool> cases[] = {
            {Daily, u"/p/Data/Profils/Journalier/a.dat"_s, true},
            {Daily, u"/P/data/profils/JOURNALIER/a"_s, true},
            {Annual, u"/p/Data/Masques/../Profils/Annuel/a"_s, true},
            {Daily, u"/p/Data/Profils/Journalier/x/a.dat"_s, false},
            {Annual, u"/p/Data/Profils/Journalier/a.dat"_s, false},
            {Daily, u"/p/Data/Profils/Journalier2/a.dat"_s, false},
            {ProfileKind{7}, u"/p/Data/a.dat"_s, false}};
        for (const auto& [kind, file, inside] : cases)
            QCOMPARE(ProfileFolders(u"/p"_s).IsInKindFolder(kind, file), inside);
    }

    // The profiles that come with the program: each can be read, keeps the rules of its kind and
    // names only daily profiles that are there.
    void shipped_data() {
        QTest::addColumn<ProfileKind>("kind");
        QTest::addColumn<QString>("path");
        for (int number = -1; number <= 3; ++number) {
            const auto kind = static_cast<ProfileKind>(number);
            const QDir folder(kShipped.KindFolder(kind));
            const QStringList files = folder.entryList(QDir::Files);
            QVERIFY2(files.size() >= 2, qPrintable(folder.path()));
            for (const QString& file : files)
                QTest::addRow("%d %s", number, qPrintable(file)) << kind << folder.filePath(file);
        }
    }
    void shipped() {
        QFETCH(const ProfileKind, kind);
        QFETCH(const QString, path);
        const MessageScript script;
        const ProfileReading reading = ReadProfile(kind, path);
        QCOMPARE(reading.status, ProfileFileStatus::Read);
        const ProfileContent& content = reading.content;
        QVERIFY(content.values.size() >= 2);

        if (Describe(kind).coefficients) {
            int hundredths = 0;
            for (const QString& value : content.values)
                hundredths += QString(value).remove(u'.').toInt();
            QCOMPARE(hundredths, 100 * CoefficientCount(kind));
            QVERIFY(SumIsRight(kind, RoundedSum(kind, content.values)));
        }
        const QStringList daily = kShipped.DailyProfileList();
        for (const QString& name : content.names)
            QVERIFY2(daily.contains(name), qPrintable(name));

        // Masks are written in another form than they are read in.
        if (kind == ProfileKind::Function)
            return;
        const ProfileContent written = {RowLabelTexts(kind), content.values, content.names};
        QCOMPARE(ReadAll(path), WriteProfile(kind, written, "\n"));
    }
};

QTEST_GUILESS_MAIN(ProfileFileTest)
#include "ProfileFileTest.moc"
