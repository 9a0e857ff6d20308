#include "dialog/CDlgAjout.h"

#include "base/EnglishAtof.h"
#include "base/Message.h"
#include "base/NumberText.h"
#include "dialog/DialogTemplate.h"
#include "profiles/EntryRules.h"
#include "profiles/ProfileSession.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

CDlgAjout::CDlgAjout(ProfileSession* session, QWidget* parent)
    : QDialog(parent), m_session(session) {
    setWindowTitle(kAddPointCaption.toString());
    setFixedSize(PixelSize(kAddPointSize));
    QFont small = font();
    small.setPixelSize(kDialogFontPixels);
    setFont(small);
    for (const ControlTemplate& control : kAddPointDialog) {
        const QString caption = control.caption.toString();
        QWidget* widget = nullptr;
        switch (control.control_class) {
            case ControlClass::Edit: {
                auto* const field = new QLineEdit(u"0"_s, this);
                field->selectAll();
                (control.id == kAddPointX ? m_time_field : m_value_field) = field;
                widget = field;
                break;
            }
            case ControlClass::PushButton: {
                auto* const button = new QPushButton(caption, this);
                button->setDefault(control.id == kAddPointOk);
                connect(button, &QPushButton::clicked, this,
                        control.id == kAddPointOk ? &CDlgAjout::InsertPoint : &QDialog::reject);
                widget = button;
                break;
            }
            default: widget = new QLabel(caption, this); break;
        }
        widget->setGeometry(PixelRect(control.place));
        if (control.control_class == ControlClass::Label)
            widget->resize(std::max(widget->width(), widget->sizeHint().width()), widget->height());
        widget->setAccessibleName(control.accessible_name.toString());
        widget->setObjectName(QString::number(control.id) + u'_' + caption);
    }
}

void CDlgAjout::TakeNumber(QLineEdit* field, float& number) {
    QString text = field->text();
    if (text.count(u',') == 1 && !text.contains(u'.'))
        text.replace(u',', u'.');
    if (const float entered = EnglishAtof(text); IsNumber(text) && std::isfinite(entered))
        number = entered;
    else
        ShowMessage(u"Veuillez entrer un nombre."_s);
}

// A field that holds no number is reported, and the point still goes in with the last number
// accepted.
void CDlgAjout::InsertPoint() {
    TakeNumber(m_time_field, m_add_point_x);
    TakeNumber(m_value_field, m_add_point_y);
    const QStringList times = m_session->table().Column(ProfileTable::kLabelColumn);
    m_inserted_row = InsertionRow(times, m_add_point_x);
    m_session->InsertPoint(m_inserted_row, NumberText7(m_add_point_x), NumberText7(m_add_point_y));
    accept();
}
