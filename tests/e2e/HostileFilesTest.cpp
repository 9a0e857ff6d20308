// SPDX-License-Identifier: GPL-3.0-or-later
// Exchange files that no host should write: huge, endless, broken. The core reads each and writes
// it back within bounds of memory and messages; the program does so with two of them.

#include "HostRun.h"
#include "VectorFile.h"
#include "app/CPlugExchangeFile.h"
#include "app/CPlugParameters.h"
#include "base/Message.h"
#include "profiles/PointFile.h"

#include <QCryptographicHash>
#include <QTest>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

constexpr double kMaxMemoryRatio = 4.0;  // peak memory by size of the file
constexpr double kSmall = 10e6;          // bytes; below it the toolkit's own memory counts more
constexpr int kMaxMessages = 12;
constexpr int kMessageBase = 16;

// Hands out the file of a case in parts, as it is or as it is saved: head, `count` times the piece
// (else as often as makes a file of the wanted size), tail.
void Spell(const QJsonObject& hostile, bool saved,
           const std::function<void(const QByteArray&)>& take) {
    const QString key = saved && hostile.contains(u"saved") ? u"saved"_s : u"piece"_s;
    const QByteArray piece = hostile[key].toString().toLatin1();
    const int wanted = qEnvironmentVariableIntValue("HOSTILE_MEGABYTES");
    const qint64 bytes = 1'000'000 * (wanted > 0 ? wanted : kSanitized ? 2 : 20);
    take(hostile[u"head"].toString().toLatin1());
    qint64 left = hostile[u"count"].toInteger(bytes / piece.size());
    for (; left > 0; left -= std::min<qint64>(left, 4096))
        take(piece.repeated(std::min<qint64>(left, 4096)));
    take(hostile[u"tail"].toString().toLatin1());
    // A refused save leaves the file as it is.
    if (saved && !hostile[u"refused"].toBool())
        take("\n");
}

struct Child {
    bool has_ended = false;  // by itself
    int opening = 0;         // messages
    int closing = 0;
    double memory = 0.0;  // bytes at the peak
};

// Reads the file and writes it back. The messages of both, of each at most kMessageBase less one.
int ReadAndWrite(const QString& path) {
    int messages = 0;
    SetMessageHandler({[&](const QString&, MessageIcon, const QString&) { ++messages; }, {}});
    CPlugExchangeFile file(path);
    CPlugParameters parameters;
    parameters.setParameters(&file);
    const int opening = std::min(messages, kMessageBase - 1);
    try {
        parameters.writeFile();
    } catch (const std::invalid_argument&) {
        ++messages;
    }
    return opening * kMessageBase + std::min(messages - opening, kMessageBase - 1);
}

// Reads the file as one with points.
int Import(const QString& path) {
    const PointFile file = PointFile::Open(path);
    file.Read(file.likelyColumns());
    return 0;
}

// Does the work in a child, whose memory goes with it.
Child InChild(int (*work)(const QString&), const QString& path) {
    const int child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
        _exit(work(path));
    }
    int status = 0;
    rusage usage = {};
    const bool has_ended = wait4(child, &status, 0, &usage) == child && WIFEXITED(status);
    const int messages = WEXITSTATUS(status);
    return {has_ended, messages / kMessageBase, messages % kMessageBase,
            1024.0 * static_cast<double>(usage.ru_maxrss)};
}

}  // namespace

class HostileFilesTest : public HostTest {
    Q_OBJECT

    double m_base = 0.0;  // bytes of memory that a small file takes

    void Write(const QJsonObject& hostile) {
        QFile file(m_file);
        QVERIFY(file.open(QIODevice::WriteOnly));
        Spell(hostile, false, [&file](const QByteArray& part) { file.write(part); });
    }
    bool IsSaved(const QJsonObject& hostile) {
        QCryptographicHash expected(QCryptographicHash::Sha1);
        Spell(hostile, true, [&expected](const QByteArray& part) { expected.addData(part); });
        QCryptographicHash saved(QCryptographicHash::Sha1);
        QFile file(m_file);
        return file.open(QIODevice::ReadOnly) && saved.addData(&file) &&
               saved.result() == expected.result();
    }

private slots:
    void initTestCase() {
        Write(VectorCases("hostile_files").value(0));
        m_base = InChild(ReadAndWrite, m_file).memory;
    }

    void Survives_data() { AddVectorRows("hostile_files"); }
    void Survives() {
        QFETCH(const QJsonObject, vector);
        Write(vector);
        const auto size = static_cast<double>(QFileInfo(m_file).size());
        const Child run = InChild(ReadAndWrite, m_file);
        QVERIFY2(run.has_ended, "did not end by itself");
        QVERIFY(IsSaved(vector));
        QVERIFY(run.opening + run.closing <= kMaxMessages);
        const Child import = InChild(Import, m_file);
        QVERIFY2(import.has_ended, "did not end by itself");
        const double memory = std::max(run.memory, import.memory) - m_base;
        QVERIFY2(kSanitized || size < kSmall || memory < kMaxMemoryRatio * size,
                 qPrintable(u"%1 MB of memory"_s.arg(memory / 1e6)));
        if (!vector[u"window"].toBool())
            return;

        Write(vector);
        HostRun host;
        host.Start({m_file});
        for (int i = 0; i < run.opening; ++i)
            QVERIFY(host.PassMessage());
        QVERIFY(host.WaitForDialog() && host.Click(kOkButton));
        for (int i = 0; i < run.closing; ++i)
            QVERIFY(host.PassMessage());
        QVERIFY(host.HasEnded() && IsSaved(vector));
    }
};

QTEST_GUILESS_MAIN(HostileFilesTest)
#include "HostileFilesTest.moc"
