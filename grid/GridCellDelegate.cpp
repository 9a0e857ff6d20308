// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/GridCellDelegate.h"

#include "base/EnglishAtof.h"
#include "base/ShownText.h"
#include "profiles/ProfileTable.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFontMetricsF>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QStyle>
#include <QTextDocument>
#include <QToolTip>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

// Always shows its choices: a closed list would take an arrow key for a choice, and two of the
// choices are commands.
class ChoiceList : public QComboBox {
    Q_OBJECT

public:
    using QComboBox::QComboBox;

    void hidePopup() override {
        QComboBox::hidePopup();
        emit Closed();
    }

signals:
    void Closed();
};

namespace {

// The line would cut a longer text, which must come back as it was.
constexpr int kLongestEdited = 32'767;

// Beside a text, as the toolkit draws it.
int TextMargin(const QStyle& style, const QWidget* grid) {
    return style.pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, grid) + 1;
}

QStringList ChoicesOf(const QModelIndex& index) {
    return index.data(ProfileTable::kChoicesRole).toStringList();
}

// Digits, signs, separators and the exponent's letter.
const QRegularExpression& NumberCharacters() {
    static const QRegularExpression characters(u"\\A[-+0-9.,eE]*\\z"_s);
    return characters;
}

// Some platforms give a line further letters, as Ctrl+E for its end. They belong to the dialog.
bool IsCommandKey(const QKeyEvent& press) {
    constexpr std::array<int, 6> kOfLines = {Qt::Key_A, Qt::Key_C, Qt::Key_V,
                                             Qt::Key_X, Qt::Key_Y, Qt::Key_Z};
    return press.modifiers() == Qt::ControlModifier && press.key() >= Qt::Key_A &&
           press.key() <= Qt::Key_Z &&
           std::find(kOfLines.begin(), kOfLines.end(), press.key()) == kOfLines.end();
}

}  // namespace

bool GridCellDelegate::IsNumberText(const QString& text) {
    return NumberCharacters().match(text).hasMatch();
}

bool GridCellDelegate::IsTooLong(const QModelIndex& index) {
    return index.data(Qt::EditRole).toString().size() > kLongestEdited;
}

int GridCellDelegate::CellWidth(const QString& text, const QWidget& grid) {
    const QFontMetricsF metrics(grid.font());
    const double width = metrics.horizontalAdvance(ShownText(text, kMaxCellLength));
    return static_cast<int>(std::ceil(width)) + 2 * TextMargin(*grid.style(), &grid);
}

QWidget* GridCellDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                        const QModelIndex& index) const {
    if (const QStringList choices = ChoicesOf(index); !choices.isEmpty()) {
        auto* const list = new ChoiceList(parent);
        list->addItems(choices);
        // A choice made in the list is an entry of its own, there is nothing further to confirm; a
        // list that closes without one leaves the cell.
        auto* const self = const_cast<GridCellDelegate*>(this);
        connect(list, &QComboBox::activated, self, [self, list] { emit self->commitData(list); });
        connect(
            list, &ChoiceList::Closed, self,
            [self, list] {
                if (self->m_editor == list)
                    emit self->closeEditor(list);
            },
            Qt::QueuedConnection);
        QMetaObject::invokeMethod(list, &QComboBox::showPopup, Qt::QueuedConnection);
        m_editor = list;
        return list;
    }
    if (IsTooLong(index))
        return nullptr;
    auto* const line = new QLineEdit(parent);
    line->setFrame(false);
    line->setAlignment(Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt()));
    line->setValidator(new QRegularExpressionValidator(NumberCharacters(), line));
    m_editor = line;
    return line;
}

QString GridCellDelegate::displayText(const QVariant& value, const QLocale& locale) const {
    return QStyledItemDelegate::displayText(ShownText(value.toString(), kMaxCellLength), locale);
}

