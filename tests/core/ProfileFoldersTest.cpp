#include "profiles/ProfileFolders.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class ProfileFoldersTest : public QObject {
    Q_OBJECT

private slots:
    void dailyProfiles() {
        const QTemporaryDir program;
        const ProfileFolders folders(program.path());
        QCOMPARE(folders.DailyProfileList(), QStringList());

        const QDir daily(program.filePath(u"Data/Profils/Journalier"_s));
        QVERIFY(daily.mkpath(u"a folder.dat"_s));
        for (const QString& name : {u"zone"_s, u"Bureau"_s, u"été 1"_s, u"a.b"_s, u"a"_s, u"."_s,
                                    u""_s, u"quo\"te"_s, u"two\nlines"_s}) {
            QFile file(daily.filePath(name + u".dat"_s));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        for (const QString& name : {u"other.txt"_s, u"OTHER.DAT"_s}) {
            QFile file(daily.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
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

    void inKindFolder_data() {
        QTest::addColumn<ProfileKind>("kind");
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("inside");
        QTest::newRow("inside") << ProfileKind::Daily << "/p/Data/Profils/Journalier/a.dat" << true;
        QTest::newRow("other case") << ProfileKind::Daily << "/P/data/profils/JOURNALIER/a" << true;
        QTest::newRow("detour") << ProfileKind::Annual << "/p/Data/Masques/../Profils/Annuel/a"
                                << true;
        QTest::newRow("below") << ProfileKind::Daily << "/p/Data/Profils/Journalier/x/a.dat"
                               << false;
        QTest::newRow("other kind")
            << ProfileKind::Annual << "/p/Data/Profils/Journalier/a.dat" << false;
        QTest::newRow("longer name")
            << ProfileKind::Daily << "/p/Data/Profils/Journalier2/a.dat" << false;
        QTest::newRow("no kind") << static_cast<ProfileKind>(7) << "/p/Data/a.dat" << false;
    }
    void inKindFolder() {
        QFETCH(ProfileKind, kind);
        QFETCH(QString, file);
        QTEST(ProfileFolders(u"/p"_s).IsInKindFolder(kind, file), "inside");
    }
};

QTEST_GUILESS_MAIN(ProfileFoldersTest)
#include "ProfileFoldersTest.moc"
