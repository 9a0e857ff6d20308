// Every way in which a save can be stopped, made with the system itself: full disks, limits,
// missing rights, what others do to the folder meanwhile, and kills.

#include "ChildRun.h"
#include "ExchangeText.h"
#include "FaultTable.h"
#include "FileDialogScript.h"
#include "MessageScript.h"
#include "app/CPlugExchangeFile.h"
#include "app/CPlugParameters.h"
#include "base/FileReplace.h"
#include "profiles/ProfileSession.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>

using namespace Qt::StringLiterals;

namespace {
bool g_flush_fails = false;
}

// Takes the place of the system's own in this program: a disk that refuses what it took before.
extern "C" int fsync(int handle) {
    if (!g_flush_fails)
        return static_cast<int>(syscall(SYS_fsync, handle));
    errno = EIO;
    return -1;
}

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
    bool asks = false;  // the exchange file no longer is what was read
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
    {"flush refused", Left::Old, [](const Place&, qint64) { g_flush_fails = true; }},
    {"folder read-only, flush refused", Left::Old,
     [](const Place& place, qint64) {
         ForbidNewFiles(place);
         g_flush_fails = true;
     }},
    {"folder gone", Left::Nothing,
     [](const Place& place, qint64) { QDir(place.folder).removeRecursively(); }, false, 2, true},
    {"file gone", Left::New, [](const Place& place, qint64) { QFile::remove(place.path); }, false,
     2, true},
    {"folder in place of the file", Left::Nothing,
     [](const Place& place, qint64) {
         QFile::remove(place.path);
         QDir().mkdir(place.path);
     },
     false, 2, true},
    {"pipe in place of the file", Left::Nothing,
     [](const Place& place, qint64) {
         QFile::remove(place.path);
         (void)mkfifo(QFile::encodeName(place.path).constData(), 0666);
     },
     false, 2, true},
};

const QString kQuestion = u"The exchange file was changed by another program.\nReplace it ?"_s;

// Something beside the content that a new file would not have, or that forbids a new one.
struct Kept {
    const char* name;
    bool (*prepare)(const Place& place, const QString& path);
    bool by_root = false;
    QString file = u"run.txt"_s;
};

constexpr unsigned kOwner = 4321;
constexpr unsigned kGroup = 8765;

bool OfAnother(const QString& path, unsigned mode) {
    const QByteArray name = QFile::encodeName(path);
    return chown(name.constData(), kOwner, kGroup) == 0 && chmod(name.constData(), mode) == 0;
}

bool SetAttribute(const QString& path, const char* name, QByteArrayView value) {
    return setxattr(QFile::encodeName(path).constData(), name, value.data(),
                    static_cast<size_t>(value.size()), 0) == 0;
}

// An access list as the system stores it: version 2, then kind, rights and number of each entry:
// the owner, user 4321, the group, the mask, all others.
constexpr char kAccessList[] =
    "\2\0\0\0\1\0\6\0\xFF\xFF\xFF\xFF\2\0\6\0\xE1\x10\0\0\4\0\4\0\xFF\xFF\xFF\xFF"
    "\x10\0\6\0\xFF\xFF\xFF\xFF\x20\0\0\0\xFF\xFF\xFF\xFF";
constexpr QByteArrayView kAccess(kAccessList, sizeof kAccessList - 1);

