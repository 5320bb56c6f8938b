// The due alerts of the start, in frmAbout's load, and the screen's fade and hover.
#include "definition/Workload.h"
#include "runtime/Clock.h"
#include "runtime/VBError.h"
#include "shell/frmAbout.h"
#include "store/StoreErrors.h"
#include "support/ErrorOf.h"
#include "support/ScreenTest.h"
#include "support/Shown.h"

using shell::frmAbout;
using shell::screens;
using vb::Variant;

namespace {

class AlertsTest : public ScreenTest
{
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        // The register stands in for Form7, so that only its opening is seen here.
        standIn("Form7", QStringList{}, &form7Loads);
    }

    /// A register row of a model AX100 due on Prossima (Null: no date).
    void due(const QString& macchina, const QString& numerazione, const QString& tipo, const Variant& minuti,
             const Variant& prossima)
    {
        plant.registerRow({{"Macchina", macchina},
                           {"Modello", "AX100"},
                           {"Numerazione", numerazione},
                           {"Manutenzione_Tipo", tipo},
                           {"Tempo_Minuti", minuti},
                           {"Prossima", prossima}});
    }
    void dueIn(int days, const QString& numerazione, const QString& tipo = "Mensile")
    {
        due("PRESSA", numerazione, tipo, 90, Variant::fromDate(vb::Clock::today().addDays(days)));
    }

    /// frmAbout's load, as a start runs it (frmMain not visible).
    void loadAbout() { screens().form("frmAbout"); }

    int form7Loads = 0;
};

const QString Question = "Attenzione!! Oggi sono in programma delle Manutenzioni, Vuoi vedere i dettagli?";

} // namespace

TEST_F(AlertsTest, NothingDueShowsNoBoxAndLeavesTheRegisterClosed)
{
    dueIn(2, "1"); // the day after tomorrow is not due yet
    loadAbout();
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(form7Loads, 0);
}

// Rows come oldest first, one box each by the day count d: -3 or less a warning with the
// days past, 0 today, 1 tomorrow; -1 and -2 pass in silence (three days' grace, on purpose).
TEST_F(AlertsTest, OneBoxPerRowByTheDayCountInDateOrder)
{
    // Late in the evening: the time of day plays no part in the count.
    vb::Clock::freeze(QDateTime(QDate(2026, 11, 15), QTime(23, 59, 0)));
    dueIn(1, "7", "Bimestrale");
    dueIn(-2, "2");
    dueIn(0, "4");
    dueIn(-5, "10");
    dueIn(-1, "3");
    dueIn(-3, "11");
    dueIn(2, "12");
    answer({vb::answer::Yes});
    loadAbout();

    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 5u);
    EXPECT_BOX(shown[0], "MANUTENZIONE DA ESEGUIRE", Question, 20);
    EXPECT_BOX(shown[1], "PERIODO DI MANUTENZIONE SCADUTO DA 5 GIORNI PER LA MACCHINA: PRESSA AX100 N°10",
               " Attenzione!! La Manutezione: Mensile Tempo richiesto minuti: 90 era programmata in "
               "data 10/11/2026 sono trascorsi 5 giorni ma non è ancora stata eseguita!!",
               48);
    EXPECT_EQ(shown[2].title, "PERIODO DI MANUTENZIONE SCADUTO DA 3 GIORNI PER LA MACCHINA: PRESSA AX100 N°11");
    EXPECT_TRUE(shown[2].prompt.contains("in data 12/11/2026 sono trascorsi 3 giorni"));
    EXPECT_BOX(shown[3],
               "MANUTENZIONE ODIERNA:", "MACCHINA:[PRESSA AX100 N°4] Frequenza:[Mensile] Tempo richiesto minuti:[90]",
               64);
    EXPECT_BOX(shown[4], "MANUTENZIONE PREVISTA DOMANI: MACCHINA: PRESSA AX100 N°7",
               " Attenzione!! Domani è Prevista la Manutezione [Bimestrale] alla Macchina [PRESSA "
               "AX100 N°7] Tempo richiesto minuti:[90] ... O R G A N I Z Z A T I!",
               64);

    EXPECT_EQ(form7Loads, 1);
    EXPECT_TRUE(screens().loaded("Form7")->isVisible());
}

TEST_F(AlertsTest, NoToTheQuestionShowsNothingMoreAndNoRegister)
{
    dueIn(-10, "1");
    answer({vb::answer::No});
    loadAbout();
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_EQ(form7Loads, 0);
}

// A maintenance one or two days late still asks the question; Yes then shows no detail,
// and the register opens all the same.
TEST_F(AlertsTest, OnlyOneOrTwoDaysLateAsksButShowsNoDetail)
{
    dueIn(-1, "1");
    dueIn(-2, "2");
    answer({vb::answer::Yes});
    loadAbout();
    EXPECT_EQ(oneBox().title, "MANUTENZIONE DA ESEGUIRE");
    EXPECT_EQ(form7Loads, 1);
}

TEST_F(AlertsTest, EmptyValuesJoinAsNothing)
{
    due("TORNIO", QString(), "Annuale", Variant::null(), Variant::fromDate(vb::Clock::today()));
    answer({vb::answer::Yes});
    loadAbout();
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[1].prompt, "MACCHINA:[TORNIO AX100 N°] Frequenza:[Annuale] Tempo richiesto minuti:[]");
}

