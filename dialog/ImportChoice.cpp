// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/ImportChoice.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString SeparatorCaption(ColumnSeparator separator) {
    switch (separator) {
        case ColumnSeparator::Tab: return u"Tabulation"_s;
        case ColumnSeparator::Semicolon: return u"Point-virgule"_s;
        case ColumnSeparator::Comma: return u"Virgule"_s;
        case ColumnSeparator::Blanks: return u"Espaces"_s;
        case ColumnSeparator::WideBlanks: return u"Deux espaces ou plus"_s;
        case ColumnSeparator::None: break;
    }
    return u"Aucun"_s;
}

// Those that the file itself suggests, then all others.
QList<PointLayout> AllLayouts(const PointFile& file) {
    using enum ColumnSeparator;
    QList<PointLayout> layouts = file.layouts();
    for (const ColumnSeparator separator : {Tab, Semicolon, Comma, Blanks, WideBlanks, None}) {
        const bool is_there =
            std::any_of(layouts.cbegin(), layouts.cend(),
                        [=](const PointLayout& layout) { return layout.separator == separator; });
        if (!is_there)
            layouts.append({separator, 0, {}});
    }
    return layouts;
}

}  // namespace

ImportChoice::ImportChoice(const PointFile& file) : m_file(file), m_layouts(AllLayouts(file)) {
    SelectSeparator(0);
}

QStringList ImportChoice::Separators() const {
    QStringList captions;
    for (const PointLayout& layout : m_layouts)
        captions.append(SeparatorCaption(layout.separator));
    return captions;
}

void ImportChoice::SelectSeparator(int index) {
    PointLayout layout = m_layouts[index];
    m_preview = m_file.Preview(layout.separator);
    m_column_count = 1;
    for (const QStringList& line : std::as_const(m_preview))
        m_column_count = std::max(m_column_count, static_cast<int>(line.size()));
    if (layout.numeric.isEmpty())
        layout.numeric = m_column_count > 1 ? QList<qsizetype>{0, 1} : QList<qsizetype>{0};
    m_columns = PointFile::ColumnsOf(layout);
}

QStringList ImportChoice::TimeChoices() const {
    return QStringList(u"0, 1, 2, ... heures"_s) + ValueChoices();
}

// A column's number and, where the first line is a header, its text there.
QStringList ImportChoice::ValueChoices() const {
    const QStringList first = m_preview.value(0);
    const bool has_header = std::none_of(first.cbegin(), first.cend(), BeginsLikeNumber);
    QStringList choices;
    for (int column = 0; column < m_column_count; ++column) {
        const QString title = has_header ? first.value(column) : QString();
        choices.append(u"Colonne %1"_s.arg(column + 1) +
                       (title.isEmpty() ? QString() : u" : "_s + title));
    }
    return choices;
}

QStringList ImportChoice::PreviewHeaders() const {
    QStringList headers;
    for (int column = 0; column < m_column_count; ++column) {
        QString header = QString::number(column + 1);
        if (column == m_columns.time)
            header += u" : temps"_s;
        else if (column == m_columns.value)
            header += u" : valeurs"_s;
        headers.append(header);
    }
    return headers;
}
