// SPDX-License-Identifier: GPL-3.0-or-later
// A host in C++: shows the dialog through InputAPI and prints what came back.
//
// usage: host-cpp KIND MODE [--name NAME] [--file PATH] [TIME=VALUE[=NAME]]...

#include "arguments.h"

#include <InputAPI.h>

#include <cstdio>
#include <iterator>

namespace {

// The number of `word` in `words`, counted from `first`; one before that when it is not there.
template <size_t N>
int Number(const QString& word, const char* const (&words)[N], int first) {
    for (size_t i = 0; i < N; ++i) {
        if (word == QLatin1String(words[i]))
            return first + static_cast<int>(i);
    }
    return first - 1;
}

constexpr const char* kKinds[] = {"function", "annual", "monthly", "weekly", "daily"};
constexpr const char* kModes[] = {"open", "view", "edit"};
constexpr int kFirstKind = -1;
constexpr int kFirstMode = 1;

int Usage() {
    std::fprintf(stderr,
                 "usage: host-cpp function|annual|monthly|weekly|daily open|view|edit\n"
                 "                [--name NAME] [--file PATH] [TIME=VALUE[=NAME]]...\n");
    return 2;
}

}  // namespace

int main(int argc, char* argv[]) {
    QStringList arguments;
    argv = utf8_arguments(&argc, argv);
    for (int i = 1; argv != nullptr && i < argc; ++i)
        arguments.append(QString::fromUtf8(argv[i]));
    if (arguments.size() < 2)
        return Usage();
    const int kind = Number(arguments[0], kKinds, kFirstKind);
    const int mode = Number(arguments[1], kModes, kFirstMode);
    if (kind < kFirstKind || mode < kFirstMode)
        return Usage();

    QString name;
    QString file;
    QStringList times;
    QStringList values;
    QStringList extras;
    for (qsizetype i = 2; i < arguments.size(); ++i) {
        if (arguments[i] == QLatin1String("--name") && i + 1 < arguments.size()) {
            name = arguments[++i];
        } else if (arguments[i] == QLatin1String("--file") && i + 1 < arguments.size()) {
            file = arguments[++i];
        } else if (arguments[i].contains(QLatin1Char('='))) {
            const QStringList row = arguments[i].split(QLatin1Char('='));
            times.append(row[0]);
            values.append(row[1]);
            extras.append(row.value(2, QStringLiteral("0")));
        } else {
            return Usage();
        }
    }

    // No application object is needed: the module makes one if there is none.
    InputAPI editor;
    editor.m_pTimeList = &times;
    editor.m_pValueList = &values;
    editor.m_pExtraList = &extras;
    editor.m_pName = &name;
    const int result = editor.Prompt(kind, mode, file);

    // The lists are as they were, or hold the texts of the file that was read last. What the user
    // saved is in the profile's file, under the name that came back.
    std::printf("result: %d\nname: %s\n", result, name.toUtf8().constData());
    for (qsizetype i = 0; i < values.size(); ++i)
        std::printf("row %d: %s | %s | %s\n", static_cast<int>(i) + 1,
                    times.value(i).toUtf8().constData(), values[i].toUtf8().constData(),
                    extras.value(i).toUtf8().constData());
    return result < 0 ? 1 : 0;
}
