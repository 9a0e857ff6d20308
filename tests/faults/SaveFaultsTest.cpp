// SPDX-License-Identifier: GPL-3.0-or-later
// Every way in which replacing a file can be stopped, made with the system itself: full disks,
// limits, missing rights, what others do to the folder meanwhile, and kills.

#include "ChildRun.h"
#include "Sanitized.h"
#include "TestFiles.h"
#include "VectorFile.h"
#include "base/FileReplace.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
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
        Run("chmod 0777 .. .");
    }
    ~Place() { Run("chmod 0777 ."); }

    // In the folder. False where the system does not let it, as it lets only root make mounts and
    // files of others.
    bool Run(const QByteArray& commands) const {
        const QByteArray line = "cd '" + QFile::encodeName(folder) + "' && " + commands;
        return std::system(line.constData()) == 0;
    }
    bool WriteFiles() const { return WriteAll(neighbour, kNeighbourText) && WriteAll(path, old); }
    QStringList Entries() const {
        return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::Hidden |
                                      QDir::NoDotAndDotDot);
    }
};

// What strikes before `size` bytes are saved: a disk of its own, shell commands, an attribute
// (file, name, value), a limit (a part of the size and a difference), rights given up.
bool Strike(const QJsonObject& fault, const Place& place, qint64 size) {
    const QString disk = fault[u"disk"].toString();
    if (!disk.isEmpty() && (!MountSmallDisk(place.folder, kDiskSize) || !place.WriteFiles()))
        return false;
    if (disk == u"full")
        FillDisk(place.folder);
    const QByteArray commands = fault[u"commands"].toString().toUtf8();
    if (!commands.isEmpty() && !place.Run(commands))
        return false;
    if (const QJsonValue attribute = fault[u"attribute"]; attribute.isArray()) {
        const QByteArray file = QFile::encodeName(place.folder + u'/' + attribute[0].toString());
        const QByteArray value = QByteArray::fromBase64(attribute[2].toString().toLatin1());
        const QByteArray name = attribute[1].toString().toLatin1();
        if (setxattr(file.constData(), name.constData(), value.constData(),
                     static_cast<size_t>(value.size()), 0) != 0)
            return false;
    }
    if (const QJsonValue limit = fault[u"limit"]; limit.isArray())
        LimitFileSize(qRound64(static_cast<double>(size) * limit[0].toDouble()) +
                      limit[1].toInteger());
    g_flush_fails = fault[u"flush_fails"].toBool();
    if (fault.contains(u"group"))
        BecomeNobody(static_cast<unsigned>(fault[u"group"].toInt()));
    return true;
}

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

// How a child ends.
enum Outcome { kRight, kWrong, kNotPossible };

// What a child does: has the fault strike, saves, and looks at what is left: "new", "old" or
// nothing of ours.
Outcome SaveUnder(const QJsonObject& fault, const QString& left, const Place& place,
                  const QByteArray& content) {
    if (!place.WriteFiles() || !Strike(fault, place, content.size()))
        return kNotPossible;
    const bool is_new = left == u"new";
    QStringList entries = place.Entries();
    if (is_new && !QFile::exists(place.path))
        entries.append(QFileInfo(place.path).fileName());
    const QByteArray state = StateOf(place.path);

    const auto says = [](bool holds, const char* what) {
        if (!holds)
            std::fprintf(stderr, "wrong %s\n", what);
        return holds;
    };
    bool right = says(ReplaceFile(place.path, content) == is_new, "result");
    if (!left.isEmpty())
        right &= says(ReadAll(place.path) == (is_new ? content : place.old), "content");
    right &= says(state.isNull() || StateOf(place.path) == state, "owner, mode or attributes");
    QStringList now = place.Entries();
    entries.sort();
    now.sort();
    right &= says(now == entries, "files in the folder");
    right &= says(now.isEmpty() || ReadAll(place.neighbour) == kNeighbourText, "neighbour");
    return right ? kRight : kWrong;
}

}  // namespace

class SaveFaultsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { umask(022); }

    void Faults_data() { AddVectorRows("save_faults"); }
    void Faults() {
        QFETCH(const QJsonObject, vector);
        const QJsonObject fault = vector[u"input"].toObject();
        for (const auto& [old_size, size] : kSizes) {
            if (old_size < fault[u"smallest"].toInt())
                continue;
            const Place place(QByteArray(old_size, 'o'), QDir::tempPath(),
                              fault[u"file"].toString(u"run.txt"_s));
            const int outcome = InChild([&, size = size] {
                return SaveUnder(fault, vector[u"expected"][u"left"].toString(), place,
                                 QByteArray(size, 'n'));
            });
            if (outcome == kNotPossible)
                QSKIP("the system does not let this user do that");
            QVERIFY2(outcome == kRight, qPrintable(u"%1 bytes"_s.arg(size)));
        }
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
            const auto end = static_cast<unsigned>(random.bounded(2 * two_saves));
            QVERIFY2(KillAfter(end,
                               [&] {
                                   if (!save_both())
                                       _exit(1);
                               }),
                     "a save was refused");
            const auto* const left =
                std::find(std::begin(contents), std::end(contents), ReadAll(place.path));
            QVERIFY2(left != std::end(contents), "neither the old content nor the new one");
            ++found[left - std::begin(contents)];
        }
        QVERIFY(save_both());
        QVERIFY(ReadAll(place.path) == contents[1]);
        QCOMPARE(ReadAll(place.neighbour), kNeighbourText);
        QVERIFY(found[0] > 0 && found[1] > 0);
    }
};

QTEST_GUILESS_MAIN(SaveFaultsTest)
#include "SaveFaultsTest.moc"
