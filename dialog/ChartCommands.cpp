// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/ChartCommands.h"

#include "chart/CGraphControl.h"
#include "chart/CGraphView.h"
#include "dialog/DialogTemplate.h"
#include "grid/CGridControl.h"
#include "profiles/ProfileSession.h"

using namespace Id;

namespace {

// Share of the visible part that a key pans by.
constexpr double kKeyPan = 0.25;

}  // namespace

CommandRows ChartCommands(CGraphControl* chart, CGraphView* view, CGridControl* grid) {
    constexpr bool kMarks = true;
    constexpr bool kLooksAtRows = true;
    const auto is_zoomed = [view](const ProfileSession&) { return view->Zoom().isZoomed(); };
    const auto can_show = [=](const ProfileSession&) {
        return view->Zoom().canShowRows(grid->SelectedRows());
    };
    const auto has_line = [](const ProfileSession& session) { return session.facts().hasTimes(); };
    const auto has_steps = [chart] { return chart->document().display.line == LineForm::Steps; };
    const auto switch_steps = [=] {
        chart->SetLineForm(has_steps() ? LineForm::Straight : LineForm::Steps);
    };
    return {
        {kShowAll, [view] { view->Zoom().ShowAll(); }, is_zoomed, !kMarks, u"Ctrl+0",
         u"Montre tout le graphique", MenuPlace::Chart, u"Tout voir"},
        {kShowSelection,
         [=] { view->Zoom().ShowRows(grid->SelectedRows()); },
         can_show,
         !kMarks,
         {},
         u"Montre les lignes choisies dans le graphique",
         MenuPlace::Chart,
         u"Voir la sélection",
         kLooksAtRows},
        {kShowSteps,
         switch_steps,
         has_line,
         !kMarks,
         {},
         u"Tient chaque valeur jusqu'au temps suivant",
         MenuPlace::Chart,
         u"Escalier",
         !kLooksAtRows,
         has_steps},
        {kZoomIn,
         [view] { view->Zoom().ZoomBy(1.0); },
         {},
         !kMarks,
         u"Ctrl++",
         u"Agrandit le graphique"},
        {kZoomOut,
         [view] { view->Zoom().ZoomBy(-1.0); },
         {},
         !kMarks,
         u"Ctrl+-",
         u"Réduit le graphique"},
        {kPanLeft,
         [view] { view->Zoom().PanBy(-kKeyPan); },
         {},
         !kMarks,
         u"Alt+Left",
         u"Va vers la gauche du graphique agrandi"},
        {kPanRight,
         [view] { view->Zoom().PanBy(kKeyPan); },
         {},
         !kMarks,
         u"Alt+Right",
         u"Va vers la droite du graphique agrandi"},
    };
}
