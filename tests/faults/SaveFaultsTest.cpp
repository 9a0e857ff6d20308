// SPDX-License-Identifier: GPL-3.0-or-later
// Every way in which replacing a file can be stopped, made with the system itself: full disks,
// limits, missing rights, what others do to the folder meanwhile, and kills.

#include "ChildRun.h"
#include "FaultTable.h"
#include "TestFiles.h"
#include "base/FileReplace.h"

#include <QElapsedTimer>
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
#include <iterator>
#include <utility>

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

constexpr int kKills = kSanitized ? 10 : 120;  // FAULT_KILLS_TIMES multiplies it
constexpr int kKilledSize = 4'000'000;
constexpr qint64 kDiskSize = 1 << 20;

// Lengths of the old content and the new one. What is small is still in a buffer when the system
// refuses it, what is large is half written.
constexpr std::pair<int, int> kSizes[] = {{20, 40}, {40, 20}, {20'000, 40'000}};
constexpr int kLarge = 20'000;

const QString kMemoryDisk = u"/dev/shm"_s;
const QByteArray kNeighbourText = "not ours\n";

// A file in a folder of its own that a user without rights may enter, and its neighbour.
struct Place {
    QTemporaryDir parent;  // in `above`
    QString folder = parent.filePath(u"host"_s);
    QString neighbour = folder + u"/neighbour.txt"_s;
    QString path;
    QByteArray old;

    explicit Place(const QByteArray& content, const QString& above = QDir::tempPath(),
                   const QString& name = u"run.txt"_s)
        : parent(above + u"/faults-XXXXXX"_s), path(folder + u'/' + name), old(content) {
        QDir().mkdir(folder);
        SetMode(parent.path(), 0777);
        SetMode(folder, 0777);
    }
    ~Place() { SetMode(folder, 0777); }

    bool WriteFiles() const { return WriteAll(neighbour, kNeighbourText) && WriteAll(path, old); }