const Kept kKept[] = {
    {"file of another, saved by root",
     [](const Place&, const QString& path) { return OfAnother(path, 02664); }, true},
    {"file of another, saved by a member of its group",
     [](const Place&, const QString& path) {
         const bool done = OfAnother(path, 0664);
         BecomeNobody(kGroup);
         return done;
     },
     true},
    {"file of another in a sticky folder",
     [](const Place& place, const QString& path) {
         const bool done = OfAnother(place.folder, 01777) && OfAnother(path, 0666);
         BecomeNobody();
         return done;
     },
     true},
    {"file that is a mount point",
     [](const Place& place, const QString& path) {
         const QByteArray name = QFile::encodeName(path);
         return MountSmallDisk(place.folder, kDiskSize) && WriteAll(path, "old") &&
                mount(name.constData(), name.constData(), nullptr, MS_BIND, nullptr) == 0;
     },
     true},
    {"further hard link",
     [](const Place& place, const QString& path) {
         return link(QFile::encodeName(path).constData(),
                     QFile::encodeName(place.folder + u"/other"_s).constData()) == 0;
     }},
    {"access list",
     [](const Place&, const QString& path) {
         return SetAttribute(path, "system.posix_acl_access", kAccess);
     }},
    {"access list that new files of the folder get",
     [](const Place& place, const QString&) {
         return SetAttribute(place.folder, "system.posix_acl_default", kAccess);
     }},
    {"extended attribute",
     [](const Place&, const QString& path) { return SetAttribute(path, "user.host", "42"); }},
    {"name of 255 bytes", [](const Place&, const QString&) { return true; }, false,
     QString(255, u'n')},
};

// All that stays of a file when its content is replaced.
QByteArray StateOf(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    struct stat now = {};
    if (stat(name.constData(), &now) != 0)
        return "none";
    QByteArray state = "owner " + QByteArray::number(now.st_uid) + ':' +
                       QByteArray::number(now.st_gid) + " mode " +
                       QByteArray::number(now.st_mode, 8) + " names " +
                       QByteArray::number(static_cast<quint64>(now.st_nlink));
    char names[1024];
    const ssize_t length = listxattr(name.constData(), names, sizeof names);
    for (const QByteArray& key : QByteArray(names, std::max<ssize_t>(length, 0)).split('\0')) {
        char value[1024];
        const ssize_t size = getxattr(name.constData(), key.constData(), value, sizeof value);
        state += ' ' + key + ' ' + QByteArray(value, std::max<ssize_t>(size, 0)).toHex();
    }
    return state;
}

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
    if (fault.asks && format == Format::ExchangeFile)
        messages.ExpectQuestion(kQuestion, u"Exchange file"_s, true);
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

const QString kAfterQuestion = u"; exchange file: after a question"_s;

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
                if (fault->asks && format == Format::ExchangeFile)
                    messages.append(kQuestion);
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
                              QString::number(saves),
                              LossOf(fault->left) + (fault->asks ? kAfterQuestion : QString()),
                              CommandOf("Faults")});
    }

    void Kills_data() {
        QTest::addColumn<Format>("format");
        QTest::addColumn<QString>("above");
        QTest::addColumn<int>("kills");
        QTest::newRow(NameOf(Format::Profile)) << Format::Profile << QDir::tempPath() << kKills;
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

    void KeepsAllButTheContent_data() {
        QTest::addColumn<const Kept*>("kept");
        for (const Kept& kept : kKept)
            QTest::newRow(kept.name) << &kept;
    }
    void KeepsAllButTheContent() {
        QFETCH(const Kept*, kept);
        if (kept->by_root && geteuid() != 0)
            QSKIP("only root can make files of others and mounts");
        const Place place;
        const SaveReport report = InChild([&](SaveReport& child) {
            const QString path = place.folder + u'/' + kept->file;
            const bool prepared = WriteAll(path, "old") && kept->prepare(place, path);
            const QByteArray before = StateOf(path);
            if (!prepared)
                child.means = u"nowhere"_s;
            else if (!ReplaceFile(path, "new"))
                child.remark = u"refused"_s;
            else if (const QByteArray after = StateOf(path); after != before)
                child.remark = QString::fromLatin1(before + " became " + after);
            child.content = ReadAll(path);
        });
        if (!report.means.isEmpty())
            QSKIP("this file system has no such thing");
        QVERIFY2(report.remark.isEmpty(), qPrintable(report.remark));
        QCOMPARE(report.content, QByteArray("new"));
        AddTableRow("saves",
                    {QString::fromLatin1(kept->name), u"1"_s, u"nothing; new content, no message"_s,
                     CommandOf("KeepsAllButTheContent")});
    }
};

QTEST_GUILESS_MAIN(SaveFaultsTest)
#include "SaveFaultsTest.moc"
