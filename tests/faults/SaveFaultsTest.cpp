// Every way in which a save can be stopped, made with the system itself: full disks, limits,
// missing rights, what others do to the folder meanwhile, and kills.

#include "ChildRun.h"
#include "ExchangeText.h"
#include "FaultTable.h"
#include "FileDialogScript.h"
#include "MessageScript.h"
#include "app/CPlugExchangeFile.h"
#include "app/CPlugParameters.h"
#include "app/FileReplace.h"
#include "profiles/ProfileSession.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int kFewPoints = 2'000;            // some pages of a disk
constexpr int kManyPoints = 20'000;          // a megabyte
constexpr int kKills = kSanitized ? 5 : 60;  // FAULT_KILLS_TIMES multiplies it
constexpr qint64 kDiskSize = 1 << 20;

enum class Format { ExchangeFile, Profile, BytesAlone };

const QString kMemoryDisk = u"/dev/shm"_s;
const QString kNeighbour = u"neighbour.txt"_s;
const QByteArray kNeighbourText = "not ours\n";

QByteArray ValueOf(int version) {
    return version == 0 ? "0" : QByteArray::number(version) + ".23456789";
}

Points PointsOf(int count, int version) {
    Points points;
    for (int i = 0; i < count; ++i)
        points.append({QByteArray::number(i), ValueOf(version)});
    return points;
}

// Keeps the trace of a reading out of the output of the test.
class NoOutput {
public:
    NoOutput() : m_former(dup(STDOUT_FILENO)) {
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDOUT_FILENO);
        close(nowhere);
    }
    ~NoOutput() {
        dup2(m_former, STDOUT_FILENO);
        close(m_former);
    }
    NoOutput(const NoOutput&) = delete;
    NoOutput& operator=(const NoOutput&) = delete;

private:
    int m_former;
};

// The document of one file in memory, whose content can be saved in versions. Version 0, the
// shortest, stands in the file when it is made.
class Document {
public:
    Document(Format format, const QString& path, int points)
        : m_format(format), m_path(path), m_points(points) {
        if (format == Format::BytesAlone)
            return;
        if (format == Format::ExchangeFile) {
            WriteAll(path, SavedFile(PointsOf(points, 0)).chopped(1));
            m_file = std::make_unique<CPlugExchangeFile>(path);
            const NoOutput quiet;
            m_parameters.setParameters(m_file.get());
            return;
        }
        QStringList times;
        for (int i = 0; i < points; ++i)
            times.append(QString::number(i));
        QStringList values(points, u"0"_s);
        SessionSetup setup;
        setup.times = times;
        setup.values = values;
        m_session = std::make_unique<ProfileSession>(std::move(setup));
        m_session->InitialFill();
        FileDialogScript dialogs;
        dialogs.ExpectSave(path);
        m_session->SaveAs();
    }

    void Save(int version) {
        if (m_format == Format::BytesAlone) {
            ReplaceFile(m_path, Content(version));
            return;
        }
        const QString value = QString::fromLatin1(ValueOf(version));
        if (m_format == Format::Profile) {
            m_session->EnterColumn(QStringList(m_points, value), 1);
            m_session->Save();
            return;
        }
        m_parameters.clearPoints();
        for (int i = 0; i < m_points; ++i)
            m_parameters.addPoint({QString::number(i), value});
        m_parameters.writeFile();
    }

    QByteArray Content(int version) const {
        if (m_format == Format::ExchangeFile)
            return SavedFile(PointsOf(m_points, version)).chopped(version == 0 ? 1 : 0);
        if (m_format == Format::BytesAlone)
            return ValueOf(version).repeated(m_points);
        QByteArray times = "Value of time =";
        for (int i = 0; i < m_points; ++i)
            times += ' ' + QByteArray::number(i);
        return times + "\nValue of function =" + (' ' + ValueOf(version)).repeated(m_points) + '\n';
    }

private:
    Format m_format;
    QString m_path;
    int m_points;
    std::unique_ptr<CPlugExchangeFile> m_file;
    CPlugParameters m_parameters;
    std::unique_ptr<ProfileSession> m_session;
};

// A folder of its own that a user without rights may enter.
struct Place {
    QTemporaryDir parent;  // in `above`
    QString folder = parent.filePath(u"host"_s);
    QString path = folder + u"/run.txt"_s;

