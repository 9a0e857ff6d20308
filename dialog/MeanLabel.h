// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

class ProfileSession;

/// Shows the current mean of a coefficient profile: in the text colour while it is 1, in a warning
/// colour otherwise. Empty for the other kinds.
class MeanLabel : public QLabel {
    Q_OBJECT

public:
    explicit MeanLabel(const ProfileSession* session, QWidget* parent = nullptr);

protected:
    void changeEvent(QEvent* event) override;

private:
    void Refresh();

    const ProfileSession* m_session;  // not owned
};
