// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/CDlgAjout.h"

#include "base/EnglishAtof.h"
#include "base/Message.h"
#include "base/NumberText.h"
#include "dialog/DialogControls.h"
#include "profiles/EntryRules.h"
#include "profiles/ProfileSession.h"

#include <QLineEdit>
#include <QPushButton>

#include <cmath>

using namespace Id;
using namespace Qt::StringLiterals;

CDlgAjout::CDlgAjout(ProfileSession* session, QWidget* parent)
    : QDialog(parent), m_session(session) {
    setWindowTitle(kAddPointCaption.toString());
    setFixedSize(PixelSize(kAddPointSize));
    const DialogControls controls(kAddPointDialog, this, session);
    m_time_field = controls.Get<QLineEdit>(kAddPointX);
    m_value_field = controls.Get<QLineEdit>(kAddPointY);
    for (QLineEdit* const field : {m_time_field, m_value_field}) {
        field->setText(u"0"_s);
        field->selectAll();
    }
    auto* const ok = controls.Get<QPushButton>(kAddPointOk);
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &CDlgAjout::InsertPoint);
    connect(controls.Get<QPushButton>(kCancel), &QPushButton::clicked, this, &QDialog::reject);
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

// A field that holds no number shows a message. The point is then inserted with the last accepted
// number.
void CDlgAjout::InsertPoint() {
    TakeNumber(m_time_field, m_add_point_x);
    TakeNumber(m_value_field, m_add_point_y);
    const QStringList times = m_session->table().Column(ProfileTable::kLabelColumn);
    m_inserted_row = InsertionRow(times, m_add_point_x);
    m_session->InsertPoint(m_inserted_row, NumberText7(m_add_point_x), NumberText7(m_add_point_y));
    accept();
}
