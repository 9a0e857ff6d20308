// SPDX-License-Identifier: GPL-3.0-or-later
// The main dialog as drawn: every kind, light and dark, with the fonts of several desktops. And as
// assistive tools read it.

#include "Contrast.h"
#include "KindDialog.h"
#include "SystemSkips.h"
#include "chart/CGraphView.h"
#include "dialog/CSXButton.h"
#include "dialog/MeanLabel.h"

#include <QAccessible>
#include <QCheckBox>
#include <QHeaderView>
#include <QMenu>
#include <QMetaEnum>
#include <QStyleFactory>
#include <QStyleOptionButton>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

// Of text against its background, as far as large or bold text has to have it.
constexpr double kLeastContrast = 3.0;

QPalette Colours(bool dark) {
    return dark ? QPalette(QColor(60, 60, 64), QColor(40, 40, 44))
                : QPalette(QColor(240, 240, 240), QColor(239, 239, 239));
}

QHash<QRgb, int> CountColours(QWidget& widget, QRect part) {
    const QImage picture = widget.grab(part & widget.rect()).toImage();
    QHash<QRgb, int> counts;
    for (int i = 0; i < picture.width() * picture.height(); ++i)
        ++counts[picture.pixel(i % picture.width(), i / picture.width())];
    return counts;
}

// The pixels that can be told from the most frequent colour of the part.
int TextPixels(QWidget& widget, QRect part) {
    const QHash<QRgb, int> counts = CountColours(widget, part);
    const auto ground = std::max_element(counts.cbegin(), counts.cend());
    int found = 0;
    for (auto colour = counts.cbegin(); colour != counts.cend(); ++colour)
        found += Contrast(colour.key(), ground.key()) >= kLeastContrast ? colour.value() : 0;
    return found;
}

// Where a button draws its text.
QRect TextRoom(const QAbstractButton& button) {
    if (qobject_cast<const CSXButton*>(&button) != nullptr)
        return button.rect().adjusted(4 + 16 + 8, 2, -2, -2);  // beside its picture
    QStyleOptionButton option;
    option.initFrom(&button);
    option.text = button.text();
    const bool check = qobject_cast<const QCheckBox*>(&button) != nullptr;
    return button.style()->subElementRect(
        check ? QStyle::SE_CheckBoxContents : QStyle::SE_PushButtonContents, &option, &button);
}

void CheckTexts(const KindDialog& shown) {
    for (QAbstractButton* button : shown.dialog->findChildren<QAbstractButton*>()) {
        if (!button->isVisible() || button->text().isEmpty() ||
            button->parentWidget() != shown.dialog.get())
            continue;
        const QSize text = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
        const QRect room = TextRoom(*button);
        const QRect drawn(room.center() - QPoint(15, 4), QSize(30, 9));
        QVERIFY2(text.width() <= room.width() && text.height() <= button->height() &&
                     (!button->isEnabled() || TextPixels(*button, drawn) > 10),
                 qPrintable(button->objectName()));
    }
    auto* const mean = shown.dialog->findChild<MeanLabel*>();
    if (!mean->isVisible())
        return;
    QVERIFY(mean->fontMetrics().horizontalAdvance(mean->text()) <= mean->width());
    QVERIFY(TextPixels(*mean, mean->rect()) > 30);
}

void CheckGrid(const KindDialog& shown) {
    CGridControl& grid = *shown.Grid();
    QWidget& cells = *grid.viewport();
    QHeaderView& titles = *grid.horizontalHeader();
    grid.clearSelection();
    for (int column = 0; column < grid.model()->columnCount(); ++column) {
        // Each cell's text ends within what is in sight of it.
        for (int row = 0; row < 7; ++row) {
            const QRect seen = grid.visualRect(grid.model()->index(row, column)) & cells.rect();
            for (const int x : {seen.left(), seen.right() - 2})
                QCOMPARE(TextPixels(cells, QRect(x, seen.top() + 3, 2, seen.height() - 6)), 0);
        }
        const QRect title(titles.sectionViewportPosition(column) + 3, 2,
                          std::min(titles.sectionSize(column), titles.width()) - 6,
                          titles.height() - 4);
        if ((title & titles.rect()).width() > 20)
            QVERIFY2(TextPixels(titles, title) > 20, qPrintable(QString::number(column)));
        const QModelIndex index = grid.model()->index(2, column);
        const QRect cell = grid.visualRect(index);
        if (!index.data().toString().isEmpty() && (cell & cells.rect()).width() > 20)
            QVERIFY2(TextPixels(cells, cell.adjusted(2, 2, -2, -2)) > 3,
                     qPrintable(QString::number(column)));
    }
}

void CheckChart(const KindDialog& shown) {
    auto& view = *shown.dialog->findChild<CGraphView*>();
    const PlotScale scale = view.Scale();
    const int left = static_cast<int>(scale.x.from);
    const int bottom = static_cast<int>(scale.y.from);
    const int top = static_cast<int>(scale.y.to);
    // Axis titles stand at the edges, numbers and names next to the axes.
    const std::pair<QRect, int> texts[] = {
        {{4, top, 18, bottom - top}, 100},
        {{22, top, left - 8 - 22, bottom - top}, 50},
        {{left, view.height() - 24, view.width() - left - 4, 20}, 100},
        {{left, bottom + 8, view.width() - left - 4, 14}, 50},
        {{4, 4, view.width() - 8, top - 8}, 50}};
    for (const auto& [place, least] : texts)
        QVERIFY(TextPixels(view, place) > least);
    // The green lines between bars and the blue marks beside a function are brighter in the dark.
    const bool bars = shown.dialog->session().facts().rows > 0;
    const QRect lines(left - 3, top, bars ? view.width() - left : 3, bottom - top);
    const bool dark = view.palette().color(QPalette::Base).lightness() < 128;
    const QRgb given = bars ? qRgb(0, 128, 0) : qRgb(0, 0, 255);
    QCOMPARE(CountColours(view, lines).value(given) > 20, !dark);
}

