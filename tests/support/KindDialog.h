#pragma once

#include "app/Cp1252.h"
#include "profiles/CDlgGridChart.h"

#include <QTemporaryFile>

#include <memory>

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
        setup.name = &name;
        setup.times = &times;
        setup.values = &values;
        setup.names = &names;
        if (mode != DisplayMode::Edit)
            setup.text = WriteFile(facts);
        dialog = std::make_unique<CDlgGridChart>(std::move(setup));
    }

    /// The control of that id; null when there is none.
    QWidget* Control(int id) const {
        const QString start = QString::number(id) + u'_';
        for (QWidget* const child : dialog->findChildren<QWidget*>()) {
            if (child->objectName().startsWith(start) &&
                child->objectName() != QStringLiteral("5001_Chart"))
                return child;
        }
        return nullptr;
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
