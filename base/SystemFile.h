// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// What replacing a file asks of the system. One source file for each: SystemFileUnix.cpp and
// SystemFileWindows.cpp, which also hold what paths and opening mean there.

/// Where `path` leads when its last component is a symbolic link that can be followed.
QString LinkTarget(const QString& path);

/// Whether a new file may take the place of the one at `path`. False where other names of the file
/// would keep the old content, or the name is more than that of a plain file.
bool MayBeReplaced(const QString& path);

/// Copies to the new file what the old one has besides its bytes. False where that is impossible.
bool TakeOver(int handle, const QString& old_path);

/// Some disks report a failed write only here.
bool FlushToDisk(int handle);

/// Writes a rename in the folder of `path` to the disk. The new content is in place even if this
/// fails.
void FlushFolderOf(const QString& path);
