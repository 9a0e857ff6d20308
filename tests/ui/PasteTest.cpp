// SPDX-License-Identifier: GPL-3.0-or-later
// Copy and paste between the grid and the system clipboard.

#include "KindDialog.h"
#include "SessionChecks.h"
#include "ShownGrid.h"
#include "VectorFile.h"
#include "grid/PasteStore.h"
#include "profiles/EntryStore.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QRandomGenerator>
#include <QSignalSpy>

#include <numeric>

using namespace Qt::StringLiterals;

namespace {

using enum ProfileKind;

const QString kWrong = u"La valeur entrée\nn'est pas correcte."_s;

QString NotPasted(int count, int row) {
    return u"%1 cellules n'ont pas été collées,\nla première à la ligne %2."_s.arg(count).arg(row);
}

QString ClipboardText() {
    return QGuiApplication::clipboard()->text();
}

// What the user does in a case of pastes.json, step by step. A step is done in this order: messages
// to come, edit (row, column, text), edition, undo and redo (how often), remove (rows), select
// (top, left, bottom; row 0 is the header), click (1 left, 2 right), copy (null when refused),
// paste (null for the last copy). Texts are joined as for `Texts`. Copy and paste change nothing
// but the columns and headers that the step names.
class Steps {
public:
    explicit Steps(const QJsonObject& given)
        : m_shown(VectorKind(given[u"kind"]), given[u"points"].toString(),
                  given[u"values"].toString(), static_cast<DisplayMode>(given[u"mode"].toInt(3))),
          m_session(*m_shown.session),
          m_start(CellsOf(m_session.table())) {
        QGuiApplication::clipboard()->clear();
    }

    void Do(const QJsonObject& step) {
        for (const QString& message : VectorStrings(step[u"messages"]))
            m_shown.messages.Expect(message);
        Edit(step);
        Select(step);
        Cells expected = CellsOf(m_session.table());
        const bool could_undo = m_session.canUndo();
        const bool could_redo = m_session.canRedo();
        const QStringList headers = m_shown.Headers();
        if (step.contains(u"copy"))
            Copy(step[u"copy"]);
        if (step.contains(u"paste"))
            Paste(step[u"paste"]);

        const QJsonObject columns = step[u"columns"].toObject();
        for (auto column = columns.begin(); column != columns.end(); ++column)
            expected[column.key().toInt() - 1] = Texts(column.value().toString());
        QCOMPARE(CellsOf(m_session.table()), expected);
        QCOMPARE(m_shown.Headers().join(u'|'), step[u"headers"].toString(headers.join(u'|')));
        // Only what differs from the start can be undone, and what changes nothing
        // keeps the steps.
        QCOMPARE(m_session.canUndo(), !SameCells(m_session, expected, m_start));
        if (columns.isEmpty())
            QVERIFY(m_session.canUndo() == could_undo && m_session.canRedo() == could_redo);
        QVERIFY2(m_shown.messages.Done(), qPrintable(m_shown.messages.Report()));
    }

    void UndoAll() {
        QList<Cells> states;
        QCOMPARE(CheckHistory(m_session, &states), QString());
        QVERIFY(SameCells(m_session, states.last(), m_start));
    }

private:
    void Edit(const QJsonObject& step) {
        if (const QJsonArray edit = step[u"edit"].toArray(); !edit.isEmpty())
            QVERIFY(StoreEntry(m_session, edit[0].toInt(), edit[1].toInt(), edit[2].toString()));
        if (step.contains(u"edition"))
            m_session.SetEdition(step[u"edition"].toBool());
        for (int i = 0; i < step[u"undo"].toInt(); ++i)
            QVERIFY(m_session.Undo());
        for (int i = 0; i < step[u"redo"].toInt(); ++i)
            QVERIFY(m_session.Redo());
        if (step.contains(u"remove")) {
            QList<int> rows;
            for (const QJsonValue& row : step[u"remove"].toArray())
                rows.append(row.toInt());
            QVERIFY(m_session.RemoveRows(rows));
            m_start = CellsOf(m_session.table());
        }
    }

    void Select(const QJsonObject& step) {
        const QJsonArray cells = step[u"select"].toArray();
        const int top = cells[0].toInt();
        const int left = cells[1].toInt();
        if (!cells.isEmpty())
            m_shown.Select({top, left, cells[2].toInt(top), left});
        else if (step.contains(u"select"))
            m_shown.grid->clearSelection();
        if (const int button = step[u"click"].toInt(); button != 0)
            QTest::mouseClick(m_shown.grid->viewport(), Qt::MouseButton(button), {}, {10, 10});
    }

    // What was copied before stays when a copy is refused.
    void Copy(const QJsonValue& copied) {
        const QString before = ClipboardText();
        QCOMPARE(m_shown.grid->CopySelection(), !copied.isNull());
        QCOMPARE(ClipboardText(), copied.isNull() ? before : Texts(copied.toString()).join(u'\n'));
    }

    // The text of another program or else the last copy.
    void Paste(const QJsonValue& text) {
        if (!text.isNull())
            QGuiApplication::clipboard()->setText(Texts(text.toString()).join(u'\n'));
        m_shown.grid->PasteSelection();
    }

    ShownGrid m_shown;
    ProfileSession& m_session;
    Cells m_start;
};

}  // namespace

