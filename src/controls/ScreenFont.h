#pragma once
/// @file ScreenFont.h
/// The screens' type. The old screens' geometry was drawn for the 8-point sans serif of
/// their day; the bundled Liberation Sans has Arial's widths, the closest a free face
/// comes to it, so a caption takes the room it took then on every desktop, whatever the
/// desktop's own font or scale.

#include <QFont>
#include <QString>

namespace vb {

/// The bundled Liberation Sans faces, registered on first use; the family's name.
QString bundledSansFamily();

/// The font every screen draws with: Liberation Sans, 7.5 points. Its size is in points,
/// so it grows with the screen's logical dpi exactly as the twips do.
QFont screenFont();

/// Makes the screen font the application's, for the screens and for the boxes and
/// dialogs they open, replacing the desktop's.
void useScreenFont();

} // namespace vb
