// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/TimeEntries.h"

#include "base/EnglishAtof.h"
#include "base/NumberText.h"

#include <algorithm>

namespace {

// Looking for twins ends after this many looks a row, lest rows that are nearly all alike cost the
// square of their number. A step that changes nothing is the worst that comes of it.
constexpr int kLooksPerRow = 16;

QString Printed(const QString& text, bool anew) {
    return anew ? RewrittenNumber(text) : text;
}

}  // namespace

TimeEntries::TimeEntries(QStringList times, QStringList values)
    : m_times(std::move(times)),
      m_values(std::move(values)),
      m_nodes(static_cast<size_t>(m_times.size())),
      m_looks_left(kLooksPerRow * static_cast<int>(m_times.size())) {
    for (size_t i = 0; i < m_nodes.size(); ++i)
        m_nodes[i].time = EnglishAtof(m_times[static_cast<qsizetype>(i)]);
    m_root = Build(0, static_cast<int>(m_nodes.size()));
}

// A tree of the rows from `first` on, each the node of its own number.
int TimeEntries::Build(int first, int count) {
    if (count == 0)
        return kNone;
    const int middle = count / 2;
    const int node = first + middle;
    At(node).left = Build(first, middle);
    At(node).right = Build(node + 1, count - middle - 1);
    Settle(node);
    return node;
}

// Makes the sums of a node right, and itself the parent of its subtrees.
void TimeEntries::Settle(int node) {
    Node& top = At(node);
    top.count = 1;
    top.greatest = top.time;
    for (const int child : {top.left, top.right}) {
        if (child == kNone)
            continue;
        At(child).parent = node;
        top.count += At(child).count;
        top.greatest = std::max(top.greatest, At(child).greatest);
    }
}

void TimeEntries::MarkPassed(int node) {
    if (node != kNone)
        At(node).reprint_time = At(node).reprint_value = At(node).reprint_below = true;
}

void TimeEntries::HandDown(int node) {
    Node& top = At(node);
    if (!top.reprint_below)
        return;
    MarkPassed(top.left);
    MarkPassed(top.right);
    top.reprint_below = false;
}

// The marks of a node are its own once those above it have been handed down.
void TimeEntries::HandDownTo(int node) {
    if (At(node).parent != kNone)
        HandDownTo(At(node).parent);
    HandDown(node);
}

// Each node becomes the root as often as its share of the rows, which keeps the tree flat.
int TimeEntries::Merge(int left, int right) {
    if (left == kNone || right == kNone)
        return left == kNone ? right : left;
    const auto left_count = static_cast<unsigned>(Count(left));
    const bool left_is_root =
        m_random() % (left_count + static_cast<unsigned>(Count(right))) < left_count;
    const int root = left_is_root ? left : right;
    HandDown(root);
    if (left_is_root)
        At(root).right = Merge(At(root).right, right);
    else
        At(root).left = Merge(left, At(root).left);
    Settle(root);
    return root;
}

// The first `count` rows and the others.
std::pair<int, int> TimeEntries::Split(int node, int count) {
    if (node == kNone)
        return {kNone, kNone};
    HandDown(node);
    Node& top = At(node);
    std::pair<int, int> parts;
    if (const int left_count = Count(top.left); count <= left_count) {
        parts = Split(top.left, count);
        top.left = std::exchange(parts.second, node);
    } else {
        parts = Split(top.right, count - left_count - 1);
        top.right = std::exchange(parts.first, node);
    }
    Settle(node);
    return parts;
}

int TimeEntries::PlaceOf(int node) const {
    int place = Count(At(node).left);
    for (int above = At(node).parent; above != kNone; node = above, above = At(node).parent) {
        if (At(above).right == node)
            place += Count(At(above).left) + 1;
    }
    return place;
}

int TimeEntries::NodeAt(int place) {
    int node = m_root;
    for (;;) {
        HandDown(node);
        const int left_count = Count(At(node).left);
        if (place == left_count)
            return node;
        if (place < left_count) {
            node = At(node).left;
        } else {
            place -= left_count + 1;
            node = At(node).right;
        }
    }
}

