// SPDX-License-Identifier: GPL-3.0-or-later
// The main dialog as drawn: every kind, light and dark, with the fonts of several desktops. And as
// assistive tools read it.

#include "Contrast.h"
#include "KindDialog.h"
#include "RunDialog.h"
#include "chart/CGraphControl.h"
#include "chart/CGraphView.h"
#include "dialog/CSXButton.h"
#include "dialog/MeanLabel.h"
#include "grid/CGridControl.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QHeaderView>
#include <QMenu>
#include <QMetaEnum>
#include <QPushButton>
#include <QStyleFactory>
#include <QStyleOptionButton>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

// Of text against its background, as far as large or bold text has to have it.
constexpr double kLeastContrast = 3.0;

QPalette Colours(bool dark) {
    return dark ? QPalette(QColor(60, 60, 64), QColor(40, 40, 44))
                : QPalette(QColor(240, 240, 240), QColor(239, 239, 239));
}

QHash<QRgb, int> CountColours(const QImage& picture, QRect part) {
    QHash<QRgb, int> counts;
    part &= picture.rect();
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x)
            ++counts[picture.pixel(x, y)];
    }
    return counts;
}

// The pixels that can be told from the most frequent colour of the part.
int TextPixels(const QImage& picture, QRect part) {
    const QHash<QRgb, int> counts = CountColours(picture, part);
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

// Role, name and state of all that has a name and is shown in `part`; a table counts as one.
QString ReadOut(QAccessibleInterface* part) {
    QStringList found;
    for (int i = 0; i < part->childCount(); ++i) {
        QAccessibleInterface* const child = part->child(i);
        const QString name = child->text(QAccessible::Name);
        if (child->state().invisible || name.isEmpty())
            continue;
        const auto roles = QMetaEnum::fromType<QAccessible::Role>();
        found.append(QString::fromLatin1(roles.valueToKey(child->role())) + u' ' + name +
                     (child->state().disabled ? u" off"_s : QString()));
        if (child->tableInterface() == nullptr && child->childCount() > 0)
            found.append(ReadOut(child));
    }
    found.removeAll(QString());
    return found.join(u'|');
}

QString ReadOut(QWidget* widget) {
    return ReadOut(QAccessible::queryAccessibleInterface(widget));
}

}  // namespace

class LooksTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void Dialog_data();
    void Dialog();
    void AssistiveTools();
    void cleanup();

private:
    static void CheckPlaces(const KindDialog& shown);
    static void CheckTexts(const KindDialog& shown, const QImage& picture);
    static void CheckGrid(const KindDialog& shown);
    static void CheckChart(const KindDialog& shown);
    static void CheckWarning(const KindDialog& shown);

    QFont m_font = QApplication::font();
};

void LooksTest::initTestCase() {
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
}

void LooksTest::cleanup() {
    QApplication::setFont(m_font);
    QApplication::setPalette(Colours(false));
}

void LooksTest::Dialog_data() {
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("dark");
    QTest::addColumn<int>("points");
    for (int kind = -1; kind <= 3; ++kind) {
        for (const int mode : {2, 3}) {
            for (const bool dark : {false, true}) {
                for (const int points : {9, 13, 18}) {
                    QTest::addRow("kind %d, mode %d, %s, %d pt", kind, mode,
                                  dark ? "dark" : "light", points)
                        << kind << mode << dark << points;
                }
            }
        }
    }
}

void LooksTest::Dialog() {
    QFETCH(int, kind);
    QFETCH(int, mode);
    QFETCH(bool, dark);
    QFETCH(int, points);
    QFont font = m_font;
    font.setPointSize(points);
    QApplication::setFont(font);
    QApplication::setPalette(Colours(dark));
    const KindDialog shown(static_cast<ProfileKind>(kind), static_cast<DisplayMode>(mode));
    RunDialog(*shown.dialog, [&] {
        CheckPlaces(shown);
        CheckTexts(shown, shown.dialog->grab().toImage());
        CheckGrid(shown);
        if (shown.dialog->session().isViewOnly())
            return;
        CheckChart(shown);
        if (shown.dialog->session().facts().coefficients)
            CheckWarning(shown);
    });
}

