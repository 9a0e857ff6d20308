// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/ChartPicture.h"
#include "dialog/Command.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class QWidget;

/// The commands of the submenu "Graphique": the chart for other programs, for files and on paper.
class PictureCommands : public QObject {
    Q_OBJECT

public:
    /// The chart as it is shown now; nothing in view-only mode, which has none.
    using TakePicture = std::function<std::optional<ChartPicture>()>;

    /// Works on the session of `dialog`, its parent.
    PictureCommands(const ProfileSession* session, TakePicture take_picture, QWidget* dialog);

    CommandRows Rows();

private:
    void Copy() const;
    void Save();
    void Print() const;

    const ProfileSession* m_session;  // not owned
    TakePicture m_take_picture;
    QWidget* m_dialog;  // not owned
    QString m_folder;   // of the file chosen last
};
