// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/ReadProgress.h"

#include <QWidget>

using namespace Qt::StringLiterals;

ReadProgress::ReadProgress(QWidget* window, int delay) : m_window(window), m_delay(delay) {
    m_started.start();
}

bool ReadProgress::Show(int percent) {
    if (m_bar == nullptr) {
        if (!m_started.hasExpired(m_delay))
            return true;
        m_bar = std::make_unique<QProgressDialog>(u"Lecture du fichier..."_s, u"Cancel"_s, 0, 100,
                                                  m_window);
        m_bar->setWindowTitle(u"Importer des points"_s);
        m_bar->setWindowModality(Qt::WindowModal);
        m_bar->setAutoReset(false);
        m_bar->show();
    }
    m_bar->setValue(percent);  // takes what the user does meanwhile
    return !m_bar->wasCanceled();
}
