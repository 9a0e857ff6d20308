// SPDX-License-Identifier: GPL-3.0-or-later
// A text from the clipboard is pasted into the table of a session.
// Input: bytes for kind and flags, numbers to start with, a line end; bytes for the first row, the
// column and the number of rows selected; then the text.

#include "base/EnglishAtof.h"
#include "fuzz/Harness.h"
#include "grid/GridClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>
#include <numeric>

namespace {

// Flags of an input.
constexpr int kEdition = 1;
constexpr int kWholeColumn = 2;
constexpr int kOwnCopy = 4;
constexpr int kViewOnly = 8;

struct Block {
    qsizetype column = 0;
    qsizetype columns = 0;
    qsizetype row = 0;
    qsizetype rows = 0;
};

Block PastedBlock(const GridSelection& selection, QString text) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    if (text.endsWith(u'\n'))
        text.chop(1);
    const QStringList lines = text.split(u'\n');
    Block block{selection.columns.first(), 0, selection.rows.first(), lines.size()};
    for (const QString& line : lines)
        block.columns = std::max(block.columns, line.count(u'\t') + 1);
    return block;
}

GridSelection Select(Input& input, const ProfileTable& table, int flags) {
    GridSelection selection;
    const int first = input.Byte() % (table.RowCount() + 1) + 1;
    selection.columns = {input.Byte() % std::max(table.ColumnCount(), 1) + 1};
    selection.rows.resize(std::min(input.Byte() % 8, table.RowCount() - first + 1));
    std::iota(selection.rows.begin(), selection.rows.end(), first);
    selection.whole_column = (flags & kWholeColumn) != 0;
    return selection;
}

// Only pasted cells change, unless a pasted time moves rows or other coefficients follow.
void CheckPlaces(Editing& editing, const Cells& before, const Block& block) {
    const ProfileSession& session = editing.session();
    if (block.column == ProfileTable::kLabelColumn ||
        (session.facts().coefficients && !session.isEdition()))
        return;
    const Cells after = editing.cells();
    for (qsizetype column = 0; column < after.size(); ++column) {
        for (qsizetype row = 1; row < after[column].size(); ++row) {
            const bool pasted = column + 1 >= block.column && row >= block.row &&
                                column + 1 < block.column + block.columns &&
                                row < block.row + block.rows;
            Require(pasted || after[column][row] == before[column][row], "other cells stay");
        }
    }
}

// Each pasted time stands beside the value that it was pasted on, wherever its row has moved.
void CheckTimes(Editing& editing, const Cells& before, const Block& block, const QString& text) {
    const QStringList lines = text.split(u'\n');
    const Cells after = editing.cells();
    for (qsizetype i = 0; i < block.rows; ++i) {
        const double time = ParseNumber(lines[i].trimmed().replace(u',', u'.'));
        const double value = ParseNumber(before[1][block.row + i]);
        bool found = false;
        for (qsizetype row = 1; row < after[0].size(); ++row)
            found = found ||
                    (ParseNumber(after[0][row]) == time && ParseNumber(after[1][row]) == value);
        Require(found, "times go to the rows that they were pasted on");
    }
}

}  // namespace

// NOLINTNEXTLINE(readability-non-const-parameter): given by the caller of main
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    static const QGuiApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    Prompts prompts;
    const ProfileKind kind = input.Kind();
    const int flags = input.Byte();
    const bool view_only = (flags & kViewOnly) != 0;
    Editing editing(kind, input.Line(), view_only ? DisplayMode::View : DisplayMode::Edit);
    const ProfileSession& session = editing.session();
    if ((flags & kEdition) != 0)
        editing.session().SetEdition(true);
    const GridSelection selection = Select(input, editing.table(), flags);
    GridClipboard clipboard(&editing.session());
    QGuiApplication::clipboard()->setText(QString::fromUtf8(input.rest));
    const bool own = (flags & kOwnCopy) != 0 && clipboard.Copy(selection);

    const QByteArray state = editing.State();
    Cells before = editing.cells();
    prompts.messages.clear();
    clipboard.Paste(selection);
    editing.Check();
    // Where other values do not follow, single cells may be refused.
    const bool refused = !prompts.messages.isEmpty() &&
                         (session.facts().coefficients || prompts.messages[0].startsWith(u"Imp"));
    const QString text = QGuiApplication::clipboard()->text();
    const bool nothing = text.isEmpty() && !own;
    if (refused || view_only || nothing || selection.rows.isEmpty()) {
        Require(editing.State() == state, "a refused paste changes nothing");
        return 0;
    }
    const Block block = PastedBlock(selection, text);
    CheckPlaces(editing, before, block);
    if (session.facts().rows == 0 && block.column == 1 && block.columns == 1 &&
        prompts.messages.isEmpty())
        CheckTimes(editing, before, block, text);
    if (block.rows * block.columns > EditHistory::kMaxSteps)
        return 0;
    for (qsizetype column = 0; column < before.size(); ++column)
        before[column].first() = editing.cells()[column].first();  // Headers stay rewritten.
    Require(editing.Same(editing.CheckHistory(), before), "undo takes a paste back");
    return 0;
}