// Most numbers have too few characters for that, so that they need not be measured.
bool GridCellDelegate::MayBeTooWide(const QString& number, const QFont& font, double room) const {
    if (m_widest == 0.0 || font != m_number_font) {
        m_number_font = font;
        m_widest = 0.0;
        for (const QChar character : u"0123456789+-.eE"_s)
            m_widest = std::max(m_widest, QFontMetricsF(font).horizontalAdvance(character));
    }
    return static_cast<double>(number.size()) * m_widest > room;
}

void GridCellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QStyle& style = cell.widget != nullptr ? *cell.widget->style() : *QApplication::style();
    const double room = cell.rect.width() - 2 * TextMargin(style, cell.widget);
    if (index.column() + 1 != ProfileTable::kNameColumn &&
        MayBeTooWide(cell.text, cell.font, room) &&
        QFontMetricsF(cell.font).horizontalAdvance(cell.text) > room &&
        IsNumber(QStringView(cell.text).left(kMaxCellLength)))
        cell.text = u"####"_s;
    style.drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
}

// A closed editor lives on until the event loop deletes it, but it is no longer open.
void GridCellDelegate::destroyEditor(QWidget* editor, const QModelIndex& index) const {
    if (editor == m_editor)
        m_editor = nullptr;
    QStyledItemDelegate::destroyEditor(editor, index);
}

void GridCellDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    const QString text = index.data(Qt::EditRole).toString();
    if (auto* const list = qobject_cast<QComboBox*>(editor)) {
        list->setCurrentIndex(list->findText(text));
        return;
    }
    auto* const line = qobject_cast<QLineEdit*>(editor);
    // A text that no number can hold came with the file; it must stay editable, not vanish.
    line->setText(text);
    line->selectAll();
}

void GridCellDelegate::setModelData(QWidget* editor, QAbstractItemModel* /*model*/,
                                    const QModelIndex& index) const {
    const auto* const list = qobject_cast<QComboBox*>(editor);
    if (list != nullptr && list->currentIndex() < 0)
        return;
    const QString text =
        list != nullptr ? list->currentText() : qobject_cast<QLineEdit*>(editor)->text();
    if (text != index.data(Qt::EditRole).toString())
        emit EntryMade(index, text);
}

void GridCellDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                            const QModelIndex& /*index*/) const {
    editor->setGeometry(option.rect);
}

bool GridCellDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                 const QStyleOptionViewItem& option, const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip)
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    QString text;
    if (sizeHint(option, index).width() > option.rect.width())
        text = ShownText(index.data().toString(), kMaxMessageLength);
    // A name is never taken for markup.
    if (Qt::mightBeRichText(text))
        text = Qt::convertFromPlainText(text);
    QToolTip::showText(event->globalPos(), text, view);
    return true;
}

bool GridCellDelegate::eventFilter(QObject* object, QEvent* event) {
    // Only the window went to the back; a message box is a window too.
    if (event->type() == QEvent::FocusOut &&
        static_cast<QFocusEvent*>(event)->reason() == Qt::ActiveWindowFocusReason)
        return false;
    if (event->type() == QEvent::ShortcutOverride && object == m_editor &&
        IsCommandKey(*static_cast<QKeyEvent*>(event))) {
        event->ignore();
        return true;
    }
    if (event->type() == QEvent::KeyPress && object == m_editor) {
        const auto* const press = static_cast<QKeyEvent*>(event);
        const int key = press->key();
        switch (key) {
            case Qt::Key_Return:
            case Qt::Key_Enter:
            case Qt::Key_Tab:
            case Qt::Key_Backtab: emit EndKeyPressed(key, press->modifiers()); return true;
            case Qt::Key_Up:
            case Qt::Key_Down:
                if (qobject_cast<QLineEdit*>(object) != nullptr) {
                    emit EndKeyPressed(key, press->modifiers());
                    return true;
                }
                break;
            default: break;
        }
    }
    return QStyledItemDelegate::eventFilter(object, event);
}

#include "GridCellDelegate.moc"
