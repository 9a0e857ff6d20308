// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CommandLine.h"

#include "app/FileCheck.h"
#include "app/StandardStreams.h"
#include "base/FileReplace.h"

#include <algorithm>
#include <iterator>

#ifdef Q_OS_WIN
#include <QCoreApplication>

#include <windows.h>

#include <shellapi.h>
#endif

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView kHelp =
    uR"(usage: function-editor FILE
       function-editor --check FILE...
       function-editor --help | --version

Edits the points of a function of time in the exchange file FILE: a simulation
host starts it and reads the file again when it has ended.

  --check    reads each FILE without a window; prints what it holds, or its
             faults with their lines. Status 0: all are right; 1: faults;
             2: a file cannot be read.
  --help     prints this text.
  --version  prints the version.
)";

int CheckFile(const QString& path) {
    const QString name = ShownPath(path);
    const FileCheck check = CheckExchangeFile(path, [&name](qsizetype line, const QString& text) {
        Print(u"%1:%2: %3\n"_s.arg(name, QString::number(line), text));
    });
    if (!check.readable) {
        Print(name + u": cannot be read\n"_s);
        return 2;
    }
    if (check.faults > 0)
        return 1;
    const FileSummary& summary = check.summary;
    Print(u"%1: %2 %3, %4 to %5 h\n"_s.arg(name, QString::number(summary.points),
                                           summary.points == 1 ? u"point"_s : u"points"_s,
                                           summary.first_time, summary.last_time));
    return 0;
}

#ifdef Q_OS_WIN
bool IsSwitch(const QString& argument) {
    const bool names_a_computer = argument.startsWith(u"//");
    return argument.startsWith(u'-') || (argument.startsWith(u'/') && !names_a_computer);
}
#else
bool IsSwitch(const QString& argument) {
    return argument.startsWith(u'-');
}
#endif

}  // namespace

#ifdef Q_OS_WIN
// The bytes of `argv` are in the user's code page, which need not hold all characters.
QStringList ProgramArguments(int, char**) {
    QStringList arguments;
    if (QCoreApplication::instance() != nullptr) {
        arguments = QCoreApplication::arguments();
    } else {
        int count = 0;
        wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
        std::transform(words, words + count, std::back_inserter(arguments),
                       [](const wchar_t* word) { return QString::fromWCharArray(word); });
        LocalFree(words);
    }
    return arguments.mid(1);
}
#else
// Only the bytes hold a name that is not UTF-8.
QStringList ProgramArguments(int argc, char** argv) {
    QStringList arguments;
    std::transform(argv + std::min(argc, 1), argv + argc, std::back_inserter(arguments),
                   PathFromBytes);
    return arguments;
}
#endif

QString FirstFile(const QStringList& arguments) {
    const auto found = std::find_if_not(arguments.cbegin(), arguments.cend(), IsSwitch);
    return found != arguments.cend() ? *found : QString();
}

std::optional<int> RunWithoutWindow(const QStringList& arguments) {
    if (arguments == QStringList{u"--help"_s}) {
        Print(kHelp.toString());
        return 0;
    }
    if (arguments == QStringList{u"--version"_s}) {
        Print(u"function-editor " FUNCTION_EDITOR_VERSION "\n"_s);
        return 0;
    }
    if (arguments.value(0) != u"--check")
        return std::nullopt;
    int status = arguments.size() > 1 ? 0 : 2;
    if (status != 0)
        Print(kHelp.toString());
    for (qsizetype i = 1; i < arguments.size(); ++i)
        status = std::max(status, CheckFile(arguments[i]));
    return status;
}
