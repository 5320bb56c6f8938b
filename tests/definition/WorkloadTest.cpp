// The weekly workload: the figures of an assignment, the total line, the Tempo_Ore refresh.
#include "definition/Workload.h"

#include "controls/DataControls.h"
#include "support/ScreenTest.h"

using definition::DurationWidth;
using definition::StoreBy;
using definition::WorkloadTotal;
using vb::Variant;

namespace {

class WorkloadTest : public ScreenTest
{
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        // Models: 1 PRESSA AX100 with two units, 2 FRESA F10 with none, 3 TORNIO T200 with one.
        plant.units(plant.model("PRESSA", "AX100"), {"1", "2"});
        plant.model("FRESA", "F10");
        plant.unit(plant.model("TORNIO", "T200"), "1");
        // Types of the new store: 1 Settimanale (coefficient 1), 2 Mensile (0.25).
        for (const auto& [m, t, minutes] :
             {std::tuple{1, 1, 400}, {1, 1, 200}, {1, 2, 30}, {1, 2, 60}, {2, 1, 90}, {3, 1, 2160}})
            plant.step(m, t, 1, "Passo", minutes);
        for (auto [m, t] : {std::pair{1, 1}, {1, 2}, {2, 1}, {3, 1}, {3, 2}})
            plant.assignment(m, t, {{"Tempo_Ore", "prima"}, {"Tot_Ore_Sett", "prima"}});
    }

    /// Tempo_Minuti, Tempo_Ore, Minuti_Sett, Num_Macchine, Tot_Minuti_Sett, Tot_Ore_Sett of one assignment.
    std::vector<Variant> stored(int m, int t)
    {
        return rows(QStringLiteral("SELECT Tempo_Minuti, Tempo_Ore, Minuti_Sett, Num_Macchine, Tot_Minuti_Sett, "
                                   "Tot_Ore_Sett FROM Tbl_Assegna_M WHERE ID_MODELLO = %1 AND ID_MAINT_TIPO = %2")
                        .arg(m)
                        .arg(t))
            .at(0);
    }

    static QString caption(const QString& screen, const QString& control)
    {
        return shell::screens().control(screen, control)->vbProperty(QStringLiteral("Caption")).toString();
    }

    static std::vector<Variant> figures(double S, const char* ore, const char* sett, const Variant& n, const char* tot,
                                        const char* totOre)
    {
        return {Variant(S), Variant(QString::fromUtf8(ore)), Variant(QString::fromUtf8(sett)),
                n,          Variant(QString::fromUtf8(tot)), Variant(QString::fromUtf8(totOre))};
    }
};

} // namespace

TEST_F(WorkloadTest, FiguresOfAnAssignmentAreStoredAsTexts)
{
    const auto f = definition::Recompute_Workload(QStringLiteral("1"), QStringLiteral("1"));
    EXPECT_TRUE(f.found);
    EXPECT_EQ(stored(1, 1), figures(600, "10:00:00", "600,00", Variant(QStringLiteral("2")), "1.200,00", "20:00:00"));

    definition::Recompute_Workload(1, 2);
    EXPECT_EQ(stored(1, 2), figures(90, "01:30:00", "22,50", Variant(QStringLiteral("2")), "45,00", "00:45:00"));
}

// Durations are not limited to 24 hours: 2160 minutes read 36:00:00.
TEST_F(WorkloadTest, HoursRunBeyondADay)
{
    definition::Recompute_Workload(3, 1);
    EXPECT_EQ(stored(3, 1),
              figures(2160, "36:00:00", "2.160,00", Variant(QStringLiteral("1")), "2.160,00", "36:00:00"));
}

// A model without units: N stays empty (stored as ''), the week's products are 0.
TEST_F(WorkloadTest, AModelWithoutUnitsHasNoCountAndNoWeek)
{
    const auto f = definition::Recompute_Workload(2, 1);
    EXPECT_TRUE(f.N.isEmpty());
    EXPECT_EQ(stored(2, 1), figures(90, "01:30:00", "90,00", Variant(QString()), "0,00", "00:00:00"));
}

TEST_F(WorkloadTest, AnAssignmentWithoutStepsStoresNothing)
{
    const auto before = stored(3, 2);
    const auto f = definition::Recompute_Workload(3, 2);
    EXPECT_FALSE(f.found);
    EXPECT_EQ(stored(3, 2), before);
}

// Cmd_Inserisci works the week's duration in 16-bit seconds: above 546 minutes the seconds
// overflow, the command goes on, and the duration shows 00:00:00. Only that duration.
TEST_F(WorkloadTest, SixteenBitWeekDurationOfTheStepInsertion)
{
    definition::Recompute_Workload(1, 1, DurationWidth::Narrow16);
    EXPECT_EQ(stored(1, 1), figures(600, "10:00:00", "600,00", Variant(QStringLiteral("2")), "1.200,00", "00:00:00"));
    definition::Recompute_Workload(1, 2, DurationWidth::Narrow16);
    EXPECT_EQ(stored(1, 2)[5], Variant(QStringLiteral("00:45:00")));
    definition::Recompute_Workload(1, 1);
    EXPECT_EQ(stored(1, 1)[5], Variant(QStringLiteral("20:00:00")));
}

