// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <array>
#include <numeric>

/// The five editing kinds. An outside caller may hand over any other number; such a kind has an
/// empty grid, no caption and no files.
enum class ProfileKind : int { Function = -1, Annual = 0, Monthly = 1, Weekly = 2, Daily = 3 };

/// What the first column of a kind's rows shows.
enum class RowLabels { None, Months, Weekdays, Hours };

/// All facts of one kind. Nothing else in the program repeats one of them.
struct KindDescriptor {
    // Rows and grid.
    int rows = 0;  ///< fixed number of rows; 0 for any number
    int columns = 0;
    RowLabels labels = RowLabels::None;
    std::array<QStringView, 3> headers = {};  ///< grid headers of columns 1 to 3
    std::array<QStringView, 3> pasted_headers =
        {};                                        ///< as rewritten after a whole column was pasted
    std::array<int, 3> column_widths = {0, 0, 0};  ///< pixels; 0 for the grid's own choice
    int header_height = 24;                        ///< pixels
    double default_value = 0.0;

    // Rules.
    bool coefficients = false;  ///< values are multipliers whose mean must be 1
    float typed_bound = 0.0F;   ///< largest coefficient typed or dragged
    float pasted_bound = 0.0F;  ///< largest coefficient pasted
    QStringView pasted_bound_message = {};

    // Files.
    std::array<QStringView, 2> read_keywords = {};   ///< first words of lines 1 and 2
    std::array<QStringView, 3> write_keywords = {};  ///< what stands before the "=" of lines 1 to 3
    int decimals = 0;                                ///< kept on reading
    bool fills_from_lists = true;  ///< false: starts from its defaults whatever was handed over
    QStringView folder = {};       ///< below the program's Data folder, "/" between parts
    bool save_renames = false;     ///< a save hands the file's title back as the name

    // Window and chart.
    QStringView title_prefix =
        {};  ///< before the name in the chart's title; the caption drops line breaks
    QStringView value_axis_title = {};
    QStringView index_axis_title = {};
    QStringView value_unit = {};  ///< behind a value that is read out
    QStringView time_unit = {};   ///< behind a time, of kinds with times
    double value_step = 0.0;      ///< between labels of the value axis; 0 is automatic
    int title_height = 11;        ///< per cent of the chart

    /// Pixels of all columns together; 0 when the grid shares out its own width.
    int columnsWidth() const {
        return std::accumulate(column_widths.begin(), column_widths.end(), 0);
    }

    /// The third column holds names of daily profiles.
    bool hasNames() const { return columns == 3; }
    /// The rows are points: their number is free, and column 1 holds their times.
    bool hasTimes() const { return columns > 0 && rows == 0; }
    bool hasFiles() const { return !folder.isEmpty(); }
};

/// The facts of `kind`; for a number outside -1 to 3 an empty descriptor.
const KindDescriptor& Describe(ProfileKind kind);

/// The texts of column 1, one a row, for a kind with fixed rows: month names, weekday names or
/// hours. Empty for the others.
QStringList RowLabelTexts(ProfileKind kind);