    explicit Place(const QString& above = QDir::tempPath()) : parent(above + u"/faults-XXXXXX"_s) {
        chmod(QFile::encodeName(parent.path()).constData(), 0777);
        QDir().mkdir(folder);
        chmod(QFile::encodeName(folder).constData(), 0777);
    }
    ~Place() { chmod(QFile::encodeName(folder).constData(), 0777); }

    void SetMode(const QString& file, unsigned mode) const {
        chmod(QFile::encodeName(file).constData(), mode);
    }
    QStringList Entries() const {
        return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::Hidden |
                                      QDir::NoDotAndDotDot);
    }
};

// What stands in the file after the fault.
enum class Left { Old, New, Nothing };

struct Fault {
    const char* name;
    Left left;
    // Strikes between the reading and the save; `size` is that of the new content.
    void (*strike)(const Place& place, qint64 size);
    bool on_small_disk = false;
    int fewest_points = 2;
};

void ForbidNewFiles(const Place& place) {
    place.SetMode(place.path, 0666);
    place.SetMode(place.folder, 0555);
    BecomeNobody();
}

const Fault kFaults[] = {
    {"no fault", Left::New, [](const Place&, qint64) {}},
    {"left-over temporary files", Left::New,
     [](const Place& place, qint64) {
         for (int i = 100'000; i < 100'100; ++i)
             WriteAll(place.path + u'.' + QString::number(i), "half");
     }},
    {"disk full", Left::Old, [](const Place& place, qint64) { FillDisk(place.folder); }, true},
    {"size limit 0", Left::Old, [](const Place&, qint64) { LimitFileSize(0); }},
    {"size limit 1", Left::Old, [](const Place&, qint64) { LimitFileSize(1); }},
    {"size limit 16384", Left::Old, [](const Place&, qint64) { LimitFileSize(16'384); }, false,
     kFewPoints},
    {"size limit half", Left::Old, [](const Place&, qint64 size) { LimitFileSize(size / 2); }},
    {"size limit one short", Left::Old, [](const Place&, qint64 size) { LimitFileSize(size - 1); }},
    {"size limit just met", Left::New, [](const Place&, qint64 size) { LimitFileSize(size); }},
    {"file read-only", Left::Old,
     [](const Place& place, qint64) {
         place.SetMode(place.path, 0444);
         BecomeNobody();
     }},
    {"folder and file read-only", Left::Old,
     [](const Place& place, qint64) {
         place.SetMode(place.path, 0444);
         place.SetMode(place.folder, 0555);
         BecomeNobody();
     }},
    {"folder read-only", Left::New, [](const Place& place, qint64) { ForbidNewFiles(place); }},
    {"folder read-only, disk full", Left::Old,
     [](const Place& place, qint64) {
         FillDisk(place.folder);
         ForbidNewFiles(place);
     },
     true, kFewPoints},
    {"folder read-only, size limit 1", Left::Old,
     [](const Place& place, qint64) {
         ForbidNewFiles(place);
         LimitFileSize(1);
     }},
    {"folder read-only, size limit half", Left::Old,
     [](const Place& place, qint64 size) {
         ForbidNewFiles(place);
         LimitFileSize(size / 2);
     }},
    {"folder read-only, size limit one short", Left::Old,
     [](const Place& place, qint64 size) {
         ForbidNewFiles(place);
         LimitFileSize(size - 1);
     }},
    {"folder gone", Left::Nothing,
     [](const Place& place, qint64) { QDir(place.folder).removeRecursively(); }},
    {"file gone", Left::New, [](const Place& place, qint64) { QFile::remove(place.path); }},
    {"folder in place of the file", Left::Nothing,
     [](const Place& place, qint64) {
         QFile::remove(place.path);
         QDir().mkdir(place.path);
     }},
    {"pipe in place of the file", Left::Nothing,
     [](const Place& place, qint64) {
         QFile::remove(place.path);
         (void)mkfifo(QFile::encodeName(place.path).constData(), 0666);
     }},
};

// What a child does: reads, has the fault strike, saves, and looks at what is left.
void SaveUnder(const Fault& fault, const Place& place, Format format, int points,
               SaveReport& report) {
    const bool small_disk = fault.on_small_disk && MountSmallDisk(place.folder, kDiskSize);
    WriteAll(place.folder + u'/' + kNeighbour, kNeighbourText);
    Document document(format, place.path, points);
    const qint64 size = document.Content(1).size();
    if (fault.on_small_disk && !small_disk) {
        report.means = u"size limit, no disk could be mounted"_s;
        LimitFileSize(size / 2);
    } else {
        if (small_disk)
            report.means = u"mounted disk"_s;
        fault.strike(place, size);
    }
    QStringList expected = place.Entries();
    if (fault.left == Left::New && !expected.contains(u"run.txt"_s))
        expected.append(u"run.txt"_s);
    expected.sort();

    MessageScript messages;
    document.Save(1);
    report.messages = messages.Seen();
    if (QFileInfo(place.path).isFile())
        report.content = ReadAll(place.path);
    if (place.Entries() != expected)
        report.remark += u"the folder holds "_s + place.Entries().join(u' ');
    if (expected.contains(kNeighbour) &&
        ReadAll(place.folder + u'/' + kNeighbour) != kNeighbourText)
        report.remark += u"the neighbour was damaged"_s;
}

const char* NameOf(Format format) {
    switch (format) {
        case Format::ExchangeFile: return "exchange file";
        case Format::Profile: return "profile";
        case Format::BytesAlone: break;
    }
    return "bytes alone";
}

QString Refusal(Format format, const QString& path) {
    return format == Format::Profile
               ? u"Ecriture impossible !"_s
               : u"cplug: unable to open exchange file for writing ! ("_s + path + u')';
}

QString LossOf(Left left) {
    switch (left) {
        case Left::Old: return u"nothing; old content, one message"_s;
        case Left::New: return u"nothing; new content, no message"_s;
        case Left::Nothing: break;
    }
    return u"nothing of ours; one message"_s;
}

QString CommandOf(const char* function) {
    return u"`SaveFaultsTest \"%1:%2\"`"_s.arg(QLatin1StringView(function),
                                               QLatin1StringView(QTest::currentDataTag()));
}

}  // namespace

class SaveFaultsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { umask(022); }

    void Faults_data() {
        QTest::addColumn<const Fault*>("fault");
        for (const Fault& fault : kFaults)
            QTest::newRow(fault.name) << &fault;
    }
    // A small file is still in the buffer when the disk refuses it, a large one is half written.
    void Faults() {
        QFETCH(const Fault*, fault);
        QStringList means;
        int saves = 0;
        for (const Format format : {Format::ExchangeFile, Format::Profile}) {
            for (const int points : {2, kFewPoints}) {
                if (points < fault->fewest_points)
                    continue;
                const Place place;
                const SaveReport report = InChild(
                    [&](SaveReport& child) { SaveUnder(*fault, place, format, points, child); });
                const QString row =
                    QLatin1StringView(NameOf(format)) + u", %1 points: "_s.arg(points);
                QVERIFY2(report.remark.isEmpty(), qPrintable(row + report.remark));
                const Place elsewhere;
                const Document model(format, elsewhere.path, points);
                QByteArray expected;
                if (fault->left != Left::Nothing)
                    expected = model.Content(fault->left == Left::New ? 1 : 0);
                QVERIFY2(report.content == expected,
                         qPrintable(row + u"%1 bytes instead of %2"_s.arg(report.content.size())
                                              .arg(expected.size())));
                QStringList messages;
                if (fault->left != Left::New)
                    messages.append(Refusal(format, place.path));
                QVERIFY2(report.messages == messages,
                         qPrintable(row + report.messages.join(u" | "_s)));
                means = {report.means};
                ++saves;
            }
        }
        means.removeAll(QString());
        if (!means.isEmpty())
            qInfo("made by: %s", qPrintable(means.first()));
        AddTableRow("saves", {QString::fromLatin1(fault->name) +
                                  (means.isEmpty() ? QString() : u" ("_s + means.first() + u')'),
                              QString::number(saves), LossOf(fault->left), CommandOf("Faults")});
    }

    void Kills_data() {
        QTest::addColumn<Format>("format");
        QTest::addColumn<QString>("above");
        QTest::addColumn<int>("kills");
        for (const Format format : {Format::ExchangeFile, Format::Profile})
            QTest::newRow(NameOf(format)) << format << QDir::tempPath() << kKills;
        // Where nothing is computed or waits for a disk, kills strike while bytes are written.
        const bool in_memory = QFileInfo(kMemoryDisk).isWritable();
        QTest::newRow(NameOf(Format::BytesAlone))
            << Format::BytesAlone << (in_memory ? kMemoryDisk : QDir::tempPath()) << 2 * kKills;
    }
    // A child saves two contents in turn until it is killed, each time in the folder as the killed
    // ones before left it.
    void Kills() {
        QFETCH(const Format, format);
        QFETCH(const QString, above);
        QFETCH(int, kills);
        const Place place(above);
        QVERIFY(WriteAll(place.folder + u'/' + kNeighbour, kNeighbourText));
        Document document(format, place.path,
                          format == Format::BytesAlone ? 20 * kManyPoints : kManyPoints);
        QElapsedTimer timer;
        timer.start();
        document.Save(1);
        document.Save(2);
        const auto two_saves = static_cast<int>(timer.nsecsElapsed() / 1000);
        const QByteArray contents[] = {document.Content(1), document.Content(2)};
        QCOMPARE(ReadAll(place.path), contents[1]);

        kills *= std::max(1, qEnvironmentVariableIntValue("FAULT_KILLS_TIMES"));
        QRandomGenerator random(4711);
        int found[] = {0, 0};
        for (int i = 0; i < kills; ++i) {
            EndlessChild child([&document] {
                MessageScript messages;
                for (const int version : {1, 2})
                    document.Save(version);
                if (!messages.Done())
                    _exit(1);
            });
            QVERIFY2(child.KillAfter(static_cast<unsigned>(random.bounded(2 * two_saves))),
                     "a save was refused");
            const auto* const left =
                std::find(std::begin(contents), std::end(contents), ReadAll(place.path));
            QVERIFY2(left != std::end(contents), "neither the old content nor the new one");
            ++found[left - std::begin(contents)];
        }
        const qsizetype left_over = place.Entries().size() - 2;
        document.Save(1);
        QCOMPARE(ReadAll(place.path), contents[0]);
        QCOMPARE(ReadAll(place.folder + u'/' + kNeighbour), kNeighbourText);
        qInfo("first content %d times, second %d times, temporary files left over %d", found[0],
              found[1], static_cast<int>(left_over));
        QVERIFY(found[0] > 0 && found[1] > 0);
        AddTableRow("saves",
                    {u"killed at a random moment of saving, %1"_s.arg(
                         QLatin1StringView(QTest::currentDataTag())),
                     QString::number(kills), u"nothing; %1 temporary files stayed"_s.arg(left_over),
                     CommandOf("Kills")});
    }

    void KeepsOwnerAndGroup_data() {
        QTest::addColumn<bool>("by_stranger");
        QTest::newRow("saved by root") << false;
        QTest::newRow("saved by a member of the group") << true;
    }
    void KeepsOwnerAndGroup() {
        QFETCH(const bool, by_stranger);
        if (geteuid() != 0)
            QSKIP("only root can make files of others");
        constexpr unsigned kOwner = 4321;
        constexpr unsigned kGroup = 8765;
        const Place place;
        QVERIFY(WriteAll(place.path, "old"));
        const QByteArray path = QFile::encodeName(place.path);
        QCOMPARE(chown(path.constData(), kOwner, kGroup), 0);
        place.SetMode(place.path, 02664);
        const SaveReport report = InChild([&](SaveReport& child) {
            if (by_stranger)
                BecomeNobody(kGroup);
            if (!ReplaceFile(place.path, "new"))
                child.remark = u"refused"_s;
        });
        QVERIFY2(report.remark.isEmpty(), qPrintable(report.remark));
        QCOMPARE(ReadAll(place.path), QByteArray("new"));
        struct stat now = {};
        QCOMPARE(stat(path.constData(), &now), 0);
        QCOMPARE(now.st_uid, by_stranger ? kNobody : kOwner);
        QCOMPARE(now.st_gid, kGroup);
        QCOMPARE(now.st_mode & 07777U, by_stranger ? 0664U : 02664U);
    }
};

QTEST_GUILESS_MAIN(SaveFaultsTest)
#include "SaveFaultsTest.moc"
