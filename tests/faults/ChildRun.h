// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

/// A user and a group that own nothing.
constexpr unsigned kNobody = 65534;

/// Does `work` in a child process: limits, users and mounts that the child takes on end with it.
/// Returns what `work` does, 0 .. 255, or -1 when the child did not end by itself.
int InChild(const std::function<int()>& work);

/// A child does `work` again and again until it is killed. False when it ended by itself before.
bool KillAfter(unsigned microseconds, const std::function<void()>& work);

/// @{ For use inside a child, or in a test that lives with them until its end.

/// No file may grow beyond `bytes`; a write that would fails.
void LimitFileSize(qint64 bytes);

/// Gives up all rights of an administrator, if this process has them.
void BecomeNobody(unsigned group = kNobody);

/// Puts a new file system of `bytes` on the folder, for this process alone. False when the system
/// does not let it.
bool MountSmallDisk(const QString& folder, qint64 bytes);
void UnmountDisk(const QString& folder);

/// Takes all room that is left on the disk of the folder, with a file "filler".
void FillDisk(const QString& folder);
/// @}
