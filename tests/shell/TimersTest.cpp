// The four timers of the main screen and the registry's implicit loads they rely on.
#include "controls/DateControls.h"
#include "runtime/Clock.h"
#include "support/ScreenTest.h"

using shell::frmMain;
using shell::screens;
using vb::Variant;
namespace colour = vb::colour;

namespace {

class TimersTest : public ScreenTest
{
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        standIn("Form14", QStringList{"T:Txt_Giac", "T:Txt_Scorta"}, &loads14);
        standIn("Form13", QStringList{"T:Txt_Control_Min", "T:Txt_Min", "T:Txt_Num", "F:Frame10"}, &loads13);
        standIn("Form7", [this](QWidget* owner) -> vb::Form* {
            auto* f = new StandIn(owner, "Form7", &loads7);
            auto* picker = new vb::DTPicker(f, "DTPicker2");
            picker->setValue(Variant::fromDate(QDate(2026, 11, 20)));
            auto* label = new vb::Label(f, "Label8", "Prossima:");
            label->setForeColor(colour::Red);
            label->setBackStyle(0);
            return f;
        });
        main = start();
    }

    vb::Control* ctl(const char* screen, const char* name)
    {
        return screens().loaded(QString::fromLatin1(screen))->control(QString::fromLatin1(name));
    }
    void setText(const char* screen, const char* name, const QString& text)
    {
        ctl(screen, name)->setVbProperty("Text", text);
    }
    /// One tick of Timer2 on giacenza/minimum, from a starting background; the colours after.
    std::pair<int, int> stock(const QString& giac, const QString& min, int back)
    {
        screens().form("Form14");
        setText("Form14", "Txt_Giac", giac);
        setText("Form14", "Txt_Scorta", min);
        vb::Control* s = ctl("Form14", "Txt_Scorta");
        s->setBackColor(back);
        s->setForeColor(back == colour::White ? colour::Black : colour::White);
        main->Timer2->tick();
        return {s->BackColor(), s->ForeColor()};
    }

    frmMain* main = nullptr;
    int loads7 = 0, loads13 = 0, loads14 = 0;
};

using P = std::pair<int, int>;

} // namespace

// Reading a control of a screen that is not loaded loads it hidden, load run once; a
// screen not built is inert.
TEST_F(TimersTest, TicksLoadTheWatchedScreensHidden)
{
    EXPECT_FALSE(screens().isLoaded("Form7"));
    main->Timer1->tick();
    main->Timer3->tick();
    main->Timer1->tick();
    EXPECT_EQ(loads7, 1);
    EXPECT_EQ(loads13, 1);
    EXPECT_FALSE(screens().loaded("Form7")->isVisible());

    // Timer4 discards the hidden Form7 once, and never again.
    main->Timer4->tick();
    EXPECT_FALSE(screens().isLoaded("Form7"));
    EXPECT_EQ(main->Txt_Form7->Text(), "1");
    main->Timer1->tick();
    EXPECT_EQ(loads7, 2);
    main->Timer4->tick();
    EXPECT_TRUE(screens().isLoaded("Form7"));

    EXPECT_EQ(screens().control("Form12", "Label2"), nullptr);
    screens().show("Form12");
    EXPECT_FALSE(screens().isLoaded("Form12"));

    // Timer2 has no trap of its own: the stand-in's empty fields are no numbers, and the
    // run time's box ends the program. The real Form14 holds "0" in both by design.
    main->Timer2->tick();
    EXPECT_EQ(loads14, 1);
    EXPECT_FALSE(screens().loaded("Form14")->isVisible());
    EXPECT_EQ(vb::MsgBoxService::takeShown().back().prompt, "13 Tipo non corrispondente");
}

