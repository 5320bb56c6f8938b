// Every screen in the screens' type: each caption of a label or button fits its control,
// and a screen shown larger than drawn gives its grids and lists the room, moving nothing
// and covering nothing.
#include "support/ScreenTest.h"

#include <cmath>

using shell::screens;

namespace {

std::vector<std::string> builtScreens()
{
    std::vector<std::string> built;
    for (const QString& name : shell::ScreenRegistry::names())
        if (shell::ScreenRegistry::built(name))
            built.push_back(name.toStdString());
    return built;
}

/// The controls of one screen, not those of the screens it owns.
template <class C> QList<C*> controlsOf(vb::Form* f)
{
    QList<C*> own;
    for (C* c : f->findChildren<C*>())
        if (c->window() == f)
            own << c;
    return own;
}

/// Whether a caption, its words wrapped as labels and buttons wrap them, fits its room,
/// measured by the face's own design metrics to the nearest pixel.
bool fits(const QString& caption, QFont font, QSize room)
{
    font.setHintingPreference(QFont::PreferNoHinting);
    const QRectF need = QFontMetricsF(font).boundingRect(QRectF(0, 0, room.width(), 1000), Qt::TextWordWrap, caption);
    return need.width() <= room.width() && std::lround(need.height()) <= room.height();
}

class ScreenTypeTest : public ScreenTest, public ::testing::WithParamInterface<std::string>
{
protected:
    static QString name() { return QString::fromStdString(GetParam()); }
};

TEST_P(ScreenTypeTest, EveryCaptionFitsItsControl)
{
    start();
    screens().show(name());
    vb::Form* f = screens().loaded(name());
    ASSERT_TRUE(f);
    QStringList cut;
    for (const vb::Label* l : controlsOf<vb::Label>(f))
        if (!l->text().isEmpty() && !fits(l->text(), l->font(), l->size()))
            cut << l->objectName() + QStringLiteral(": ") + l->text();
    for (const vb::CommandButton* b : controlsOf<vb::CommandButton>(f))
        if (!fits(b->text(), b->font(), b->face().size()))
            cut << b->objectName() + QStringLiteral(": ") + b->text();
    EXPECT_EQ(cut.join(QLatin1Char('\n')).toStdString(), "");
}

// Shown 300 x 200 pixels larger than drawn: every control stays where it was put, a grid or
// list grows only where it covers no other control, and the program reads the sizes it gave.
TEST_P(ScreenTypeTest, LargerScreenGrowsGridsAndListsOnly)
{
    vb::Form* f = screens().form(name());
    ASSERT_TRUE(f);
    f->show();
    const auto controls = controlsOf<QWidget>(f);
    std::map<QWidget*, QSize> given; // in twips, as the program reads them
    for (QWidget* w : controls)
        if (const vb::Control* c = vb::asControl(w))
            given[w] = QSize(c->Width(), c->Height());
    f->resize(f->placedRect().width() + 300, f->placedRect().height() + 200);
    for (QWidget* w : controls) {
        const vb::Control* c = vb::asControl(w);
        if (!c || c->placedRect().isNull() || w == f)
            continue;
        const QRect put = c->placedRect();
        EXPECT_EQ(w->pos(), put.topLeft()) << qPrintable(w->objectName());
        if (w->size() == put.size())
            continue;
        EXPECT_EQ(QSize(c->Width(), c->Height()), given[w]) << qPrintable(w->objectName());
        EXPECT_TRUE(dynamic_cast<vb::DataGrid*>(w) || dynamic_cast<vb::ListBox*>(w) || dynamic_cast<vb::Frame*>(w))
            << qPrintable(w->objectName());
        for (QWidget* other : controls) {
            const vb::Control* o = vb::asControl(other);
            if (o && other != w && other->parentWidget() == w->parentWidget() && !o->placedRect().isNull()) {
                EXPECT_FALSE(w->geometry().intersects(other->geometry()))
                    << qPrintable(w->objectName() + QStringLiteral(" covers ") + other->objectName());
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Screens, ScreenTypeTest, ::testing::ValuesIn(builtScreens()),
                         [](const auto& info) { return info.param; });

struct Room
{
    const char *screen, *control;
    int right, down; ///< pixels grown on a screen 300 x 200 pixels larger than drawn
};

class RoomTest : public ScreenTest, public ::testing::WithParamInterface<Room>
{
};

TEST_P(RoomTest, GridOrListTakesTheRoomItHas)
{
    const Room& r = GetParam();
    vb::Form* f = screens().form(r.screen);
    ASSERT_TRUE(f);
    f->show();
    f->resize(f->placedRect().width() + 300, f->placedRect().height() + 200);
    vb::Control* c = f->control(r.control);
    ASSERT_TRUE(c);
    EXPECT_EQ(c->widget()->size() - c->placedRect().size(), QSize(r.right, r.down));
}

INSTANTIATE_TEST_SUITE_P(Grids, RoomTest,
                         ::testing::Values(Room{"Form4", "DataGrid1", 300, 0}, Room{"Form4", "DataGrid2", 300, 200},
                                           Room{"Form4", "List1", 0, 0}, Room{"Form7", "DataGrid1", 0, 0}),
                         [](const auto& info) { return std::string(info.param.screen) + "_" + info.param.control; });

} // namespace
