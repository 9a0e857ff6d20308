// SPDX-License-Identifier: GPL-3.0-or-later
// An exchange file is read, its points are edited, it is saved and read again.
// Input: how many points stay ("*": all), new times and values, a line end; then the file.

#include "app/CPlugExchangeFile.h"
#include "app/CPlugParameters.h"
#include "base/Cp1252.h"
#include "fuzz/Harness.h"

#include <algorithm>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kCyclesLine = 10;
constexpr qsizetype kCountLines = 11;
constexpr qsizetype kFirstPoint = 13;

// A CR at the end of a line may be taken for a part of its end. A marker without a comment goes
// too.
QByteArray WithoutCr(QByteArray line) {
    while (line.endsWith('\r') || line.endsWith(" !"))
        line.chop(1);
    return line;
}

// What a comment tells once its line holds a value.
QByteArray PlainComment(QByteArray comment) {
    while (comment.startsWith('!'))
        comment.remove(0, 1);
    return WithoutCr(comment.split('!').first());
}

struct Content {
    explicit Content(const QString& path) : file(path) {
        parameters.setParameters(&file);
        Require(file.isLoaded(), "a file that is there is read");
        for (qsizetype i = 0; i < parameters.getPointCount(); ++i)
            points.append(parameters.getPoint(i));
        for (qsizetype i = 0; i < file.instructionCount(); ++i)
            lines.append(WithoutCr(file.getInstruction(i)->getLine()));
    }

    CPlugExchangeFile file;
    CPlugParameters parameters;
    QList<CPlugPoint> points;
    QList<QByteArray> lines;  // as they are put together
};

qsizetype KeptCount(QByteArrayView edit, qsizetype all) {
    return edit.startsWith('*') ? all : std::min<qsizetype>(all, edit.isEmpty() ? 0 : edit[0] & 15);
}

// Each text of a grid is one word of the file.
QList<CPlugPoint> NewPoints(QByteArrayView edit) {
    QList<QByteArray> texts = edit.toByteArray().mid(1).split(' ');
    texts.removeIf([](const QByteArray& text) { return text.isEmpty() || text.contains('!'); });
    QList<CPlugPoint> points;
    for (qsizetype i = 0; i + 1 < texts.size(); i += 2)
        points.append({FromCp1252(texts[i]), FromCp1252(texts[i + 1])});
    return points;
}

// The lines around the points stay, all but the first values of those that hold the counts and the
// first point, and the very bytes of the first `kept` points.
void CheckLines(Content& before, Content& after, qsizetype kept) {
    const qsizetype old_end = kFirstPoint + before.parameters.pointLineCount();
    const qsizetype new_end = kFirstPoint + after.parameters.pointLineCount();
    Require(after.lines.first(kCountLines) == before.lines.first(kCountLines) &&
                after.lines.sliced(new_end) == before.lines.sliced(old_end) + QList<QByteArray>{{}},
            "lines around the points stay");
    for (qsizetype i = kCountLines; i < kFirstPoint + 2; ++i) {
        const CPlugInstruction& old_line = *before.file.getInstruction(i);
        const CPlugInstruction& new_line = *after.file.getInstruction(i);
        Require(new_line.values().mid(1) == old_line.values().mid(1) &&
                    PlainComment(new_line.comment()) == PlainComment(old_line.comment()),
                "only the first value changes");
    }
    for (qsizetype i = kFirstPoint; i < kFirstPoint + 2 * kept; ++i)
        Require(after.file.getInstruction(i)->values().value(0) ==
                    before.file.getInstruction(i)->values().value(0),
                "points that are kept keep their bytes");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    const QByteArrayView edit = input.Line();
    const QByteArray bytes = input.rest.toByteArray();
    const QString path = ScratchPath(u"run.txt"_s);
    WriteAll(path, bytes);
    const Prompts prompts;

    Content before(path);
    Content edited(path);
    const qsizetype kept = KeptCount(edit, before.points.size());
    const QList<CPlugPoint> points = before.points.first(kept) + NewPoints(edit);
    const qsizetype old_end = kFirstPoint + before.parameters.pointLineCount();
    edited.parameters.clearPoints();
    for (const CPlugPoint& point : points)
        edited.parameters.addPoint(point);
    try {
        edited.parameters.writeFile();
    } catch (const std::invalid_argument&) {
        Require(old_end < kFirstPoint + 2 || old_end > before.lines.size(), "what fits is written");
        Require(ReadAll(path) == bytes, "a refused save leaves the file alone");
        edited.file.writeFile();
        const QByteArray written = ReadAll(path);
        WriteAll(path, bytes);  // else there is a question: it is not what was read
        before.file.writeFile();
        Require(ReadAll(path) == written, "a refused save leaves the lines alone");
        return 0;
    }
    const QByteArray saved = ReadAll(path);
    if (points.isEmpty()) {
        Require(saved == bytes, "nothing is written without points");
        return 0;
    }
    const bool cr_lf = bytes.first(bytes.indexOf('\n')).endsWith('\r');
    Require(!cr_lf || saved.count("\r\n") == saved.count('\n'), "line ends stay CR LF");
    Require(bytes.contains('\r') || edit.contains('\r') || !saved.contains('\r'),
            "line ends stay LF");
    edited.parameters.writeFile();
    // A comment line that got a value ends at its second marker once it is read again.
    const QList<QByteArray> changed =
        before.lines.sliced(kCountLines, kFirstPoint + 2 - kCountLines);
    if (std::none_of(changed.cbegin(), changed.cend(),
                     [](const QByteArray& line) { return line.startsWith('!'); }))
        Require(ReadAll(path) == saved, "a second save writes the same");
    else
        WriteAll(path, saved);

    Content after(path);
    CheckLines(before, after, kept);
    const bool one_cycle = after.file.getInstruction(kCyclesLine)->getIntValue(0) == 1;
    Require(after.points == (one_cycle ? points : QList<CPlugPoint>()), "the points come back");
    if (!one_cycle)
        return 0;
    after.parameters.writeFile();
    Require(Content(path).lines == after.lines + QList<QByteArray>{{}},
            "a file that was saved only grows by its last line end");
    return 0;
}
