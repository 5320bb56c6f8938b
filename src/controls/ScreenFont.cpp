#include "controls/ScreenFont.h"

#include <QApplication>
#include <QFontDatabase>

static void initFontResources()
{
    Q_INIT_RESOURCE(fonts);
}

namespace vb {

namespace {
/// The size at which the old captions fit the controls drawn for them: the old 8-point
/// face's glyphs were narrower than Arial's at 8 points; at 7.5 (10 pixels at 96 dpi)
/// Liberation Sans takes about the widths they took.
constexpr double ScreenPointSize = 7.5;
} // namespace

QString bundledSansFamily()
{
    static const QString family = [] {
        initFontResources();
        QString name;
        for (const char* face : {"Regular", "Bold", "Italic", "BoldItalic"}) {
            const int id = QFontDatabase::addApplicationFont(
                QStringLiteral(":/fonts/LiberationSans-%1.ttf").arg(QLatin1String(face)));
            const QStringList families = QFontDatabase::applicationFontFamilies(id);
            if (name.isEmpty() && !families.isEmpty())
                name = families.front();
        }
        return name.isEmpty() ? QStringLiteral("Liberation Sans") : name;
    }();
    return family;
}

QFont screenFont()
{
    QFont f(bundledSansFamily());
    f.setPointSizeF(ScreenPointSize);
    // Hinted across, a word's width would follow the desktop's hinting settings; hinted
    // only up and down, the text stays crisp and every desktop measures alike.
    f.setHintingPreference(QFont::PreferVerticalHinting);
    f.setStyleStrategy(QFont::NoFontMerging);
    return f;
}

void useScreenFont()
{
    QApplication::setFont(screenFont());
}

} // namespace vb
