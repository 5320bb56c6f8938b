#pragma once
/// @file StoreCheck.h
/// What the program does with its store before the main screen opens: the quick check,
/// the offer to put the newest sound copy back, the note on a read-only store, and the
/// daily copy.

namespace shell {

/// Runs the checks on the store of the data folder (vb::AppPath()), asking through the
/// message boxes; then holds the folder, so that no restore replaces the store meanwhile.
void checkStoreAtStart();

} // namespace shell
