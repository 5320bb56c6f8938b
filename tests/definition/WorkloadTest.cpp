// The weekly workload: the figures of an assignment, the total line, the Tempo_Ore refresh.
#include "definition/Workload.h"

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

    /// Tempo_Minuti|Tempo_Ore|Minuti_Sett|Num_Macchine|Tot_Minuti_Sett|Tot_Ore_Sett of one assignment, Null as <null>.
    static QString stored(int m, int t)
    {
        const Rows r =
            rows(QStringLiteral("SELECT Tempo_Minuti, Tempo_Ore, Minuti_Sett, Num_Macchine, Tot_Minuti_Sett, "
                                "Tot_Ore_Sett FROM Tbl_Assegna_M WHERE ID_MODELLO = %1 AND ID_MAINT_TIPO = %2")
                     .arg(m)
                     .arg(t));
        QStringList out;
        for (const Variant& v : r.at(0))
            out << (v.isNull() ? "<null>" : v.toString());
        return out.join('|');
    }

    static QString mainLine()
    {
        return shell::screens().control("frmMain", "Label1")->vbProperty("Caption").toString();
    }
};

} // namespace

TEST_F(WorkloadTest, FiguresOfAnAssignmentAreStoredAsTexts)
{
    const auto f = definition::Recompute_Workload(QStringLiteral("1"), QStringLiteral("1"));
    EXPECT_TRUE(f.found);
    EXPECT_EQ(stored(1, 1), "600|10:00:00|600,00|2|1.200,00|20:00:00");

    definition::Recompute_Workload(1, 2);
    EXPECT_EQ(stored(1, 2), "90|01:30:00|22,50|2|45,00|00:45:00");
}

// Durations are not limited to 24 hours: 2160 minutes read 36:00:00.
TEST_F(WorkloadTest, HoursRunBeyondADay)
{
    definition::Recompute_Workload(3, 1);
    EXPECT_EQ(stored(3, 1), "2160|36:00:00|2.160,00|1|2.160,00|36:00:00");
}

// A model without units: N stays empty (stored as ''), the week's products are 0.
TEST_F(WorkloadTest, AModelWithoutUnitsHasNoCountAndNoWeek)
{
    const auto f = definition::Recompute_Workload(2, 1);
    EXPECT_TRUE(f.N.isEmpty());
    EXPECT_EQ(stored(2, 1), "90|01:30:00|90,00||0,00|00:00:00");
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
    EXPECT_EQ(stored(1, 1), "600|10:00:00|600,00|2|1.200,00|00:00:00");
    definition::Recompute_Workload(1, 2, DurationWidth::Narrow16);
    EXPECT_TRUE(stored(1, 2).endsWith("|00:45:00"));
    definition::Recompute_Workload(1, 1);
    EXPECT_TRUE(stored(1, 1).endsWith("|20:00:00"));
}

// The row change of Form13's grid writes through the assignment's recordset and leaves
// Tempo_Ore and Tot_Ore_Sett as they were.
TEST_F(WorkloadTest, RowChangeWritesThroughTheRecordsetWithoutTheDurations)
{
    const auto f = definition::Recompute_Workload(1, 1, DurationWidth::Wide, StoreBy::Recordset);
    EXPECT_EQ(f.totOreSett, QStringLiteral("20:00:00"));
    EXPECT_EQ(stored(1, 1), "600|prima|600,00|2|1.200,00|prima");
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

TEST_F(WorkloadTest, TheLineOfFrmMainWithNothingAssigned)
{
    // Nothing assigned yet: the sum is Null.
    exec("DELETE * FROM Tbl_Assegna_M");
    standIn("frmMain", {"L:Label1"});
    shell::screens().form("frmMain");
    definition::Show_Workload_Total();
    EXPECT_EQ(
        mainLine(),
        "Tempo previsto per le Manutenzioni inserite [-Ore Settimanali: hh:mm:ss 00:00:00 -Persone Necessarie: ]");
    // Form9 is not brought into being by the total.
    EXPECT_FALSE(shell::screens().isLoaded("Form9"));
}

// Form13's load: every assignment's Tempo_Ore from its Tempo_Minuti; a row without minutes
// keeps what it has.
TEST_F(WorkloadTest, TempoOreRefreshOfEveryAssignment)
{
    exec(QStringLiteral("UPDATE Tbl_Assegna_M SET Tempo_Minuti = 90 WHERE ID_MODELLO = 1 AND ID_MAINT_TIPO = 1"));
    exec(QStringLiteral("UPDATE Tbl_Assegna_M SET Tempo_Minuti = 1500 WHERE ID_MODELLO = 1 AND ID_MAINT_TIPO = 2"));
    definition::Refresh_Tempo_Ore();
    EXPECT_EQ(column("SELECT Tempo_Ore FROM Tbl_Assegna_M ORDER BY ID"),
              QStringList({"01:30:00", "25:00:00", "prima", "prima", "prima"}));
}
