#pragma once
/// @file PictureFit.h
/// CONTROLLO_IMMAGINE, the parts screens' name for the fitting of a picture into its box.

#include "controls/PictureFit.h"

namespace spares {

/// vb::fitPicture from the image's present corner.
inline QString CONTROLLO_IMMAGINE(vb::Image& image, int boxWidth, int boxHeight)
{
    return vb::fitPicture(image, boxWidth, boxHeight);
}

} // namespace spares
