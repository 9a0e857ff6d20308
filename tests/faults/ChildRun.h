// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>
#include <optional>

/// A user and a group that own nothing.
constexpr unsigned kNobody = 65534;

/// What `work`, done in a child process, tells: limits, users and mounts that the child takes on
/// end with it. A child that did not end by itself is told too.
QString InChild(const std::function<QString()>& work);

/// A child that does `work` until it is killed.
class EndlessChild {
public:
    explicit EndlessChild(const std::function<void()>& work);
    ~EndlessChild();
    EndlessChild(const EndlessChild&) = delete;
    EndlessChild& operator=(const EndlessChild&) = delete;

    /// False when it ended by itself, before or after `microseconds`.
    bool KillAfter(unsigned microseconds);

private:
    int m_process = -1;
};

/// @{ For use inside a child, or in a test that lives with them until its end.

/// No file may grow beyond `bytes`; a write that would fails.
void LimitFileSize(qint64 bytes);

/// Gives up all rights of an administrator, if this process has them.
void BecomeNobody(std::optional<unsigned> also_of_group = {});

/// Puts a new file system of `bytes` on the folder, for this process alone. False when the system
/// does not let it.
bool MountSmallDisk(const QString& folder, qint64 bytes);
void UnmountDisk(const QString& folder);

/// Takes all room that is left on the disk of the folder, with a file "filler".
void FillDisk(const QString& folder);
/// @}
