#pragma once
/// @file EntryFields.h
/// What the store's screens share in their entry fields: quantities typed as whole
/// numbers, a list filled from one column of a recordset, and the question before a
/// category is renamed.

#include "controls/DataControls.h"
#include "runtime/Trap.h"
#include "store/DataStore.h"

namespace spares {

/// Stock and quantity fields take whole numbers: Backspace, or a key that alone reads as
/// a number; any other key is discarded.
void digitsOnly(int& keyAscii);

/// Adds a column of every row to a list and returns how many rows it walked. A Null is
/// left out: its step fails and the list goes on, the row counted all the same.
int addRows(vb::Trap& trap, vb::ListBox* list, store::Recordset& rs, const QString& column);

/// The Yes/No question before the category `line` of the list takes the typed name (or
/// its other data, when the name is the same); true when the user answered Yes.
bool confirmCategoryChange(const QString& line, const QString& typed);

} // namespace spares
