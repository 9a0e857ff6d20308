// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/PointLayout.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <vector>

namespace {

// A layout and what speaks for it.
struct Candidate {
    PointLayout layout;
    qsizetype fitting = 0;     // lines with the right number of columns and all its numbers
    bool all_numeric = false;  // all columns hold numbers
    bool strong = false;       // the separator stands in no number and no text of one
    qsizetype first = 0;       // the first fitting line

    auto Rank() const { return std::tuple(fitting, all_numeric, strong); }
};

// Which cells of a line hold numbers.
using Numbers = std::vector<bool>;

bool HoldsNumbers(const Numbers& line, const QList<qsizetype>& columns) {
    return std::all_of(columns.cbegin(), columns.cend(),
                       [&](qsizetype column) { return line[static_cast<size_t>(column)]; });
}

// The number of columns that most of the lines with numbers have; of two equally frequent ones the
// greater, since headers have fewer.
size_t UsualCount(const std::vector<Numbers>& lines) {
    std::map<size_t, int> counts;
    for (const Numbers& line : lines) {
        if (std::find(line.begin(), line.end(), true) != line.end())
            ++counts[line.size()];
    }
    size_t usual = 0;
    int most = 0;
    for (const auto& [count, times] : counts) {
        if (times >= most)
            std::tie(usual, most) = std::tie(count, times);
    }
    return usual;
}

Candidate TryLayout(const QStringList& lines, ColumnSeparator separator) {
    std::vector<Numbers> all;
    for (const QString& line : lines) {
        Numbers numbers;
        for (const QStringView cell : SplitCells(line, separator, kMaxColumns))
            numbers.push_back(PointNumber(cell).has_value());
        all.push_back(std::move(numbers));
    }
    Candidate found;
    const size_t count = UsualCount(all);
    found.layout = {separator, static_cast<qsizetype>(count), {}};
    // A column holds numbers when at least half of the lines with any have one there.
    const auto counts = [&](const Numbers& line) {
        return line.size() == count && std::find(line.begin(), line.end(), true) != line.end();
    };
    const auto total = std::count_if(all.begin(), all.end(), counts);
    for (size_t column = 0; column < count; ++column) {
        const auto numbers = std::count_if(all.begin(), all.end(), [&](const Numbers& line) {
            return counts(line) && line[column];
        });
        if (2 * numbers >= total)
            found.layout.numeric.append(static_cast<qsizetype>(column));
    }
    found.strong = separator == ColumnSeparator::Tab || separator == ColumnSeparator::Semicolon;
    const qsizetype fewest = found.strong || separator == ColumnSeparator::None ? 1 : 2;
    if (found.layout.numeric.size() < fewest || (found.strong && count < 2))
        return found;
    found.all_numeric = found.layout.numeric.size() == found.layout.columns;
    const auto fits = [&](const Numbers& line) {
        return line.size() == count && HoldsNumbers(line, found.layout.numeric);
    };
    found.fitting = std::count_if(all.begin(), all.end(), fits);
    found.first = std::find_if(all.begin(), all.end(), fits) - all.begin();
    return found;
}

// Whether the header of a table with commas has as many columns as the table. Texts have a blank
// behind a comma.
bool HeaderHasCommas(const QStringList& lines, const Candidate& candidate) {
    if (candidate.layout.separator != ColumnSeparator::Comma || candidate.first == 0)
        return false;
    const QString& header = lines[candidate.first - 1];
    return !header.contains(QStringLiteral(", ")) &&
           SplitCells(header, ColumnSeparator::Comma).size() == candidate.layout.columns;
}

}  // namespace

QList<PointLayout> FindLayouts(const QStringList& lines) {
    using enum ColumnSeparator;
    std::vector<Candidate> candidates;
    for (const ColumnSeparator separator : {Tab, Semicolon, Blanks, WideBlanks, Comma, None}) {
        const Candidate candidate = TryLayout(lines, separator);
        if (candidate.fitting == 0 ||
            (!candidates.empty() && candidate.Rank() < candidates.front().Rank()))
            continue;
        if (!candidates.empty() && candidate.Rank() > candidates.front().Rank())
            candidates.clear();
        // Wide blanks are of interest only where they give other columns.
        const bool is_known = separator == WideBlanks && !candidates.empty() &&
                              candidates.back().layout.separator == Blanks &&
                              candidates.back().layout.columns == candidate.layout.columns;
        if (!is_known)
            candidates.push_back(candidate);
    }
    QList<PointLayout> layouts;
    for (const Candidate& candidate : candidates) {
        if (HeaderHasCommas(lines, candidate))
            return {candidate.layout};
        layouts.append(candidate.layout);
    }
    return layouts;
}
