// SPDX-License-Identifier: GPL-3.0-or-later
#include "ChildRun.h"

#include <QFile>

#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

using namespace Qt::StringLiterals;

namespace {

int Wait(int process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

}  // namespace

int InChild(const std::function<int()>& work) {
    const int child = fork();
    if (child == 0)
        _exit(work());  // nothing of the parent is run down
    const int status = child > 0 ? Wait(child) : -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool KillAfter(unsigned microseconds, const std::function<void()>& work) {
    const int child = fork();
    if (child == 0) {
        for (;;)
            work();
    }
    if (child < 0)
        return false;
    usleep(microseconds);
    kill(child, SIGKILL);
    return WIFSIGNALED(Wait(child));
}

void LimitFileSize(qint64 bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    const auto limit = static_cast<rlim_t>(bytes);
    const rlimit limits = {limit, limit};
    (void)setrlimit(RLIMIT_FSIZE, &limits);
}

void BecomeNobody(unsigned group) {
    if (geteuid() == 0 &&
        (setgroups(1, &group) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0))
        _exit(1);
}

void FillDisk(const QString& folder) {
    QFile filler(folder + u"/filler"_s);
    if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return;
    for (const qint64 piece : {4096, 1}) {
        while (filler.write(QByteArray(piece, 'x')) == piece) {
        }
    }
}

void UnmountDisk(const QString& folder) {
    (void)umount2(QFile::encodeName(folder).constData(), MNT_DETACH);
}

bool MountSmallDisk(const QString& folder, qint64 bytes) {
    const QByteArray path = QFile::encodeName(folder);
    const QByteArray options = "mode=0777,size=" + QByteArray::number(bytes);
    return unshare(CLONE_NEWNS) == 0 &&
           mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("tmpfs", path.constData(), "tmpfs", 0, options.constData()) == 0;
}
