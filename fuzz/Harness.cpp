// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/Harness.h"

#include "base/Cp1252.h"

#include <QDataStream>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

const ProfileFolders& ScratchFolders() {
    static const ProfileFolders folders = [] {
        const ProfileFolders made(ScratchPath(u"program"_s));
        for (const QString& name : {u"bas"_s, u"haut"_s})
            WriteAll(made.DailyProfilePath(name), {});
        return made;
    }();
    return folders;
}

QStringList NumbersIn(QByteArrayView line) {
    QStringList words = FromCp1252(line).split(u' ');
    words.removeIf([](const QString& word) { return !IsFiniteNumber(word); });
    return words;
}

}  // namespace

void Require(bool condition, const char* what) {
    if (condition)
        return;
    std::fprintf(stderr, "Does not hold: %s\n", what);
    std::abort();
}

void RequireNone(const QString& fault) {
    Require(fault.isEmpty(), qPrintable(fault));
}

int Input::Byte() {
    const int byte = rest.isEmpty() ? 0 : static_cast<unsigned char>(rest.front());
    rest = rest.sliced(std::min<qsizetype>(1, rest.size()));
    return byte;
}

QByteArrayView Input::Line() {
    const qsizetype end = rest.indexOf('\n');
    const QByteArrayView line = end < 0 ? rest : rest.first(end);
    rest = rest.sliced(end < 0 ? rest.size() : end + 1);
    return line;
}

Prompts::Prompts() {
    m_former = SetMessageHandler(
        {[this](const QString& text, MessageIcon, const QString&) { messages.append(text); },
         [](const QString&, const QString&) { return true; }});
}

QString ScratchPath(const QString& name) {
    static const QTemporaryDir folder;
    return folder.filePath(name);
}

Editing::Editing(ProfileKind kind, QByteArrayView line, DisplayMode mode)
    : session({kind,
               mode,
               {},
               {},
               NumbersIn(line),
               NumbersIn(line),
               NumbersIn(line),
               ScratchFolders()}) {
    session.InitialFill();
    kind == ProfileKind::Function ? chart.BuildFunctionChart() : chart.BuildProfileChart(kind);
    chart.Attach(&session.table(), kind);
    m_sorted = session.facts().rows == 0 && TimesAreSorted(session.table());
    Check();
}

QByteArray Editing::State() const {
    QByteArray state;
    QDataStream stream(&state, QIODevice::WriteOnly);
    stream << cells() << session.path() << session.name() << session.isModified()
           << session.canUndo() << session.canRedo();
    for (int column = 1; column <= session.table().ColumnCount(); ++column)
        stream << session.table().HeaderText(column);
    for (const auto& row : session.history().Table(session.dailyProfiles())) {
        for (const float number : row)
            stream << number;
    }
    return state;
}

void Editing::Check() const {
    RequireNone(CheckRows(session));
    RequireNone(CheckChart(session.table(), chart.document()));
    Require(!m_sorted || TimesAreSorted(session.table()) || !session.path().isEmpty(),
            "times stay in order");
}
