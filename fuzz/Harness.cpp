// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/Harness.h"

#include "base/Cp1252.h"
#include "base/EnglishAtof.h"

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

const ProfileFolders& ScratchFolders() {
    static const ProfileFolders folders = [] {
        const ProfileFolders made(ScratchPath(u"program"_s));
        QDir().mkpath(made.KindFolder(ProfileKind::Daily));
        for (const QString& name : {u"bas"_s, u"haut"_s})
            WriteScratch(made.DailyProfilePath(name), {});
        return made;
    }();
    return folders;
}

bool IsFiniteNumber(const QString& text) {
    return IsNumber(text) && std::isfinite(EnglishAtof(text));
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

QByteArray ReadScratch(const QString& path) {
    QFile file(path);
    Require(file.open(QIODevice::ReadOnly), "the file can be read");
    return file.readAll();
}

void WriteScratch(const QString& path, QByteArrayView bytes) {
    QFile file(path);
    Require(
        file.open(QIODevice::WriteOnly) && file.write(bytes.data(), bytes.size()) == bytes.size(),
        "the file can be written");
}

Editing::Editing(ProfileKind kind, QByteArrayView line, DisplayMode mode)
    : m_session({kind,
                 mode,
                 {},
                 {},
                 NumbersIn(line),
                 NumbersIn(line),
                 NumbersIn(line),
                 ScratchFolders()}) {
    m_session.InitialFill();
    kind == ProfileKind::Function ? m_chart.BuildFunctionChart() : m_chart.BuildProfileChart(kind);
    m_chart.Attach(&m_session.table(), kind);
    m_sorted = m_session.facts().rows == 0 && TimesAreSorted(m_session.table());
    Check();
}

Cells Editing::cells() const {
    Cells cells = CellsOf(m_session.table());
    for (int column = 1; column <= cells.size(); ++column)
        cells[column - 1].prepend(m_session.table().HeaderText(column));
    return cells;
}

QByteArray Editing::State() const {
    QByteArray state;
    QDataStream stream(&state, QIODevice::WriteOnly);
    stream << cells() << m_session.path() << m_session.name() << m_session.isModified()
           << m_session.canUndo() << m_session.canRedo();
    for (const auto& row : m_session.history().Table(m_session.dailyProfiles())) {
        for (const float number : row)
            stream << number;
    }
    return state;
}

void Editing::Check() {
    const ProfileTable& table = m_session.table();
    RequireNone(CheckRows(m_session));
    RequireNone(CheckChart(table, m_chart.document()));
    Require(!m_sorted || TimesAreSorted(table) || !m_session.path().isEmpty(),
            "times stay in order");
}

Cells Editing::CheckHistory() {
    Cells start;
    RequireNone(::CheckHistory(m_session, &start));
    Check();
    for (int column = 1; column <= start.size(); ++column)
        start[column - 1].prepend(m_session.table().HeaderText(column));
    return start;
}
