// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <optional>

/// The platform plugin to start the toolkit with, as its option "-platform" takes it: the first one
/// asked for that can be loaded and whose display answers. "" leaves the choice to the toolkit.
/// Nothing when no plugin works: the toolkit would end the process then. Needs no application
/// object.
std::optional<QByteArray> UsablePlatform();
