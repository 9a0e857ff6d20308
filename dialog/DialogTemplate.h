// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/ProfileKind.h"

#include <QHash>
#include <QRect>
#include <QStringView>

#include <array>

/// Ids of controls and commands.
namespace Id {
enum : int {
    kGrid = 5000,
    kChartFrame = 5001,
    kAdd = 5008,
    kRemove = 5009,
    kAddPointOk = 5010,
    kCancel = 5011,
    kOpen = 5012,
    kSave = 5013,
    kAdjust = 5016,
    kSaveAs = 5017,
    kUndo = 5018,
    kRedo = 5019,
    kCopy = 5020,
    kPaste = 5021,
    kOk = 5022,
    kRedrawChart = 5028,
    kAddPointX = 5031,
    kAddPointY = 5032,
    kEdition = 5033,
    kHelp = 5093,
    kMenuOpen = 32786,
    kMenuSave = 32787,
    kMenuSaveAs = 32788,
    kMenuUndo = 32789,
    kMenuRedo = 32790,
    kMenuCopy = 32791,
    kMenuPaste = 32792,
    kMenuButton = 5100,
    kInsertPoints = 5101,
    kCopyTable = 5102,
    kCopyTableWithCommas = 5103,
    kImportPoints = 5104,
    kExportPoints = 5105,
    kReminder = 5106,
    kCalculate = 5121,
    kFill = 5122,
    kFillLine = 5123,
    kInsertSeries = 5124,
    kReturnToStart = 5125,
    kShowAll = 5107,
    kShowSelection = 5108,
    kZoomIn = 5109,
    kZoomOut = 5110,
    kPanLeft = 5111,
    kPanRight = 5112,
    kShowSteps = 5113,
    kCopyChart = 5130,
    kSaveChart = 5131,
    kPrint = 5132,
    kTableGrip = 5140,
    kWidenTable = 5141,
};
}  // namespace Id

enum class ControlClass {
    Frame,
    Grid,
    Grip,
    PushButton,
    PictureButton,
    ToolButton,
    CheckBox,
    Edit,
    Label
};

/// One control of a dialog template, its place in dialog units.
struct ControlTemplate {
    int id = 0;
    ControlClass control_class = ControlClass::Label;
    QStringView caption;
    QStringView accessible_name;
    std::array<int, 4> place = {};  ///< x, y, width, height
    int picture = 0;                ///< resource number of a picture button's 16 x 16 picture
};

inline constexpr QStringView kMainDialogCaption = u"Profil";
inline constexpr std::array<int, 2> kMainDialogSize = {417, 258};

/// The main dialog, in the order that Tab visits the controls.
inline constexpr ControlTemplate kMainDialog[] = {
    {Id::kGrid, ControlClass::Grid, u"Custom1", u"5000", {304, 19, 106, 170}},
    {Id::kChartFrame, ControlClass::Frame, u"", u"", {7, 20, 290, 231}},
    {Id::kOpen, ControlClass::ToolButton, u"OUVRIR", u"Ouvrir", {7, 0, 16, 14}},
    {Id::kSave, ControlClass::ToolButton, u"ENREG", u"Enregistrer", {24, 0, 16, 14}},
    {Id::kSaveAs, ControlClass::ToolButton, u"ENREGSOUS", u"Enregistrer sous", {41, 0, 16, 14}},
    {Id::kUndo, ControlClass::ToolButton, u"UNDO", u"Annuler", {65, 0, 16, 14}},
    {Id::kRedo, ControlClass::ToolButton, u"REDO", u"Refaire", {82, 0, 16, 14}},
    {Id::kCopy, ControlClass::ToolButton, u"COPY", u"Copier", {99, 0, 16, 14}},
    {Id::kPaste, ControlClass::ToolButton, u"PASTE", u"Coller", {116, 0, 16, 14}},
    {Id::kMenuButton, ControlClass::ToolButton, u"MENU", u"Menu", {140, 0, 16, 14}},
    {Id::kHelp, ControlClass::PushButton, u"Aide", u"Aide", {247, 0, 50, 14}},
    {Id::kAdd, ControlClass::PictureButton, u"Add", u"Add", {304, 0, 46, 14}, 5034},
    {Id::kRemove, ControlClass::PictureButton, u"Remove", u"Remove", {355, 0, 55, 14}, 5036},
    {Id::kEdition, ControlClass::CheckBox, u"Edition", u"Edition", {304, 199, 37, 10}},
    {Id::kAdjust, ControlClass::PictureButton, u"Ajuster", u"Ajuster", {360, 197, 50, 14}, 5035},
    {Id::kOk, ControlClass::PushButton, u"OK", u"OK", {309, 237, 40, 14}},
    {Id::kCancel, ControlClass::PushButton, u"Cancel", u"Cancel", {361, 237, 40, 14}},
    {Id::kTableGrip, ControlClass::Grip, u"", u"Largeur du tableau", {297, 20, 7, 231}},
};

inline constexpr QStringView kAddPointCaption = u"Add a point";
inline constexpr std::array<int, 2> kAddPointSize = {184, 52};

inline constexpr ControlTemplate kAddPointDialog[] = {
    {Id::kAddPointX, ControlClass::Edit, u"", u"X - Axis", {13, 11, 48, 12}},
    {Id::kAddPointY, ControlClass::Edit, u"", u"Y - Axis", {13, 29, 48, 12}},
    {0, ControlClass::Label, u"X - Axis", u"", {67, 13, 24, 8}},
    {0, ControlClass::Label, u"Y - Axis", u"", {67, 31, 24, 8}},
    {Id::kAddPointOk, ControlClass::PushButton, u"OK", u"OK", {124, 10, 50, 14}},
    {Id::kCancel, ControlClass::PushButton, u"Cancel", u"Cancel", {124, 27, 50, 14}},
};

/// Pixels of a place in dialog units: 1.5 px each across, 1.625 px each down, edges rounded to the
/// nearest.
QRect PixelRect(const std::array<int, 4>& place);
QSize PixelSize(const std::array<int, 2>& size);

/// The size at which the main dialog starts: the template's, wider where the kind's columns are.
QSize MainDialogStartSize(ProfileKind kind);

/// What the table's width follows from beside kind, rows and window. Pixels.
struct TableWidth {
    int needed = 0;    ///< by the longest texts in view; extra width of the window goes there first
    int asked = 0;     ///< by the user; 0: nothing
    int asked_at = 0;  ///< extra width of the window when the user asked
};

/// The table's width at the start, with `rows` rows. It never gets less.
int StartTableWidth(ProfileKind kind, int rows);

/// The table's width in a window that is wider by `extra` than at its start: at most half of it.
int WidthOfTable(ProfileKind kind, int rows, int extra, const TableWidth& table);

/// The places of the main dialog's controls, by their ids, when the grid has `rows` rows and the
/// window is larger by `extra` than at its start. The grid of a function grows with its points up
/// to twelve rows; with more points it gets a scroll bar. What the table has beyond its width at
/// the start it takes from the chart.
QHash<int, QRect> MainDialogPlaces(ProfileKind kind, int rows, QSize extra,
                                   const TableWidth& table = {});

/// The line of the mean, directly below the grid.
inline constexpr int kMeanHeight = 13;

/// The font for which the templates' places were chosen.
inline constexpr int kDialogFontPixels = 11;
