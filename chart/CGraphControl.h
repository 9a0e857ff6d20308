// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/CDocControl.h"
#include "profiles/ProfileKind.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <vector>

class ProfileTable;

/// Builds the chart of a kind and keeps its items equal to the rows of a table: item i shows row
/// i + 1. A function keeps its times in group 0 and its values in group 1, the other kinds their
/// values in group 0.
class CGraphControl : public QObject {
    Q_OBJECT

public:
    explicit CGraphControl(QObject* parent = nullptr);

    const CDocControl& document() const { return m_document; }

    /// Builds the chart of a profile with its default values. For any other kind: twelve items
    /// without values or labels, and axes without titles.
    void BuildProfileChart(ProfileKind kind);

    /// Builds the chart of a function, without items.
    void BuildFunctionChart();

    /// Builds a chart without scales, and without items: the one before a kind is known.
    void BuildPlainChart();

    /// Gives all items the look of points on a line.
    void ApplyPointStyle();

    /// Stores one value; see ChartItems::SetValue. Part of the given interface, not used by the
    /// dialog: its charts follow their table.
    virtual void SetValue(int index, int group, double value);

    void SetTitle(const QString& title);

    /// Of the line through the points of a function; straight after a build.
    void SetLineForm(LineForm form);

    /// Fills the chart from `table` (not owned) and follows it from now on. The chart of `kind`
    /// must have been built; a later build fills itself from the table again.
    void Attach(const ProfileTable* table, ProfileKind kind);

    /// The look of an item while its row is the grid's current one.
    void SetHighlighted(int index, bool on);

    /// Shows what would become of the items, as a pale line or as pale outlines: a list of values a
    /// group, no lists for nothing. The items stay.
    void SetPreview(std::vector<std::vector<double>> groups);

signals:
    /// Anything may have changed: axes, texts, the number of items.
    void Rebuilt();
    /// Values, labels or the look of these items changed.
    void ItemsChanged(int first, int last);

private:
    void StartBuild(int groups);
    void EndBuild();
    void Refill();
    void ReadRows(int first, int last, int first_column, int last_column);
    void OnDataChanged(int first, int last, int first_column, int last_column);
    void OnRowsInserted(int first, int last);
    void OnRowsRemoved(int first, int last);

    CDocControl m_document;
    QString m_title;
    QPointer<const ProfileTable> m_table;
    ProfileKind m_kind = ProfileKind::Function;
};
