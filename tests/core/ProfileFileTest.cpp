// SPDX-License-Identifier: GPL-3.0-or-later
#include "MessageScript.h"
#include "TestFiles.h"
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

const ProfileFolders kShipped(QStringLiteral(RESOURCES_DIR));

}  // namespace

class ProfileFileTest : public QObject {
    Q_OBJECT

private slots:
    void hostilePaths() {
        using enum ProfileFileStatus;
        const QTemporaryDir folder;
        const QString huge = folder.filePath(u"huge.dat"_s);
        QVERIFY(WriteAll(huge, "JOURS =\nCONSOMMATION = 1 2 3 4 5 6 7\nPROFIL =\n"));
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
