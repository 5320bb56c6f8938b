// Every screen in the screens' type: each caption of a label or button fits its control;
// shown larger than drawn, a screen moves nothing and gives its grids and lists the room
// where they cover nothing, while the program reads the sizes it gave.
#include "support/ScreenTest.h"

#include <cmath>

namespace {

std::vector<std::string> builtScreens()
{
    std::vector<std::string> built;
    for (const QString& name : shell::ScreenRegistry::names())
        if (shell::ScreenRegistry::built(name))
            built.push_back(name.toStdString());
    return built;
}

/// Whether a caption, its words wrapped as labels and buttons wrap them, fits its room,
/// measured by the face's own design metrics to the nearest pixel.
bool fits(const QString& caption, QFont font, QSize room)
{
    font.setHintingPreference(QFont::PreferNoHinting);
    const QRectF need = QFontMetricsF(font).boundingRect(QRectF(0, 0, room.width(), 1000), Qt::TextWordWrap, caption);
    return caption.isEmpty() || (need.width() <= room.width() && std::lround(need.height()) <= room.height());
}

/// Pixels some grids and lists grow on a screen 300 x 200 pixels larger than drawn.
const std::map<QString, QSize> Grown = {{"Form4.DataGrid1", {300, 0}}, // the frame below keeps it
                                        {"Form4.DataGrid2", {300, 200}},
                                        {"Form4.List1", {0, 0}}, // fields right and below
                                        {"Form7.DataGrid1", {0, 0}}};

class ScreenTypeTest : public ScreenTest, public ::testing::WithParamInterface<std::string>
{
};

TEST_P(ScreenTypeTest, CaptionsFitAndGridsTakeTheRoom)
{
    const QString name = QString::fromStdString(GetParam());
    vb::Form* f = shell::screens().form(name);
    ASSERT_TRUE(f);
    f->show();
    QList<QWidget*> controls; // this screen's, not those of the screens it owns
    for (QWidget* w : f->findChildren<QWidget*>())
        if (w->window() == f && vb::asControl(w) && !vb::asControl(w)->placedRect().isNull())
            controls << w;
    std::map<QWidget*, QSize> given; // in twips, as the program reads them
    QStringList cut;
    for (QWidget* w : controls) {
        const vb::Control* c = vb::asControl(w);
        given[w] = QSize(c->Width(), c->Height());
        const auto* l = dynamic_cast<vb::Label*>(w);
        const auto* b = dynamic_cast<vb::CommandButton*>(w);
        if ((l && !fits(l->text(), l->font(), l->size())) || (b && !fits(b->text(), b->font(), b->face().size())))
            cut << w->objectName() + ": " + (l ? l->text() : b->text());
    }
    EXPECT_EQ(cut.join('\n').toStdString(), "");
    f->resize(f->placedRect().width() + 300, f->placedRect().height() + 200);
    for (QWidget* w : controls) {
        const vb::Control* c = vb::asControl(w);
        const QSize more = w->size() - c->placedRect().size();
        const QString where = name + '.' + w->objectName();
        EXPECT_EQ(more, Grown.count(where) ? Grown.at(where) : more) << qPrintable(where);
        EXPECT_EQ(w->pos(), c->placedRect().topLeft()) << qPrintable(where);
        if (more.isNull())
            continue;
        EXPECT_TRUE((dynamic_cast<vb::DataGrid*>(w) || dynamic_cast<vb::ListBox*>(w) || dynamic_cast<vb::Frame*>(w)) &&
                    (more.width() == 0 || more.width() == 300) && (more.height() == 0 || more.height() == 200))
            << qPrintable(where);
        EXPECT_EQ(QSize(c->Width(), c->Height()), given[w]) << qPrintable(where);
        for (QWidget* other : controls)
            EXPECT_TRUE(other == w || other->parentWidget() != w->parentWidget() ||
                        !w->geometry().intersects(other->geometry()))
                << qPrintable(where + " covers " + other->objectName());
    }
    // The room given depends on the size shown, not on the sizes shown before it.
    std::map<QWidget*, QRect> grown;
    for (QWidget* w : controls)
        grown[w] = w->geometry();
    f->resize(f->placedRect().width() + 100, f->placedRect().height() + 400);
    f->resize(f->placedRect().width() + 300, f->placedRect().height() + 200);
    for (QWidget* w : controls)
        EXPECT_EQ(w->geometry(), grown[w]) << qPrintable(name + '.' + w->objectName());
}

INSTANTIATE_TEST_SUITE_P(Screens, ScreenTypeTest, ::testing::ValuesIn(builtScreens()),
                         [](const auto& info) { return info.param; });

} // namespace