// A row without Prossima is never due: Jet's "Prossima <= Date()+1" is not true for Null.
// Were one to reach the count, it would give no date (error 13), and that error would go
// up to frmMain's load (below).
TEST_F(AlertsTest, ProssimaNullIsNotDueAndGivesNoDayCount)
{
    due("PRESSA", "1", "Mensile", 90, Variant::null());
    loadAbout();
    EXPECT_TRUE(boxes().empty());

    EXPECT_EQ(errorOf([] { shell::dueDayCount(shell::alertToday(), Variant::null()); }), vb::err::TypeMismatch);
    EXPECT_EQ(shell::alertToday(), "15,11,2026");
    EXPECT_EQ(shell::dueDayCount("15,11,2026", Variant::fromDateTime(QDateTime(QDate(2026, 11, 12), QTime(18, 0)))),
              -3);
}

// The alerts have no trap of their own: a failure goes up to frmMain's load, whose trap
// shows "{number} {description}" and ends the load: no time stamp, no workload line.
TEST_F(AlertsTest, AFailureOfTheAlertsEndsTheMainLoad)
{
    definition::installWorkloadLine();
    exec("DROP TABLE Tbl_Maintenance");
    shell::frmMain* main = start();
    ASSERT_NE(main, nullptr);
    EXPECT_TRUE(kit::errorBox(oneBox(), store::errors::NotFound));
    EXPECT_TRUE(main->Txt_Apertura->Text().isEmpty());
    EXPECT_EQ(main->Label1->Caption(), "Label1");
}

// The whole start: the alerts, then the register named in the main title, then the
// workload line last.
TEST_F(AlertsTest, StartShowsTheAlertsOpensTheRegisterAndWritesTheWorkloadLine)
{
    definition::installWorkloadLine();
    dueIn(0, "1");
    answer({vb::answer::Yes});
    shell::frmMain* main = start();
    ASSERT_NE(main, nullptr);
    EXPECT_EQ(boxes().size(), 2u);
    EXPECT_EQ(form7Loads, 1);
    EXPECT_EQ(main->Caption(), "VELMORA <Esegui Manutenzioni>");
    EXPECT_FALSE(main->Img_Indicatore->isVisibleTo(main));
    EXPECT_EQ(main->Label1->Caption(), "Tempo previsto per le Manutenzioni inserite [-Ore Settimanali: "
                                       "hh:mm:ss 00:00:00 -Persone Necessarie: ]");

    // Opened again from the logo with the main screen up: no query, no box.
    screens().unload("frmAbout");
    main->Image6_Click();
    EXPECT_TRUE(screens().isLoaded("frmAbout"));
    EXPECT_TRUE(boxes().empty());
}

// The fade: up by 5 from 1 every tick until 250 or more, then the timer stops; Image6 turns
// it round, down by 10, and at 10 or below the screen goes.
TEST_F(AlertsTest, FadeInStopsAt251AndFadeOutUnloads)
{
    loadAbout();
    auto* about = screens().formAs<frmAbout>("frmAbout");
    ASSERT_NE(about, nullptr);
    about->show();
    EXPECT_EQ(about->Opacity(), 1);
    EXPECT_TRUE(about->timeInc->Enabled());
    EXPECT_FALSE(about->timeDec->Enabled());
    for (int i = 0; i < 50; ++i)
        about->timeInc->tick();
    EXPECT_EQ(about->Opacity(), 251);
    about->timeInc->tick();
    EXPECT_FALSE(about->timeInc->Enabled());
    EXPECT_EQ(about->vbProperty("Opacity").toLong(), 251);

    about->Image6->click();
    EXPECT_FALSE(about->timeInc->Enabled());
    EXPECT_TRUE(about->timeDec->Enabled());
    for (int i = 0; i < 25; ++i)
        about->timeDec->tick();
    EXPECT_EQ(about->Opacity(), 1);
    EXPECT_TRUE(screens().isLoaded("frmAbout"));
    about->timeDec->tick();
    EXPECT_FALSE(screens().isLoaded("frmAbout"));
}

TEST_F(AlertsTest, HoverSwapsThePairsAndImage2OpensTheAccessScreen)
{
    loadAbout();
    auto* about = screens().formAs<frmAbout>("frmAbout");
    ASSERT_NE(about, nullptr);
    EXPECT_EQ(about->Label1->Caption(), "V3.5.5");
    EXPECT_EQ(about->Caption(), "Developers");
    about->Image1->MouseMove();
    EXPECT_TRUE(about->Image1->isHidden());
    EXPECT_FALSE(about->Image4->isHidden());
    EXPECT_FALSE(about->Image3->isHidden());
    about->MouseMove();
    EXPECT_FALSE(about->Image1->isHidden());
    EXPECT_TRUE(about->Image4->isHidden());
    EXPECT_FALSE(about->Image5->isHidden());

    about->show();
    about->Image2->click();
    vb::Form* form20 = screens().loaded("Form20");
    ASSERT_NE(form20, nullptr);
    EXPECT_TRUE(form20->isVisible());
}
