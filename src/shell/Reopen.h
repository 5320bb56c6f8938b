#pragma once
/// @file Reopen.h
/// The refresh of a list screen after a save: the screen is closed and shown again in its
/// place, so its load runs once more. Every list screen keeps its list in DataGrid1 and
/// the row selected in the hidden Txt_Posizione; this brings the new screen back to that
/// row number.

#include "controls/Form.h"

#include <QString>

namespace shell {

enum class Placement {
    WorkingScreen, ///< the placement of every working screen (300 twips added to the height)
    About,         ///< the placement of frmAbout, without them
};

/// Closes screen `name`, shows it again and returns the new screen (nullptr when it did
/// not come back). The new list has no row selected. With backToRow the list goes to
/// the row number the old screen kept in Txt_Posizione, when that row still exists: a
/// row change, as a click gives, and Txt_Posizione keeps the number again. It is a row
/// number, not a key: a name that now sorts elsewhere leaves another row there. With
/// rowChange false the list only stands on that row again: no row change runs, and
/// Txt_Posizione stays empty until one does.
vb::Form* ReopenScreen(const QString& name, bool backToRow, Placement placement = Placement::WorkingScreen,
                       bool rowChange = true);

/// The main screen's title naming the screen in front: "VELMORA <{caption}>". Nothing
/// when the main screen is not loaded.
void TitleMainScreen(const QString& caption);

} // namespace shell