    static bool SetMode(const QString& file, unsigned mode) {
        return chmod(QFile::encodeName(file).constData(), mode) == 0;
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
    // Strikes before the new content of `size` bytes is saved. False where the system does not let
    // it, as it lets only root make mounts and files of others.
    bool (*strike)(const Place& place, qint64 size);
    int smallest = 0;  // old content that it strikes
    QString file = u"run.txt"_s;
};

bool Limit(qint64 bytes) {
    LimitFileSize(bytes);
    return true;
}

bool ForbidNewFiles(const Place& place, unsigned file_mode = 0666) {
    const bool done = Place::SetMode(place.path, file_mode) && Place::SetMode(place.folder, 0555);
    BecomeNobody();
    return done;
}

bool FailFlushes() {
    g_flush_fails = true;
    return true;
}

bool MoveToSmallDisk(const Place& place) {
    return MountSmallDisk(place.folder, kDiskSize) && place.WriteFiles();
}

bool MoveToFullDisk(const Place& place) {
    const bool done = MoveToSmallDisk(place);
    if (done)
        FillDisk(place.folder);
    return done;
}

constexpr unsigned kOwner = 4321;
constexpr unsigned kGroup = 8765;

bool OfAnother(const QString& path, unsigned mode) {
    return chown(QFile::encodeName(path).constData(), kOwner, kGroup) == 0 &&
           Place::SetMode(path, mode);
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

const Fault kFaults[] = {
    {"no fault", Left::New, [](const Place&, qint64) { return true; }},
    {"left-over temporary files", Left::New,
     [](const Place& place, qint64) {
         bool done = true;
         for (int i = 100'000; i < 100'100; ++i)
             done = done && WriteAll(place.path + u'.' + QString::number(i), "half");
         return done;
     }},
    {"disk full", Left::Old, [](const Place& place, qint64) { return MoveToFullDisk(place); }},
    {"size limit 0", Left::Old, [](const Place&, qint64) { return Limit(0); }},
    {"size limit 1", Left::Old, [](const Place&, qint64) { return Limit(1); }},
    {"size limit 16384", Left::Old, [](const Place&, qint64) { return Limit(16'384); }, kLarge},
    {"size limit half", Left::Old, [](const Place&, qint64 size) { return Limit(size / 2); }},
    {"size limit one short", Left::Old, [](const Place&, qint64 size) { return Limit(size - 1); }},
    {"size limit just met", Left::New, [](const Place&, qint64 size) { return Limit(size); }},
    {"file read-only", Left::Old,
     [](const Place& place, qint64) {
         const bool done = Place::SetMode(place.path, 0444);
         BecomeNobody();
         return done;
     }},
    {"folder and file read-only", Left::Old,
     [](const Place& place, qint64) { return ForbidNewFiles(place, 0444); }},
    {"folder read-only", Left::New,
     [](const Place& place, qint64) { return ForbidNewFiles(place); }},
    {"folder read-only, disk full", Left::Old,
     [](const Place& place, qint64) { return MoveToFullDisk(place) && ForbidNewFiles(place); },
     kLarge},
    {"folder read-only, size limit 1", Left::Old,
     [](const Place& place, qint64) { return ForbidNewFiles(place) && Limit(1); }},
    {"folder read-only, size limit half", Left::Old,
     [](const Place& place, qint64 size) { return ForbidNewFiles(place) && Limit(size / 2); }},
    {"folder read-only, size limit one short", Left::Old,
     [](const Place& place, qint64 size) { return ForbidNewFiles(place) && Limit(size - 1); }},
    {"flush refused", Left::Old, [](const Place&, qint64) { return FailFlushes(); }},
    {"folder read-only, flush refused", Left::Old,
     [](const Place& place, qint64) { return ForbidNewFiles(place) && FailFlushes(); }},
    {"folder gone", Left::Nothing,
     [](const Place& place, qint64) { return QDir(place.folder).removeRecursively(); }},
    {"file gone", Left::New, [](const Place& place, qint64) { return QFile::remove(place.path); }},
    {"folder in place of the file", Left::Nothing,
     [](const Place& place, qint64) {
         return QFile::remove(place.path) && QDir().mkdir(place.path);
     }},
    {"pipe in place of the file", Left::Nothing,
     [](const Place& place, qint64) {
         return QFile::remove(place.path) &&
                mkfifo(QFile::encodeName(place.path).constData(), 0666) == 0;
     }},
    // Something beside the content that a new file would not have, or that forbids a new one.
    {"file of another, saved by root", Left::New,
     [](const Place& place, qint64) { return OfAnother(place.path, 02664); }},
    {"file of another, saved by a member of its group", Left::New,
     [](const Place& place, qint64) {
         const bool done = OfAnother(place.path, 0664);
         BecomeNobody(kGroup);
         return done;
     }},
    {"file of another in a sticky folder", Left::New,
     [](const Place& place, qint64) {
         const bool done = OfAnother(place.folder, 01777) && OfAnother(place.path, 0666);
         BecomeNobody();
         return done;
     }},
    {"file that is a mount point", Left::New,
     [](const Place& place, qint64) {
         const QByteArray name = QFile::encodeName(place.path);
         return MoveToSmallDisk(place) &&
                mount(name.constData(), name.constData(), nullptr, MS_BIND, nullptr) == 0;
     }},
    {"further hard link", Left::New,
     [](const Place& place, qint64) {
         return link(QFile::encodeName(place.path).constData(),
                     QFile::encodeName(place.folder + u"/other"_s).constData()) == 0;
     }},
    {"access list", Left::New,
     [](const Place& place, qint64) {
         return SetAttribute(place.path, "system.posix_acl_access", kAccess);
     }},
    {"access list that new files of the folder get", Left::New,
     [](const Place& place, qint64) {
         return SetAttribute(place.folder, "system.posix_acl_default", kAccess);
     }},
    {"extended attribute", Left::New,
     [](const Place& place, qint64) { return SetAttribute(place.path, "user.host", "42"); }},
    {"name of 255 bytes", Left::New, [](const Place&, qint64) { return true; }, 0,
     QString(255, u'n')},
};

// All that stays of a file when its content is replaced; null when there is none.
QByteArray StateOf(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    struct stat now = {};
    if (stat(name.constData(), &now) != 0)
        return {};
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

const QString kNotPossible = u"not possible here"_s;

// What a child does: has the fault strike, saves, and looks at what is left. Returns what is wrong.
QString SaveUnder(const Fault& fault, const Place& place, const QByteArray& content) {
    if (!place.WriteFiles() || !fault.strike(place, content.size()))
        return kNotPossible;
    QStringList entries = place.Entries();
    if (fault.left == Left::New && !entries.contains(fault.file))
        entries.append(fault.file);
    entries.sort();
    const QByteArray state = StateOf(place.path);

    if (ReplaceFile(place.path, content) != (fault.left == Left::New))
        return u"the wrong result"_s;
    if (fault.left != Left::Nothing &&
        ReadAll(place.path) != (fault.left == Left::New ? content : place.old))
        return u"the wrong content, %1 bytes"_s.arg(ReadAll(place.path).size());
    if (const QByteArray now = StateOf(place.path); !state.isNull() && now != state)
        return QString::fromLatin1(state + " became " + now);
    QStringList left = place.Entries();
    left.sort();
    if (left != entries)
        return u"the folder holds "_s + left.join(u' ');
    if (!left.isEmpty() && ReadAll(place.neighbour) != kNeighbourText)
        return u"the neighbour was damaged"_s;
    return {};
}

QString LossOf(Left left) {
    switch (left) {
        case Left::Old: return u"nothing; old content, refused"_s;
        case Left::New: return u"nothing; new content"_s;
        case Left::Nothing: break;
    }
    return u"nothing of ours; refused"_s;
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
    void Faults() {
        QFETCH(const Fault*, fault);
        int saves = 0;
        for (const auto& [old_size, size] : kSizes) {
            if (old_size < fault->smallest)
                continue;
            const Place place(QByteArray(old_size, 'o'), QDir::tempPath(), fault->file);
            const QString problem = InChild(
                [&, size = size] { return SaveUnder(*fault, place, QByteArray(size, 'n')); });
            if (problem == kNotPossible)
                QSKIP("the system does not let this user do that");
            QVERIFY2(problem.isEmpty(), qPrintable(u"%1 bytes: "_s.arg(size) + problem));
            ++saves;
        }
        AddTableRow("saves",
                    {QLatin1StringView(fault->name), QString::number(saves), LossOf(fault->left),
                     u"`SaveFaultsTest \"Faults:%1\"`"_s.arg(QLatin1StringView(fault->name))});
    }

    // A child saves two contents in turn until it is killed, each time in the folder as the killed
    // ones before left it. Where nothing waits for a disk, kills strike while bytes are written.
    void Kills() {
        const bool in_memory = QFileInfo(kMemoryDisk).isWritable();
        const QByteArray contents[] = {QByteArray(kKilledSize, '1'),
                                       QByteArray(kKilledSize + 1, '2')};
        const Place place(contents[0], in_memory ? kMemoryDisk : QDir::tempPath());
        QVERIFY(place.WriteFiles());
        const auto save_both = [&] {
            return ReplaceFile(place.path, contents[0]) && ReplaceFile(place.path, contents[1]);
        };
        QElapsedTimer timer;
        timer.start();
        QVERIFY(save_both());
        const auto two_saves = static_cast<int>(timer.nsecsElapsed() / 1000);

        const int kills = kKills * std::max(1, qEnvironmentVariableIntValue("FAULT_KILLS_TIMES"));
        QRandomGenerator random(4711);
        int found[] = {0, 0};
        for (int i = 0; i < kills; ++i) {
            EndlessChild child([&] {
                if (!save_both())
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
        QVERIFY(save_both());
        QVERIFY(ReadAll(place.path) == contents[1]);
        QCOMPARE(ReadAll(place.neighbour), kNeighbourText);
        QVERIFY(found[0] > 0 && found[1] > 0);
        AddTableRow("saves", {u"killed at a random moment of saving"_s, QString::number(kills),
                              u"nothing; %1 temporary files stayed"_s.arg(left_over),
                              u"`SaveFaultsTest Kills`"_s});
    }
};

QTEST_GUILESS_MAIN(SaveFaultsTest)
#include "SaveFaultsTest.moc"
