#pragma once
/// @file PictureFit.h
/// CONTROLLO_IMMAGINE, the fitting of a picture into its box keeping its proportions: a screen's gallery
/// into the screen, a thumbnail into the place of the photo button it stands in for.

#include "controls/Controls.h"

#include <QString>

namespace vb {

/// Fits the picture of @p image into @p boxWidth × @p boxHeight twips, from the image's
/// present corner. The picture is first shown at its own size; if its width is at most
/// its height times the box's ratio the box's height decides, otherwise its width. A
/// picture smaller than the box both ways keeps its own size. Stretching is on after.
/// Returns the scale as the image's tooltip shows it: "100%" at its own size, otherwise
/// the ratio under "0%" ("45%"); "" with no picture loaded.
QString CONTROLLO_IMMAGINE(Image& image, int boxWidth, int boxHeight);

/// The same, the image first put at the box's corner (@p left, @p top).
QString CONTROLLO_IMMAGINE(Image& image, int left, int top, int boxWidth, int boxHeight);

} // namespace vb
