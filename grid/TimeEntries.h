// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/EditHistory.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <random>
#include <utility>
#include <vector>

/// A series of times entered into the points of a function. Each one moves its row exactly as an
/// entry on its own does (see `TargetRow` and `ProfileSession::EnterTime`), but costs the logarithm
/// of the number of rows instead of the length of the way.
///
/// The rows are the nodes of a balanced tree in grid order. A node knows the number of rows of its
/// subtree, which gives places, and their greatest time. With that the walk finds the first row
/// that is not earlier, also where the times are not in order. Rows that a move passes are only
/// marked; their texts are printed anew when they are asked for.
class TimeEntries {
public:
    /// The texts of columns 1 and 2, of the same length.
    TimeEntries(QStringList times, QStringList values);

    /// Enters the accepted text `time` for the row that was the `row`-th (0-based) before the first
    /// entry, wherever it stands by now. Each row takes one entry at most.
    void Enter(int row, const QString& time);

    /// The rows' texts in their present order.
    std::pair<QStringList, QStringList> Columns();

    /// The newest steps, as many as a history keeps. Entries that changed nothing are left out.
    QList<HistoryStep> Steps() const;

private:
    static constexpr int kNone = -1;

    struct Node {
        int left = kNone;
        int right = kNone;
        int parent = kNone;
        int count = 1;  // rows in this subtree
        float time = 0.0F;
        float greatest = 0.0F;      // of the times in this subtree
        bool reprint_time = false;  // a move has passed: the text is to be printed anew
        bool reprint_value = false;
        bool reprint_below = false;  // all texts of both subtrees
    };

    // An entry that changed something. The texts are made of it when they are needed.
    struct Entry {
        int row = 0;
        int from = 0;
        int to = 0;
        QString time_before;
        bool reprint_value = false;
    };

    // Neighbouring places whose rows were found to hold the same two texts.
    struct Twins {
        int first = 0;
        int last = -1;
        std::pair<QString, QString> texts;
    };

    Node& At(int node) { return m_nodes[static_cast<size_t>(node)]; }
    const Node& At(int node) const { return m_nodes[static_cast<size_t>(node)]; }
    int Count(int node) const { return node == kNone ? 0 : At(node).count; }

    int Build(int first, int count);
    void Settle(int node);
    void MarkPassed(int node);
    void HandDown(int node);
    void HandDownTo(int node);
    int Merge(int left, int right);
    std::pair<int, int> Split(int node, int count);

    int PlaceOf(int node) const;
    int NodeAt(int place);
    int TargetOf(int from, float time) const;
    void Move(int from, int to, int node);
    bool MovesAmongTwins(int row, int from, int to);
    std::pair<QString, QString> TextsOf(int node) const;

    QStringList m_times;   // by row
    QStringList m_values;  // by row
    std::vector<Node> m_nodes;
    int m_root = kNone;
    std::minstd_rand m_random;
    QList<Entry> m_entries;
    Twins m_twins;
    int m_looks_left;  // at rows that may be twins
};
