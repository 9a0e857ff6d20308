// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class PrintedPages;
class QPrinter;
class QWidget;

/// Shows the pages as `printer` would print them, and prints them when the user says so there.
void ShowPrintPreview(QPrinter* printer, const PrintedPages& pages, QWidget* parent);
