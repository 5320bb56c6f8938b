// What every screen shares with the others: the menu entry that opens it under the main
// screen's title, and the focus colours of its fields and lists.
#include "support/ScreenTest.h"

using shell::screens;

namespace {

struct MenuEntry
{
    const char *label, *screen, *caption;
};

class MenuTest : public ScreenTest, public ::testing::WithParamInterface<MenuEntry>
{
};

TEST_P(MenuTest, TheEntryOpensItsScreenUnderTheMainTitle)
{
    const MenuEntry& e = GetParam();
    shell::frmMain* main = start();
    boxes();
    auto* label = dynamic_cast<vb::Label*>(screens().control("frmMain", e.label));
    ASSERT_TRUE(label);
    label->click();
    vb::Form* f = screens().loaded(e.screen);
    ASSERT_TRUE(f) << e.screen;
    EXPECT_TRUE(f->isVisible());
    EXPECT_EQ(main->Caption(), QStringLiteral("VELMORA <%1>").arg(e.caption));
}

INSTANTIATE_TEST_SUITE_P(Entries, MenuTest,
                         ::testing::Values(MenuEntry{"lblDescRicambi", "Form2", "Descrizione Ricambi"},
                                           MenuEntry{"lblRicambi", "Form15", "Ricambi"},
                                           MenuEntry{"lblFornitori", "Form17", "Fornitori"},
                                           MenuEntry{"LblManutenzioni", "Form7", "Esegui Manutenzioni"}),
                         [](const auto& info) { return std::string(info.param.screen); });

struct Focused
{
    const char *screen, *control;
};

class FocusColoursTest : public ScreenTest, public ::testing::WithParamInterface<Focused>
{
};

// Entering a field or a list paints it orange; leaving it paints it white, not the
// colour it was designed with.
TEST_P(FocusColoursTest, OrangeWhileFocusedWhiteAfter)
{
    vb::Control* c = screens().control(GetParam().screen, GetParam().control);
    ASSERT_TRUE(c);
    c->focusIn();
    EXPECT_EQ(c->BackColor(), vb::colour::Orange);
    c->focusOut();
    EXPECT_EQ(c->BackColor(), vb::colour::White);
}

INSTANTIATE_TEST_SUITE_P(
    Fields, FocusColoursTest,
    ::testing::Values(Focused{"Form2", "List1"}, Focused{"Form2", "List2"}, Focused{"Form2", "DataCombo1"},
                      Focused{"Form15", "List1"}, Focused{"Form15", "TextRICAMBI"}, Focused{"Form15", "DataCombo1"},
                      Focused{"Form15", "Txt_Search"}, Focused{"Form15", "Txt_Search_UN_MIS"},
                      Focused{"Form17", "txtCitta"}, Focused{"Form8", "Text2"}),
    [](const auto& info) { return std::string(info.param.screen) + "_" + info.param.control; });

} // namespace