// The row change of Form13's grid writes through the assignment's recordset and leaves
// Tempo_Ore and Tot_Ore_Sett as they were.
TEST_F(WorkloadTest, RowChangeWritesThroughTheRecordsetWithoutTheDurations)
{
    const auto f = definition::Recompute_Workload(1, 1, DurationWidth::Wide, StoreBy::Recordset);
    EXPECT_EQ(f.totOreSett, QStringLiteral("20:00:00"));
    EXPECT_EQ(stored(1, 1), figures(600, "prima", "600,00", Variant(QStringLiteral("2")), "1.200,00", "prima"));
}

// The total: 00:00:00 and no persons with nothing assigned; from 24 hours on the time's
// date conversion fails and 00:00:00 stays (kept as it is); persons one at the least, above
// that one decimal with the decimal comma.
TEST_F(WorkloadTest, TimeAndPersonsOfAWeek)
{
    struct Case
    {
        Variant T;
        const char* time;
        const char* persons;
    };
    const Case cases[] = {
        {Variant::null(), "00:00:00", ""},
        {Variant(0.0), "00:00:00", ""},
        {Variant(-5.0), "00:00:00", ""},
        {Variant(1200.0), "20:00:00", "1"},
        {Variant(2400.0), "00:00:00", "1"},
        {Variant(1439.5), "23:59:30", "1"},
        {Variant(3000.0), "00:00:00", "1,3"},
        {Variant(7320.0), "00:00:00", "3,1"},
        {Variant(QStringLiteral("1.200,00")), "20:00:00", "1"},
    };
    for (const Case& c : cases) {
        const WorkloadTotal total = definition::workloadTotal(c.T);
        EXPECT_EQ(total.time, QString::fromUtf8(c.time)) << c.T.displayText().toStdString();
        EXPECT_EQ(total.persons, QString::fromUtf8(c.persons)) << c.T.displayText().toStdString();
    }
}

TEST_F(WorkloadTest, TheLinesOfFrmMainAndForm9)
{
    // Nothing assigned yet: the sum is Null.
    exec(QStringLiteral("DELETE * FROM Tbl_Assegna_M"));
    standIn("frmMain", {"L:Label1"});
    shell::screens().form(QStringLiteral("frmMain"));
    definition::Show_Workload_Total();
    EXPECT_EQ(caption(QStringLiteral("frmMain"), QStringLiteral("Label1")),
              QStringLiteral("Tempo previsto per le Manutenzioni inserite [-Ore Settimanali: hh:mm:ss 00:00:00 "
                             "-Persone Necessarie: ]"));
    // Form9 is not brought into being by the total.
    EXPECT_FALSE(shell::screens().isLoaded(QStringLiteral("Form9")));

    // 1.200,00 + 1.800,00 as texts: 3000 minutes, 50 hours.
    plant.assignment(1, 1, {{"Tot_Minuti_Sett", "1.200,00"}});
    plant.assignment(1, 2, {{"Tot_Minuti_Sett", "1.800,00"}});
    standIn(QStringLiteral("Form9"), [](QWidget* owner) -> vb::Form* {
        auto* f = new vb::Form(owner, QStringLiteral("Form9"));
        new vb::Label(f, QStringLiteral("Label2"));
        auto* adodc = new vb::Adodc(f, QStringLiteral("Adodc5"));
        adodc->setRecordSource(QStringLiteral("SELECT * FROM Tbl_Macchina"));
        adodc->Refresh();
        return f;
    });
    shell::screens().form(QStringLiteral("Form9"));
    definition::Show_Workload_Total();
    EXPECT_EQ(caption(QStringLiteral("frmMain"), QStringLiteral("Label1")),
              QStringLiteral("Tempo previsto per le Manutenzioni inserite [-Ore Settimanali: hh:mm:ss 00:00:00 "
                             "-Persone Necessarie: 1,3]"));
    EXPECT_EQ(caption(QStringLiteral("Form9"), QStringLiteral("Label2")),
              QStringLiteral("N° 3 Macchine    [-Ore Settimanali: hh:mm:ss 00:00:00 -Persone Necessarie: 1,3]"));

    // 1200 minutes: 20 hours, one person.
    exec(QStringLiteral("DELETE * FROM Tbl_Assegna_M WHERE ID_MAINT_TIPO = 2"));
    definition::Show_Workload_Total();
    EXPECT_EQ(caption(QStringLiteral("Form9"), QStringLiteral("Label2")),
              QStringLiteral("N° 3 Macchine    [-Ore Settimanali: hh:mm:ss 20:00:00 -Persone Necessarie: 1]"));
}

// Form13's load: every assignment's Tempo_Ore from its Tempo_Minuti; a row without minutes
// keeps what it has.
TEST_F(WorkloadTest, TempoOreRefreshOfEveryAssignment)
{
    exec(QStringLiteral("UPDATE Tbl_Assegna_M SET Tempo_Minuti = 90 WHERE ID_MODELLO = 1 AND ID_MAINT_TIPO = 1"));
    exec(QStringLiteral("UPDATE Tbl_Assegna_M SET Tempo_Minuti = 1500 WHERE ID_MODELLO = 1 AND ID_MAINT_TIPO = 2"));
    definition::Refresh_Tempo_Ore();
    EXPECT_EQ(stored(1, 1)[1], Variant(QStringLiteral("01:30:00")));
    EXPECT_EQ(stored(1, 2)[1], Variant(QStringLiteral("25:00:00")));
    EXPECT_EQ(stored(2, 1)[1], Variant(QStringLiteral("prima")));
}