class PasteTest : public QObject {
    Q_OBJECT

private slots:
    void Pastes_data() { AddVectorRows("pastes"); }
    void Pastes() {
        QFETCH(const QJsonObject, vector);
        Steps steps(vector);
        for (const QJsonValue& step : vector[u"steps"].toArray()) {
            steps.Do(step.toObject());
            if (QTest::currentTestFailed()) {
                qWarning() << "in" << step;
                return;
            }
        }
        steps.UndoAll();
    }

    void SavedNoMore() {
        ShownGrid shown(Weekly);
        shown.SaveAs(shown.Path(u"semaine.dat"_s));
        QVERIFY(shown.session->isSaved());
        shown.grid->PasteSelection();
        QVERIFY(!shown.session->isSaved());
    }

    // A paste leaves what the same texts leave that are typed one after the
    // other, whatever the order of the rows and of the texts.
    void PastedAsTyped() {
        const QStringList times = Texts(u"1.0|1|2.50|0|2|3|1e1|7|0.1234567890123456|-4|host"_s);
        const QStringList entries = Texts(u"1,0|1|2.50|0|2|3|11|7.0|0.1234567890123456|-5|x|"_s);
        QRandomGenerator random(12);
        int kinds = 0;  // of texts: the fewer, the more twins
        const auto any = [&](const QStringList& texts) {
            return texts[random.bounded(std::min(static_cast<int>(texts.size()), kinds))];
        };
        for (int round = 0; round < 1000; ++round) {
            SessionBench pasted;
            SessionBench typed;
            kinds = 1 + round % 13;
            const int count = 1 + random.bounded(round % 7 == 0 ? 60 : 8);
            for (int row = 0; row < count; ++row) {
                pasted.times += round % 2 == 0 ? any(times) : QString::number(row / 2);
                pasted.values += QString::number(row % (1 + round % 4)) +
                                 (round % 3 == 0 ? u".50"_s : QString());
            }
            typed.times = pasted.times;
            typed.values = pasted.values;
            QVERIFY(pasted.Start(pasted.Setup(Function)) && typed.Start(typed.Setup(Function)));
            const int first = 1 + random.bounded(count);
            const int first_column = 1 + random.bounded(2);
            QList<QStringList> cells(1 + random.bounded(count + 1 - first));
            for (QStringList& line : cells)
                line = {any(entries), any(entries)};
            if (first_column == 2 || random.bounded(2) == 0) {
                for (QStringList& line : cells)
                    line.removeLast();
            }

            QList<int> refused;
            for (int column = 2; column >= first_column; --column) {
                QList<int> rows(cells.size());
                std::iota(rows.begin(), rows.end(), first);
                for (qsizetype i = 0; i < cells.size(); ++i) {
                    if (column - first_column >= cells[i].size())
                        continue;
                    const int from = rows[i];
                    const auto to =
                        StoreEntry(*typed.session, from, column, cells[i][column - first_column]);
                    if (!to) {
                        refused.append(first + static_cast<int>(i));
                        continue;
                    }
                    for (int& row : rows) {
                        if (row > from && row <= *to)
                            --row;
                        else if (row < from && row >= *to)
                            ++row;
                    }
                    rows[i] = *to;
                }
            }
            MessageScript messages;
            if (!refused.isEmpty())
                messages.Expect(kWrong);
            if (refused.size() > 1)
                messages.Expect(NotPasted(static_cast<int>(refused.size()), refused.first()));
            const QSignalSpy changes(&pasted.session->table(), &QAbstractItemModel::dataChanged);
            StorePaste(*pasted.session, cells, first, first_column, PasteSource::Foreign);
            QVERIFY2(messages.Done(), qPrintable(messages.Report()));
            QVERIFY(changes.size() <= 3);
            QCOMPARE(pasted.session->isModified(), typed.session->isModified());
            bool undone = true;
            while (undone) {
                QCOMPARE(pasted.Column(1), typed.Column(1));
                QCOMPARE(pasted.Column(2), typed.Column(2));
                undone = typed.session->Undo();
                QCOMPARE(pasted.session->Undo(), undone);
            }
            while (typed.session->Redo())
                QVERIFY(pasted.session->Redo());
            QCOMPARE(pasted.Column(1), typed.Column(1));
            QCOMPARE(pasted.Column(2), typed.Column(2));
        }
    }

    // All keys that the platform has for copying and pasting run the commands, or
    // nothing.
    void Keys() {
        const MessageScript messages;
        for (const auto& [mode, copied] :
             {std::pair(DisplayMode::Edit, u"1100"_s), std::pair(DisplayMode::View, u"old"_s)}) {
            for (const auto& [copy, paste] :
                 {std::pair(Qt::Key_C, Qt::Key_V), std::pair(Qt::Key_Insert, Qt::Key_Insert)}) {
                const KindDialog shown(Function, mode);
                shown.Run([&, copy = copy, paste = paste, copied = copied] {
                    QGuiApplication::clipboard()->setText(u"old"_s);
                    const auto press = [&](Qt::Key key, Qt::KeyboardModifier modifier) {
                        QTest::keyClick(shown.dialog->windowHandle(), key, modifier);
                    };
                    const QString before = shown.Column(2).value(4);
                    shown.Grid()->SelectCell(3, 2);
                    press(copy, Qt::ControlModifier);
                    QCOMPARE(ClipboardText(), copied);
                    shown.Grid()->SelectCell(5, 2);
                    press(paste, paste == Qt::Key_V ? Qt::ControlModifier : Qt::ShiftModifier);
                    QCOMPARE(shown.Column(2).value(4), mode == DisplayMode::View ? before : copied);
                });
            }
        }
    }
};

QTEST_MAIN(PasteTest)
#include "PasteTest.moc"