// Role, name and state of all that has a name and is shown in `widget`.
QString ReadOut(QWidget* widget) {
    QAccessibleInterface* const part = QAccessible::queryAccessibleInterface(widget);
    const auto roles = QMetaEnum::fromType<QAccessible::Role>();
    QStringList found;
    for (int i = 0; i < part->childCount(); ++i) {
        QAccessibleInterface* const child = part->child(i);
        const QString name = child->text(QAccessible::Name);
        if (!child->state().invisible && !name.isEmpty())
            found.append(QString::fromLatin1(roles.valueToKey(child->role())) + u' ' + name +
                         (child->state().disabled ? u" off"_s : QString()));
    }
    return found.join(u'|');
}

}  // namespace

class LooksTest : public QObject {
    Q_OBJECT

private slots:
    void init() { SkipOnThisSystem(); }

    void initTestCase() { QApplication::setStyle(QStyleFactory::create(u"Fusion"_s)); }
    void cleanup() {
        QApplication::setFont(m_font);
        QApplication::setPalette(Colours(false));
    }

    void Dialog_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("dark");
        QTest::addColumn<int>("points");
        for (int kind = -1; kind <= 3; ++kind) {
            for (const auto& [mode, dark, points] :
                 {std::tuple(2, false, 18), std::tuple(2, true, 9), std::tuple(3, false, 9),
                  std::tuple(3, false, 18), std::tuple(3, true, 13)})
                QTest::addRow("kind %d, mode %d, %s, %d pt", kind, mode, dark ? "dark" : "light",
                              points)
                    << kind << mode << dark << points;
        }
    }
    void Dialog() {
        QFETCH(int, kind);
        QFETCH(int, mode);
        QFETCH(bool, dark);
        QFETCH(int, points);
        QFont font = m_font;
        font.setPointSize(points);
        QApplication::setFont(font);
        QApplication::setPalette(Colours(dark));
        const KindDialog shown(static_cast<ProfileKind>(kind), static_cast<DisplayMode>(mode));
        shown.Run([&] {
            CheckTexts(shown);
            CheckGrid(shown);
            if (shown.dialog->session().isViewOnly())
                return;
            CheckChart(shown);
            if (!shown.dialog->session().facts().coefficients)
                return;
            // The mean as a warning.
            shown.Click(kEdition);
            QVERIFY(shown.Grid()->ValidateEntry(1, 2, u"3"_s));
            CheckTexts(shown);
        });
    }

    // What a screen reader finds in the dialog, in its menu and, pressing Add, in the dialog of
    // that.
    void AssistiveTools() {
        const KindDialog shown(8);
        shown.Run([&] {
            QCOMPARE(ReadOut(shown.dialog.get()),
                     u"Table 5000|Button Ouvrir|Button Enregistrer off|Button Enregistrer sous|"
                     "Button Annuler off|Button Refaire off|Button Copier|Button Coller|"
                     "Button Menu|Button Add|Button Remove|CheckBox Edition off|Button Ajuster "
                     "off|Button OK|"
                     "Button Cancel|Client Chart|Client Largeur du tableau"_s);
            auto* const menu = shown.dialog->findChild<QMenu*>();
            menu->popup({});
            QCOMPARE(ReadOut(menu),
                     u"MenuItem Ouvrir|MenuItem Enregistrer|MenuItem Enregistrer sous|"
                     "MenuItem Annuler off|MenuItem Refaire off|MenuItem Copier|"
                     "MenuItem Coller|MenuItem Points|MenuItem Graphique|MenuItem Aide-mémoire"_s);
            menu->close();

            shown.Grid()->SelectCell(2, 2);
            auto* const grid =
                QAccessible::queryAccessibleInterface(shown.Grid())->tableInterface();
            QCOMPARE(QSize(grid->columnCount(), grid->rowCount()), QSize(2, 8));
            QCOMPARE(grid->columnDescription(1), u"Value"_s);
            QCOMPARE(grid->cellAt(1, 1)->text(QAccessible::Name), u"1050"_s);
            QVERIFY(grid->cellAt(1, 1)->state().focused && !grid->cellAt(1, 0)->state().focused);

            QString fields;
            QTimer opened;
            connect(&opened, &QTimer::timeout, this, [&] {
                auto* const add = qobject_cast<CDlgAjout*>(QApplication::activeModalWidget());
                if (add == nullptr)
                    return;
                fields = ReadOut(add);
                add->close();
            });
            opened.start(0);
            QAccessible::queryAccessibleInterface(shown.Control(kAdd))
                ->actionInterface()
                ->doAction(QAccessibleActionInterface::pressAction());
            QTRY_VERIFY(!fields.isEmpty());
            QCOMPARE(fields,
                     u"EditableText X - Axis|EditableText Y - Axis|StaticText X - Axis|"
                     "StaticText Y - Axis|Button OK|Button Cancel"_s);
        });
    }

private:
    QFont m_font = QApplication::font();
};

QTEST_MAIN(LooksTest)
#include "LooksTest.moc"