void LooksTest::CheckPlaces(const KindDialog& shown) {
    QList<const QWidget*> parts;
    for (const QWidget* part : shown.dialog->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        // The chart stands over its frame.
        const bool frame =
            shown.dialog->findChild<CGraphView*>() != nullptr && part == shown.Control(kChartFrame);
        if (part->isVisible() && !part->isWindow() && !frame)
            parts.append(part);
    }
    QVERIFY(parts.size() > 10);
    for (qsizetype i = 0; i < parts.size(); ++i) {
        QVERIFY2(shown.dialog->rect().contains(parts[i]->geometry()),
                 qPrintable(parts[i]->objectName()));
        for (qsizetype k = 0; k < i; ++k)
            QVERIFY2(!parts[i]->geometry().intersects(parts[k]->geometry()),
                     qPrintable(parts[i]->objectName() + u" and "_s + parts[k]->objectName()));
    }
}

void LooksTest::CheckTexts(const KindDialog& shown, const QImage& picture) {
    for (const QAbstractButton* button : shown.dialog->findChildren<QAbstractButton*>()) {
        if (!button->isVisible() || button->text().isEmpty() ||
            button->parentWidget() != shown.dialog.get())
            continue;
        const QSize text = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
        const QRect room = TextRoom(*button);
        QVERIFY2(text.width() <= room.width() && text.height() <= button->height(),
                 qPrintable(button->objectName()));
        const QRect drawn(button->mapTo(shown.dialog.get(), room.center()) - QPoint(15, 4),
                          QSize(30, 9));
        if (button->isEnabled())
            QVERIFY2(TextPixels(picture, drawn) > 10, qPrintable(button->objectName()));
    }
    const auto* const mean = shown.dialog->findChild<MeanLabel*>();
    if (!mean->isVisible())
        return;
    QVERIFY(mean->fontMetrics().horizontalAdvance(mean->text()) <= mean->width());
    QVERIFY(TextPixels(picture, mean->geometry()) > 30);
}

void LooksTest::CheckGrid(const KindDialog& shown) {
    auto* const grid = shown.dialog->findChild<CGridControl*>();
    grid->clearSelection();
    const QImage header = grid->horizontalHeader()->grab().toImage();
    const QImage cells = grid->viewport()->grab().toImage();
    for (int column = 0; column < grid->model()->columnCount(); ++column) {
        // Each cell's text ends within what is in sight of it.
        for (int row = 0; row < 7; ++row) {
            const QRect seen = grid->visualRect(grid->model()->index(row, column)) & cells.rect();
            for (const int x : {seen.left(), seen.right() - 2})
                QCOMPARE(TextPixels(cells, QRect(x, seen.top() + 3, 2, seen.height() - 6)), 0);
        }
        QHeaderView* const titles = grid->horizontalHeader();
        const QRect title(titles->sectionViewportPosition(column) + 3, 2,
                          std::min(titles->sectionSize(column), titles->width()) - 6,
                          titles->height() - 4);
        if ((title & header.rect()).width() > 20)
            QVERIFY2(TextPixels(header, title) > 20, qPrintable(QString::number(column)));
        const QModelIndex index = grid->model()->index(2, column);
        const QRect cell = grid->visualRect(index);
        if (!index.data().toString().isEmpty() && (cell & cells.rect()).width() > 20)
            QVERIFY2(TextPixels(cells, cell.adjusted(2, 2, -2, -2)) > 3,
                     qPrintable(QString::number(column)));
    }
}