TEST_F(TimersTest, ClockLineAndOverdueFlash)
{
    vb::Clock::freeze(QDateTime(QDate(2026, 1, 3), QTime(9, 5, 7)));
    main->Timer1->tick();
    // Week 1 is the week of 1 January, weeks start on Sunday.
    EXPECT_EQ(main->Lbl_Time->Caption(), "Settimana N°1  03/01/2026 Ore: 09.05.07");
    vb::Clock::freeze(QDateTime(QDate(2026, 1, 4), QTime(0, 0, 0)));
    main->Timer1->tick();
    EXPECT_EQ(main->Lbl_Time->Caption(), "Settimana N°2  04/01/2026 Ore: 00.00.00");

    auto* label = dynamic_cast<vb::Label*>(ctl("Form7", "Label8"));
    auto* picker = ctl("Form7", "DTPicker2");
    // Due today: no flash.
    picker->setVbProperty("Value", Variant::fromDate(QDate(2026, 1, 4)));
    main->Timer1->tick();
    EXPECT_EQ(label->ForeColor(), colour::Red);
    EXPECT_EQ(label->BackStyle(), 0);
    // Overdue: white on opaque red, then red on transparent, and so on.
    picker->setVbProperty("Value", Variant::fromDate(QDate(2026, 1, 3)));
    main->Timer1->tick();
    EXPECT_EQ(label->ForeColor(), colour::White);
    EXPECT_EQ(label->BackColor(), colour::Red);
    EXPECT_EQ(label->BackStyle(), 1);
    main->Timer1->tick();
    EXPECT_EQ(label->ForeColor(), colour::Red);
    EXPECT_EQ(label->BackStyle(), 0);
}

// Stock flash by d = giacenza - minimum: above 1 clears an alarm, 1 flashes orange, 0 or
// below flashes red; the colour of the other alarm stays for that tick.
TEST_F(TimersTest, StockFlashCycles)
{
    EXPECT_EQ(stock("0", "0", colour::Red), P(colour::Red, colour::White));
    EXPECT_EQ(stock("5", "2", colour::Orange), P(colour::White, colour::Black));
    EXPECT_EQ(stock("5", "2", colour::Red), P(colour::White, colour::Black));
    EXPECT_EQ(stock("5", "2", colour::White), P(colour::White, colour::Black));
    EXPECT_EQ(stock("3", "2", colour::White), P(colour::Orange, colour::White));
    EXPECT_EQ(stock("3", "2", colour::Orange), P(colour::White, colour::Black));
    EXPECT_EQ(stock("3", "2", colour::Red), P(colour::Red, colour::White));
    EXPECT_EQ(stock("2", "2", colour::White), P(colour::Red, colour::White));
    EXPECT_EQ(stock("1", "2", colour::Red), P(colour::White, colour::Black));
    EXPECT_EQ(stock("2", "2", colour::Orange), P(colour::Orange, colour::White));
    // 2,6 - 1 = 1,6 rounds to 2: no alarm.
    EXPECT_EQ(stock("2,6", "1", colour::Orange), P(colour::White, colour::Black));
}

// Missing minutes flash Frame10's caption between red and the system window colour, only
// while Txt_Control_Min is 1; an empty or non-numeric Txt_Min flashes too (the failed test
// falls into the flash under the trap).
TEST_F(TimersTest, MissingMinutesFlash)
{
    screens().form("Form13");
    vb::Control* frame = ctl("Form13", "Frame10");
    auto tick = [&](const char* control, const char* min, const char* num, int fore) {
        setText("Form13", "Txt_Control_Min", QString::fromLatin1(control));
        setText("Form13", "Txt_Min", QString::fromLatin1(min));
        setText("Form13", "Txt_Num", QString::fromLatin1(num));
        frame->setForeColor(fore);
        main->Timer3->tick();
        return frame->ForeColor();
    };
    EXPECT_EQ(tick("1", "0", "", colour::Red), colour::WindowBackground);
    EXPECT_EQ(tick("1", "0", "", colour::WindowBackground), colour::Red);
    EXPECT_EQ(tick("1", "", "3", colour::Red), colour::WindowBackground);
    EXPECT_EQ(tick("1", "", "", colour::Red), colour::WindowBackground);
    EXPECT_EQ(tick("1", "abc", "", colour::Red), colour::WindowBackground);
    EXPECT_EQ(tick("1", "0", "", colour::Black), colour::Black); // other colours stay
    EXPECT_EQ(tick("1", "15", "3", colour::Red), colour::Red);   // minutes present: no change
    EXPECT_EQ(tick("0", "0", "", colour::Red), colour::Red);     // control off
    EXPECT_EQ(tick("", "0", "", colour::Red), colour::Red);
}
