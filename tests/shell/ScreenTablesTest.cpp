// What the screens share: the menu entry that opens a screen under the main screen's
// title, the focus colours of fields and lists, the box that refuses a command given
// before anything is selected, and lists that choose nothing by themselves.
#include "controls/DataControls.h"
#include "support/ScreenTest.h"
#include "support/SparesTest.h"

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

INSTANTIATE_TEST_SUITE_P(Fields, FocusColoursTest,
                         ::testing::Values(Focused{"Form2", "List1"}, Focused{"Form2", "List2"},
                                           Focused{"Form2", "DataCombo1"}, Focused{"Form15", "List1"},
                                           Focused{"Form15", "TextRICAMBI"}, Focused{"Form15", "DataCombo1"},
                                           Focused{"Form15", "Txt_Search"}, Focused{"Form15", "Txt_Search_UN_MIS"},
                                           Focused{"Form17", "txtCitta"}, Focused{"Form8", "Text2"}),
                         [](const auto& info) { return std::string(info.param.screen) + "_" + info.param.control; });

struct Refusal
{
    const char *screen, *button, *title, *prompt;
    int flags;
};

class RefusalTest : public ScreenTest, public ::testing::WithParamInterface<Refusal>
{
};

TEST_P(RefusalTest, NothingSelectedIsOneBox)
{
    const Refusal& r = GetParam();
    auto* button = dynamic_cast<vb::CommandButton*>(screens().control(r.screen, r.button));
    ASSERT_TRUE(button);
    button->click();
    EXPECT_BOX(oneBox(), r.title, r.prompt, r.flags);
}

constexpr auto NoData = "Non è stato selezionato nessun dato!";
INSTANTIATE_TEST_SUITE_P(
    Commands, RefusalTest,
    ::testing::Values(Refusal{"Form2", "Cmd_Delete", "NESSUN Ricambio SELEZIONATO", NoData, vb::mb::Exclamation},
                      Refusal{"Form15", "Cmd_Delete", "NESSUN Ricambio SELEZIONATO", NoData, vb::mb::Exclamation},
                      Refusal{"Form17", "Cmd_Delete", "NESSUN Fornitore SELEZIONATO", NoData, vb::mb::Exclamation},
                      Refusal{"Form7", "Cmd_Delete", "NESSUNA MANUTENZIONE SELEZIONATA", NoData, vb::mb::Exclamation},
                      Refusal{"Form14", "Cmd_Delete", "NESSUNA DATO SELEZIONATO", NoData, vb::mb::Exclamation},
                      Refusal{"Form14", "Cmd_Print_List", "MACCHINA NON SELEZIONATA!",
                              "Non hai selezionato nessuna Macchina!", vb::mb::Information}),
    [](const auto& info) { return std::string(info.param.screen) + "_" + info.param.button; });

} // namespace

// A list filled by a screen's load has no selected line until the user clicks one, even
// after the screen is shown and the list takes the focus: nothing is chosen for the user
// (no entry fields filled, no box for a category without parts, no delete offered).
class NoChoiceOnOpeningTest : public ScreenTest, public ::testing::WithParamInterface<const char*>
{
};

TEST_P(NoChoiceOnOpeningTest, ListsStartWithoutASelection)
{
    kit::partsRegister(plant);
    screens().show(GetParam());
    vb::Form* f = screens().loaded(GetParam());
    ASSERT_TRUE(f);
    f->activateWindow();
    QCoreApplication::processEvents();
    for (vb::ListBox* list : f->findChildren<vb::ListBox*>()) {
        list->setFocus(Qt::TabFocusReason);
        QCoreApplication::processEvents();
        EXPECT_EQ(list->ListIndex(), -1) << list->Name().toStdString();
    }
    EXPECT_TRUE(boxes().empty());
}

INSTANTIATE_TEST_SUITE_P(Screens, NoChoiceOnOpeningTest,
                         ::testing::Values("Form2", "Form15", "Form4", "Form10", "Form14", "Form19"));