void LooksTest::CheckChart(const KindDialog& shown) {
    // The texts beside, below and above the axes, then the items.
    auto* const view = shown.dialog->findChild<CGraphView*>();
    const QImage picture = view->grab().toImage();
    const QRect whole = view->rect();
    const PlotScale scale = view->Scale();
    const int left = static_cast<int>(scale.x.from);
    const int bottom = static_cast<int>(scale.y.from);
    const int top = static_cast<int>(scale.y.to);
    const int tick = 8;
    QVERIFY(left > 30 && whole.height() - bottom > 30);
    // Axis titles stand at the edges, numbers and names next to the axes.
    QVERIFY(TextPixels(picture, QRect(4, top, 18, bottom - top)) > 100);
    QVERIFY(TextPixels(picture, QRect(22, top, left - tick - 22, bottom - top)) > 50);
    QVERIFY(TextPixels(picture, QRect(left, whole.height() - 24, whole.width() - left - 4, 20)) >
            100);
    QVERIFY(TextPixels(picture, QRect(left, bottom + tick, whole.width() - left - 4, 14)) > 50);
    QVERIFY(TextPixels(picture, QRect(4, 4, whole.width() - 8, top - tick)) > 50);
    const auto colour = [](Colour part) { return qRgb(part.red, part.green, part.blue); };
    const CDocControl& chart = shown.dialog->findChild<CGraphControl*>()->document();
    const QHash<QRgb, int> counts =
        CountColours(picture, QRect(QPoint(left, top), QPoint(whole.width() - 4, bottom)));
    QVERIFY(counts.value(colour(chart.item_style.colour)) > 12 * 20);
    QVERIFY(counts.value(colour(chart.highlighted_style.colour)) > 20);

    // The blue marks between the labels of a function, the green lines between bars.
    const bool bars = chart.display.form == DisplayForm::Bars;
    const QRgb given = bars ? qRgb(0, 128, 0) : qRgb(0, 0, 255);
    const QRgb ground = view->palette().color(QPalette::Base).rgb();
    const QHash<QRgb, int> lines =
        bars ? counts : CountColours(picture, QRect(left - 3, top, 3, bottom - top));
    int seen = 0;
    for (auto line = lines.cbegin(); line != lines.cend(); ++line) {
        const QColor own(line.key());
        const bool same_hue = std::abs(own.hslHue() - QColor(given).hslHue()) < 3;
        if (qGray(ground) > 128 ? line.key() == given
                                : same_hue && Contrast(line.key(), ground) >= kLeastContrast)
            seen += line.value();
    }
    QVERIFY(seen > 20);
}

void LooksTest::CheckWarning(const KindDialog& shown) {
    const auto* const mean = shown.dialog->findChild<MeanLabel*>();
    qobject_cast<QAbstractButton*>(shown.Control(kEdition))->click();
    QVERIFY(shown.dialog->findChild<CGridControl*>()->ValidateEntry(1, 2, u"3"_s));
    QVERIFY(mean->text() != u"Moyenne : 1.000"_s);
    QVERIFY(TextPixels(shown.dialog->grab().toImage(), mean->geometry()) > 30);
}

// What a screen reader finds in the dialog, in its menu and, pressing Add, in the dialog of that.
void LooksTest::AssistiveTools() {
    const KindDialog shown(ProfileKind::Function, DisplayMode::Edit, 8);
    shown.Run([&] {
        QCOMPARE(ReadOut(shown.dialog.get()),
                 u"Table 5000|Button Ouvrir|Button Enregistrer off|Button Enregistrer sous|"
                 "Button Annuler off|Button Refaire off|Button Copier|Button Coller|Button Add|"
                 "Button Remove|CheckBox Edition off|Button Ajuster off|Button OK|Button Cancel|"
                 "Client Chart"_s);
        auto* const menu = shown.dialog->findChild<QMenu*>();
        menu->popup({});
        QCOMPARE(ReadOut(menu),
                 u"MenuItem Ouvrir|MenuItem Enregistrer|MenuItem Enregistrer sous|"
                 "MenuItem Annuler off|MenuItem Refaire off|MenuItem Copier|"
                 "MenuItem Coller"_s);
        menu->close();

        shown.Grid()->SelectCell(2, 2);
        auto* const grid = QAccessible::queryAccessibleInterface(shown.Grid())->tableInterface();
        QCOMPARE(QSize(grid->columnCount(), grid->rowCount()), QSize(2, 8));
        QCOMPARE(grid->columnDescription(0) + u' ' + grid->columnDescription(1), u"Time Value"_s);
        QCOMPARE(grid->cellAt(1, 0)->text(QAccessible::Name), u"1"_s);
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

QTEST_MAIN(LooksTest)
#include "LooksTest.moc"
