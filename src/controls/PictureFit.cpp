#include "controls/PictureFit.h"

#include "runtime/VBFunctions.h"

#include <cmath>

namespace vb {

QString CONTROLLO_IMMAGINE(Image& image, int boxWidth, int boxHeight)
{
    image.setStretch(false);
    const int width = image.pictureWidth();
    const int height = image.pictureHeight();
    if (width <= 0 || height <= 0 || boxWidth <= 0 || boxHeight <= 0)
        return QString();

    QString scale;
    if (width <= boxWidth && height <= boxHeight) {
        scale = QStringLiteral("100%");
    } else {
        const double ratio = double(width) <= double(height) * boxWidth / boxHeight ? double(boxHeight) / height
                                                                                    : double(boxWidth) / width;
        image.setWidth(int(std::lround(width * ratio)));
        image.setHeight(int(std::lround(height * ratio)));
        scale = Format(ratio, QStringLiteral("0%")).toString();
    }
    image.setStretch(true);
    image.setToolTipText(scale);
    return scale;
}

QString CONTROLLO_IMMAGINE(Image& image, int left, int top, int boxWidth, int boxHeight)
{
    image.Move(left, top);
    return CONTROLLO_IMMAGINE(image, boxWidth, boxHeight);
}

} // namespace vb
