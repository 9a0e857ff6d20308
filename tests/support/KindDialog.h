// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "RunDialog.h"
#include "base/Cp1252.h"
#include "chart/CGraphControl.h"
#include "dialog/CDlgAjout.h"
#include "grid/CGridControl.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QTemporaryFile>
#include <QTest>

#include <memory>

using namespace Id;

/// A dialog of any kind over plausible rows: handed over in mode Edit, else read from a file.
struct KindDialog {
    explicit KindDialog(ProfileKind kind, DisplayMode mode = DisplayMode::Edit, int points = 13) {
        const KindDescriptor& facts = Describe(kind);
        const int rows = facts.rows > 0 ? facts.rows : points;
        for (int row = 0; row < rows; ++row) {
            times.append(QString::number(row));
            values.append(facts.coefficients ? QStringLiteral("1")
                                             : QString::number(1000 + 50 * row));
            names.append(QStringLiteral("Constant"));
        }
        SessionSetup setup;
        setup.kind = kind;
        setup.mode = mode;
        setup.name = name;
        setup.times = times;
        setup.values = values;
        setup.names = names;
        if (mode != DisplayMode::Edit)
            setup.text = WriteFile(facts);
        dialog = std::make_unique<CDlgGridChart>(std::move(setup));
    }

    /// On a function with the points (0, 1000), (1, 1050), (2, 1100), ...
    explicit KindDialog(int points)
        : KindDialog(ProfileKind::Function, DisplayMode::Edit, points) {}

    explicit KindDialog(std::unique_ptr<CDlgGridChart> any) : dialog(std::move(any)) {}

    /// The control of that id; null when there is none.
    QWidget* Control(int id) const { return Control(*dialog, id); }
    static QWidget* Control(const CDlgGridChart& any, int id) {
        const QString start = QString::number(id) + u'_';
        for (QWidget* const child : any.findChildren<QWidget*>()) {
            if (child->objectName().startsWith(start) &&
                child->objectName() != QStringLiteral("5001_Chart"))
                return child;
        }
        return nullptr;
    }
    QRect Place(int id) const { return Control(id)->geometry(); }
    QAbstractButton* Button(int id) const { return qobject_cast<QAbstractButton*>(Control(id)); }
    void Click(int id) const { Click(*dialog, id); }
    static void Click(const CDlgGridChart& any, int id) {
        QTest::mouseClick(Control(any, id), Qt::LeftButton);
    }
    CGridControl* Grid() const { return dialog->findChild<CGridControl*>(); }
    const CDocControl& Document() const { return dialog->findChild<CGraphControl*>()->document(); }
    QStringList Column(int column) const { return dialog->session().table().Column(column); }

    /// Runs the dialog and does `steps` once it has the keyboard. Returns what `DoModal` returns.
    int Run(const std::function<void()>& steps) const {
        return RunDialog(*dialog, [&] {
            QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
            steps();
        });
    }

    /// Does `open`, then what the user does in the "Add a point" dialog that it opens.
    void Add(const std::function<void()>& open, const QString& time, const QString& value,
             Qt::Key last) const {
        QTimer::singleShot(0, qApp, [=] {
            auto* const add = qobject_cast<CDlgAjout*>(QApplication::activeModalWidget());
            QVERIFY(add != nullptr);
            const QList<QLineEdit*> fields = add->findChildren<QLineEdit*>();
            QCOMPARE(fields.size(), 2);
            fields[0]->setFocus();
            QTest::keyClicks(fields[0], time);
            fields[1]->selectAll();
            QTest::keyClicks(fields[1], value);
            QTest::keyClick(add, last);
        });
        open();
        QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
    }
    void Add(const QString& time, const QString& value) const {
        Add([this] { Click(kAdd); }, time, value, Qt::Key_Return);
    }

    QString name = QStringLiteral("Logement");
    QStringList times;
    QStringList values;
    QStringList names;
    std::unique_ptr<CDlgGridChart> dialog;

private:
    QString WriteFile(const KindDescriptor& facts) {
        const auto line = [](QStringView keyword, const QStringList& texts) {
            return keyword.toString() + QStringLiteral(" = ") + texts.join(u' ') + u'\n';
        };
        QString text = line(facts.read_keywords[0], times) + line(facts.read_keywords[1], values);
        if (facts.hasNames())
            text += line(u"PROFIL", QStringList(facts.rows, QStringLiteral("\"Constant\"")));
        if (m_file.open()) {
            m_file.write(ToCp1252(text));
            m_file.close();
        }
        return m_file.fileName();
    }

    QTemporaryFile m_file;
};
