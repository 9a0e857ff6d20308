#include "MessageScript.h"
#include "profiles/Coefficients.h"
#include "profiles/ProfileFile.h"
#include "profiles/ProfileFolders.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

/// The profiles that come with the program: each can be read, keeps the rules of its kind and names
/// only daily profiles that are there.
class ShippedProfilesTest : public QObject {
    Q_OBJECT

    const ProfileFolders m_folders{QStringLiteral(RESOURCES_DIR)};

private slots:
    void files_data() {
        QTest::addColumn<ProfileKind>("kind");
        QTest::addColumn<QString>("path");
        for (int number = -1; number <= 3; ++number) {
            const auto kind = static_cast<ProfileKind>(number);
            const QDir folder(m_folders.KindFolder(kind));
            const QStringList files = folder.entryList(QDir::Files);
            QVERIFY2(files.size() >= 2, qPrintable(folder.path()));
            for (const QString& file : files)
                QTest::addRow("%d %s", number, qPrintable(file)) << kind << folder.filePath(file);
        }
    }
    void files() {
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
        const QStringList daily = m_folders.DailyProfileList();
        for (const QString& name : content.names)
            QVERIFY2(daily.contains(name), qPrintable(name));

        // Masks are written in another form than they are read in.
        if (kind == ProfileKind::Function)
            return;
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const ProfileContent written = {RowLabelTexts(kind), content.values, content.names};
        QCOMPARE(file.readAll(), WriteProfile(kind, written, "\n"));
    }
};

QTEST_APPLESS_MAIN(ShippedProfilesTest)
#include "ShippedProfilesTest.moc"
