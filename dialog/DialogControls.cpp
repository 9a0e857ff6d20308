// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/DialogControls.h"

#include "chart/ChartFrame.h"
#include "dialog/BitmapButton.h"
#include "dialog/CSXButton.h"
#include "dialog/TableGrip.h"
#include "grid/CGridControl.h"

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPictureSize = 16;

QWidget* MakeControl(const ControlTemplate& control, QDialog* dialog, ProfileSession* session) {
    const QString caption = control.caption.toString();
    switch (control.control_class) {
        case ControlClass::Frame: return new ChartFrame(dialog);
        case ControlClass::Grid: return new CGridControl(session, dialog);
        case ControlClass::Grip: return new TableGrip(dialog);
        case ControlClass::PushButton: return new QPushButton(caption, dialog);
        case ControlClass::PictureButton: {
            auto* const button = new CSXButton(dialog);
            button->setText(caption);
            button->SetBitmap(control.picture, kPictureSize, kPictureSize);
            return button;
        }
        case ControlClass::ToolButton: {
            auto* const button = new BitmapButton(dialog);
            button->AutoLoad(caption);
            button->setToolTip(control.accessible_name.toString());
            return button;
        }
        case ControlClass::CheckBox: {
            auto* const box = new QCheckBox(caption, dialog);
            box->setStyleSheet(u"spacing: 3px"_s);  // to fit the template's width
            return box;
        }
        case ControlClass::Edit: return new QLineEdit(dialog);
        case ControlClass::Label: break;
    }
    return new QLabel(caption, dialog);
}

}  // namespace

DialogControls::DialogControls(std::span<const ControlTemplate> controls, QDialog* dialog,
                               ProfileSession* session) {
    QFont small = dialog->font();
    small.setPixelSize(kDialogFontPixels);
    dialog->setFont(small);
    for (const ControlTemplate& control : controls) {
        QWidget* const widget = MakeControl(control, dialog, session);
        widget->setGeometry(PixelRect(control.place));
        // Some fonts are too wide for the template's labels.
        if (control.control_class == ControlClass::Label)
            widget->resize(std::max(widget->width(), widget->sizeHint().width()), widget->height());
        widget->setAccessibleName(control.accessible_name.toString());
        widget->setObjectName(QString::number(control.id) + u'_' + control.caption.toString());
        m_widgets.insert(control.id, widget);
    }
}

void DialogControls::Place(const QHash<int, QRect>& places) const {
    for (auto place = places.cbegin(); place != places.cend(); ++place)
        m_widgets[place.key()]->setGeometry(place.value());
}