// As `TargetRow`, but 0-based.
int TimeEntries::TargetOf(int from, float time) const {
    if (At(m_root).greatest < time)
        return At(m_root).count - 1;
    int target = 0;
    int node = m_root;
    for (;;) {
        const Node& top = At(node);
        if (top.left != kNone && At(top.left).greatest >= time) {
            node = top.left;
            continue;
        }
        target += Count(top.left);
        if (top.time >= time)
            return target > from && time < top.time ? target - 1 : target;
        ++target;
        node = top.right;
    }
}

// Moves the row at `from`, the given node, whose time is new.
void TimeEntries::Move(int from, int to, int node) {
    const auto [first, last] = std::minmax(from, to);
    const auto [before, rest] = Split(m_root, first);
    auto [passed, after] = Split(rest, last - first + 1);
    MarkPassed(passed);
    const auto [head, tail] = Split(passed, from < to ? 1 : last - first);
    At(node).reprint_time = false;
    passed = Merge(tail, head);
    m_root = Merge(Merge(before, passed), after);
    At(m_root).parent = kNone;
}

std::pair<QString, QString> TimeEntries::TextsOf(int node) const {
    return {Printed(m_times[node], At(node).reprint_time),
            Printed(m_values[node], At(node).reprint_value)};
}

// Whether the rows that the one at `from` would pass upward are the same as it, and printing them
// anew changes nothing. Rows found alike are not looked at again until something has changed.
bool TimeEntries::MovesAmongTwins(int row, int from, int to) {
    const std::pair<QString, QString> texts = TextsOf(row);
    if (texts != std::pair(RewrittenNumber(texts.first), RewrittenNumber(texts.second)))
        return false;
    const bool continues = m_twins.first == to && m_twins.texts == texts;
    const int known = continues ? m_twins.last : to - 1;
    int place = from - 1;
    for (; place > known && m_looks_left > 0 && TextsOf(NodeAt(place)) == texts; --m_looks_left)
        --place;
    if (place > known)
        return false;
    m_twins = {to, from, texts};
    return true;
}

void TimeEntries::Enter(int row, const QString& time) {
    HandDownTo(row);
    const float number = EnglishAtof(time);
    const int from = PlaceOf(row);
    const int to = TargetOf(from, number);
    const Entry entry = {row, from, to, TextsOf(row).first, At(row).reprint_value};
    if (entry.time_before == time && (from == to || (to < from && MovesAmongTwins(row, from, to))))
        return;
    m_twins = {};
    m_times[row] = time;
    At(row).time = number;
    if (from != to) {
        Move(from, to, row);
    } else {
        At(row).reprint_time = false;
        for (int node = row; node != kNone; node = At(node).parent)
            Settle(node);
    }
    m_entries.append(entry);
    if (m_entries.size() > EditHistory::kMaxSteps)
        m_entries.removeFirst();
}

std::pair<QStringList, QStringList> TimeEntries::Columns() {
    QStringList times;
    QStringList values;
    times.reserve(m_times.size());
    values.reserve(m_times.size());
    std::vector<int> above;
    for (int node = m_root; node != kNone || !above.empty();) {
        for (; node != kNone; node = At(node).left) {
            HandDown(node);
            above.push_back(node);
        }
        node = above.back();
        above.pop_back();
        auto [time, value] = TextsOf(node);
        times.append(std::move(time));
        values.append(std::move(value));
        node = At(node).right;
    }
    return {std::move(times), std::move(values)};
}

QList<HistoryStep> TimeEntries::Steps() const {
    QList<HistoryStep> steps;
    for (const Entry& entry : m_entries) {
        const QString& value = m_values[entry.row];
        const bool reprinted = entry.reprint_value || entry.from != entry.to;
        const RowState before = {
            entry.from, entry.time_before, Printed(value, entry.reprint_value), {}};
        const RowState after = {entry.to, m_times[entry.row], Printed(value, reprinted), {}};
        steps.append(HistoryStep{before, after});
    }
    return steps;
}
