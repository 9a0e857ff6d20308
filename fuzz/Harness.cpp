#include "fuzz/Harness.h"

#include "app/Cp1252.h"
#include "app/EnglishAtof.h"

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
    m_sorted = TimesAreSorted();
    Check();
}

Cells Editing::cells() const {
    const ProfileTable& table = m_session.table();
    Cells cells;
    for (int column = 1; column <= table.ColumnCount(); ++column)
        cells.append(QStringList(table.HeaderText(column)) + table.Column(column));
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

bool Editing::TimesAreSorted() const {
    const QStringList times = m_session.table().Column(ProfileTable::kLabelColumn);
    return std::is_sorted(times.cbegin(), times.cend(), [](const QString& a, const QString& b) {
        return EnglishAtof(a) < EnglishAtof(b);
    });
}

void Editing::Check() {
    const ProfileTable& table = m_session.table();
    const KindDescriptor& facts = m_session.facts();
    const CDocControl& chart = m_chart.document();
    Require(chart.ItemCount() == table.RowCount(), "the chart has an item for each row");
    for (int row = 1; row <= table.RowCount(); ++row) {
        const QString time = table.CellText(row, ProfileTable::kLabelColumn);
        const QString value = table.CellText(row, ProfileTable::kValueColumn);
        Require(IsFiniteNumber(value), "values are numbers");
        Require(facts.rows > 0 || IsFiniteNumber(time), "times are numbers");
        const int group = chart.GroupCount() - 1;
        Require(chart.Value(row - 1, group) == ParseNumber(value) &&
                    (group == 0 || chart.Value(row - 1, 0) == ParseNumber(time)),
                "the chart shows the numbers");
    }
    if (facts.rows > 0)
        Require(table.Column(ProfileTable::kLabelColumn) == RowLabelTexts(m_session.kind()),
                "row labels stay");
    else
        Require(!m_sorted || TimesAreSorted() || !m_session.path().isEmpty(),
                "times stay in order");
}

Cells Editing::CheckHistory() {
    m_session.EndDrag();
    QList<Cells> states = {cells()};
    while (m_session.Undo()) {
        const Cells undone = cells();
        Require(m_session.Redo() && Same(cells(), states.last()), "redo takes an undo back");
        Require(m_session.Undo() && Same(cells(), undone), "undo takes a redo back");
        states.append(cells());
    }
    Require(!m_session.canUndo(), "undo goes to the first step");
    const Cells start = states.takeLast();
    for (; !states.isEmpty(); states.removeLast())
        Require(m_session.Redo() && Same(cells(), states.last()), "redo goes the way of undo");
    Check();
    return start;
}

bool Editing::Same(const Cells& left, const Cells& right) const {
    const auto same_number = [](const QString& one, const QString& other) {
        return ParseNumber(one) == ParseNumber(other);
    };
    return m_session.facts().rows > 0
               ? left == right
               : std::equal(left.begin(), left.end(), right.begin(), right.end(),
                            [&](const QStringList& a, const QStringList& b) {
                                return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                                                  same_number);
                            });
}
