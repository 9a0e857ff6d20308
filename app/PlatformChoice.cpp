// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PlatformChoice.h"

#include <QtGlobal>

#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)

#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

bool PluginLoads(const QString& name) {
    const QStringList folders = QStringList{qEnvironmentVariable("QT_QPA_PLATFORM_PLUGIN_PATH")} +
                                QCoreApplication::libraryPaths();
    for (const QString& path : folders) {
        for (const QString& place : {path, path + u"/platforms"_s}) {
            const QDir folder(place);
            const QStringList files =
                path.isEmpty() ? QStringList() : folder.entryList({u"*.so"_s}, QDir::Files);
            for (const QString& file : files) {
                QPluginLoader loader(folder.filePath(file));
                const QJsonObject facts = loader.metaData()[u"MetaData"].toObject();
                if (facts[u"Keys"].toArray().contains(name))
                    return loader.load();
            }
        }
    }
    return false;
}

// The display's own client library is asked: it knows about addresses and permissions.
bool XServerAnswers() {
    QLibrary library(u"xcb"_s, 1);
    const auto connect =
        reinterpret_cast<void* (*)(const char*, int*)>(library.resolve("xcb_connect"));
    const auto has_error =
        reinterpret_cast<int (*)(void*)>(library.resolve("xcb_connection_has_error"));
    const auto disconnect = reinterpret_cast<void (*)(void*)>(library.resolve("xcb_disconnect"));
    if (connect == nullptr || has_error == nullptr || disconnect == nullptr)
        return false;
    void* const connection = connect(nullptr, nullptr);
    const bool answers = has_error(connection) == 0;
    disconnect(connection);
    return answers;
}

bool WaylandAnswers() {
    QLibrary library(u"wayland-client"_s, 0);
    const auto connect =
        reinterpret_cast<void* (*)(const char*)>(library.resolve("wl_display_connect"));
    const auto disconnect =
        reinterpret_cast<void (*)(void*)>(library.resolve("wl_display_disconnect"));
    if (connect == nullptr || disconnect == nullptr)
        return false;
    void* const display = connect(nullptr);
    if (display != nullptr)
        disconnect(display);
    return display != nullptr;
}

bool Works(const QString& platform) {
    const QString name = platform.section(u':', 0, 0);
    if (!PluginLoads(name))
        return false;
    if (name == u"xcb")
        return XServerAnswers();
    return !name.startsWith(u"wayland") || WaylandAnswers();
}

QStringList WantedPlatforms() {
    const QString wanted = qEnvironmentVariable("QT_QPA_PLATFORM");
    if (!wanted.isEmpty())
        return wanted.split(u';', Qt::SkipEmptyParts);
    if (qEnvironmentVariable("XDG_SESSION_TYPE") == u"wayland")
        return {u"wayland"_s, u"xcb"_s};
    return {u"xcb"_s, u"wayland"_s};
}

}  // namespace

std::optional<QByteArray> UsablePlatform() {
    for (const QString& platform : WantedPlatforms()) {
        if (Works(platform))
            return platform.toUtf8();
    }
    return std::nullopt;
}

#elif defined(Q_OS_WIN)

#include <QCoreApplication>
#include <QFileInfo>

#include <windows.h>

// The plug-ins lie beside the module, which need not lie beside the host's program.
std::optional<QByteArray> UsablePlatform() {
    constexpr DWORD kLongestPath = 32767;
    HMODULE module = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<const wchar_t*>(&UsablePlatform), &module);
    QString path(kLongestPath, Qt::Uninitialized);
    path.truncate(static_cast<qsizetype>(
        GetModuleFileNameW(module, reinterpret_cast<wchar_t*>(path.data()), kLongestPath)));
    QCoreApplication::addLibraryPath(QFileInfo(path).path());
    return QByteArray();
}

#else

std::optional<QByteArray> UsablePlatform() {
    return QByteArray();
}

#endif
