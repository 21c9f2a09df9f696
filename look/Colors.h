#pragma once

#include "look/ApplicationPalette.h"

#include <QColor>

/// A role below: what widgets take when the caller may choose a colour.
using ColorRole = QColor (*)(const QPalette &);

QColor windowColor(const QPalette &palette); ///< window and sheets
QColor surfaceColor(const QPalette &palette); ///< event pane, entry fields
QColor popupColor(const QPalette &palette); ///< menus, popover
QColor primaryText(const QPalette &palette);
QColor secondaryText(const QPalette &palette); ///< also icons and placeholders
QColor hairline(const QPalette &palette); ///< in the pane
QColor paneEdge(const QPalette &palette);
QColor sheetHairline(const QPalette &palette); ///< on sheets and popover
QColor accent(const QPalette &palette); ///< fill
QColor accentPressed(const QPalette &palette);
QColor accentText(const QPalette &palette); ///< on the fill
QColor accentInk(const QPalette &palette); ///< tab underline, link, checkmark, focus ring
QColor red(const QPalette &palette); ///< errors, destructive
QColor rowHover(const QPalette &palette);
QColor rowSelected(const QPalette &palette);
QColor iconButtonHover(const QPalette &palette);
QColor iconButtonPressed(const QPalette &palette);
QColor menuHover(const QPalette &palette);
QColor accountFill(const QPalette &palette); ///< account button, over its lift
QColor accountOpen(const QPalette &palette); ///< all of it while its popover is open, without lift
QColor buttonFill(const QPalette &palette); ///< secondary buttons and pop-up labels, over the lift
QColor buttonPressed(const QPalette &palette);
QColor buttonLine(const QPalette &palette); ///< also around fields
QColor buttonLift(const QPalette &palette); ///< transparent where the surface needs none
QColor accountLift(const QPalette &palette); ///< account button and segment track
QColor controlEdge(const QPalette &palette); ///< of what needs none but for more contrast
QColor chipPlate(const QPalette &palette);
QColor segmentFill(const QPalette &palette); ///< the chosen segment
QColor segmentShadow(const QPalette &palette); ///< that it casts
QColor dim(const QPalette &palette); ///< over a window behind a sheet
QColor cardEdge(const QPalette &palette);
QColor cardShadow(const QPalette &palette);
QColor popupShadow(const QPalette &palette); ///< menus, popover
QColor scrollThumb(const QPalette &palette);
QColor spinnerTrack(const QPalette &palette);
