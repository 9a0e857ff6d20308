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

// Nothing of the parent is run down in a child that ends here.
[[noreturn]] void End(int status) {
    _exit(status);
}

int Wait(int process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

}  // namespace

QString InChild(const std::function<QString()>& work) {
    int ends[2];
    if (pipe(ends) != 0)
        return u"no pipe"_s;
    const int child = fork();
    if (child == 0) {
        close(ends[0]);
        const QByteArray told = work().toUtf8();
        const auto size = static_cast<size_t>(told.size());
        End(write(ends[1], told.constData(), size) == told.size() ? 0 : 1);
    }
    close(ends[1]);
    QFile in;
    QString told;
    if (in.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        told = QString::fromUtf8(in.readAll());
    if (const int status = Wait(child); status != 0)
        told += u" the child ended with status %1"_s.arg(status);
    return told;
}

EndlessChild::EndlessChild(const std::function<void()>& work) {
    int ends[2];
    if (pipe(ends) != 0)
        return;
    m_process = fork();
    if (m_process == 0) {
        (void)!write(ends[1], "", 1);
        while (true)
            work();
    }
    close(ends[1]);
    char ready = 0;
    (void)!read(ends[0], &ready, 1);
    close(ends[0]);
}

EndlessChild::~EndlessChild() {
    KillAfter(0);
}

bool EndlessChild::KillAfter(unsigned microseconds) {
    if (m_process <= 0)
        return false;
    usleep(microseconds);
    kill(m_process, SIGKILL);
    const int status = Wait(m_process);
    m_process = -1;
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

void LimitFileSize(qint64 bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    const auto limit = static_cast<rlim_t>(bytes);
    const rlimit limits = {limit, limit};
    (void)setrlimit(RLIMIT_FSIZE, &limits);
}

void BecomeNobody(std::optional<unsigned> also_of_group) {
    if (geteuid() != 0)
        return;
    const gid_t group = also_of_group.value_or(kNobody);
    if (setgroups(1, &group) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0)
        End(2);
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
