// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QPointer>
#include <QStyledItemDelegate>

/// Makes the editors of the grid's cells: a line for the characters of numbers, or the list of
/// choices where the cell has one. An editor whose text did not change enters nothing. It stays
/// open while another window is in front. A cell whose text is too long for a line has no editor.
/// Of a number that is wider than its cell nothing is shown, lest a part of it be read for it.
class GridCellDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Whether `text` holds nothing but characters of numbers; also true of parts of one.
    static bool IsNumberText(const QString& text);

    /// Whether the cell's text is too long to be edited.
    static bool IsTooLong(const QModelIndex& index);

    /// The least width of a cell of `grid` that shows all of `text`.
    static int CellWidth(const QString& text, const QWidget& grid);

    /// The editor that is open now, or nullptr.
    QWidget* OpenEditor() const { return m_editor; }

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    QString displayText(const QVariant& value, const QLocale& locale) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    void destroyEditor(QWidget* editor, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

    /// Shows the whole text of a cell that is too narrow for it.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

signals:
    /// The user finished an entry; it is to be checked and stored.
    void EntryMade(const QModelIndex& cell, const QString& text) const;

    /// A key that ends editing was pressed in the editor: the grid commits the cell and moves.
    void EndKeyPressed(int key, Qt::KeyboardModifiers modifiers) const;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    bool MayBeTooWide(const QString& number, const QFont& font, double room) const;

    mutable QPointer<QWidget> m_editor;
    mutable QFont m_number_font;
    mutable double m_widest = 0.0;  // pixels of a character of numbers in that font
};
