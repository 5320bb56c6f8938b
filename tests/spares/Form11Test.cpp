// The intervention statistics driven from outside: the three top levels, the drill-down
// to parts and to dates and places, and the charts drawn from the same figures.
#include "spares/Form11.h"

#include "spares/InterventionCharts.h"
#include "support/DriveScript.h"
#include "support/SparesTest.h"

#include <QFileInfo>

namespace {

class Form11Road : public InterventionsTest
{
protected:
    void SetUp() override
    {
        InterventionsTest::SetUp();
        exec("INSERT INTO Tbl_Causa_Intervento (Causa_Interv) VALUES ('Rottura')");
        addIntervention(1, 1, QDate(2025, 3, 4));
        addIntervention(1, 2, QDate(2026, 3, 9));
        addIntervention(2, 1, QDate(2026, 5, 2), 2, 1, "Rullo");
        addIntervention(3, 4, QDate(2026, 5, 20), 1, 3, "Testa");
        addIntervention(3, 1, QDate(2026, 6, 1), 99); // a cause never stored: counts nowhere
    }

    QString get(const QString& what) { return InterventionsTest::get("Form11", what); }
    spares::Form11* form11() { return shell::screens().formAs<spares::Form11>("Form11"); }
};

} // namespace

TEST_F(Form11Road, TheThreeTopLevelsDrillDownToPartsDatesAndPlaces)
{
    // The interventions screen's command opens it.
    drive("show Form14");
    drive("click Form14.Cmd_Statistic");
    ASSERT_TRUE(drive("loaded Form11").toBool());

    // By machine and cause: two of one cause on one machine count as 2 in one row.
    EXPECT_EQ(grid("Form11.DataGrid1"),
              (QStringList{"PRESSA|AX100|1|Usura|2", "PRESSA|AX100|1|Rottura|1", "TORNIO|T200|10|Usura|1"}));
    EXPECT_EQ(get("Label1.Caption"), "Conteggio Cause: 3");
    drive("select Form11.DataGrid1 0");
    EXPECT_EQ(get("Txt_Modello.Text") + get("txt_Causa.Text"), "AX100Usura");
    EXPECT_EQ(grid("Form11.DataGrid2"), QStringList{"PRESSA|AX100|Usura|CUSCINETTI|Radiale 6204|2"});
    drive("select Form11.DataGrid2 0");
    EXPECT_EQ(get("Txt_Ricambio.Text"), "CUSCINETTI");
    EXPECT_EQ(get("Label3.Caption"), "Conteggio Destinazioni: 0") << "by model and cause the dates stay as they were";

    // One cause, and every cause again.
    drive("choose Form11.DataCombo7 Rottura");
    EXPECT_EQ(grid("Form11.DataGrid1"), QStringList{"PRESSA|AX100|1|Rottura|1"});
    EXPECT_EQ(grid("Form11.DataGrid2"), QStringList{"PRESSA|AX100|Rottura|CUSCINETTI|Assiale 51105|1"});
    drive("set Form11.DataCombo7.Text Visualizza Tutto");
    EXPECT_EQ(get("Label1.Caption") + "; " + get("Label2.Caption"), "Conteggio Cause: 3; Conteggio Interventi: 3");

    // By destination. Emptying the cause runs its change, which empties this field too:
    // the first key typed after a cause is lost, as it always was.
    drive("type Form11.Txt_Search_Destinazione Mandr");
    EXPECT_EQ(get("Txt_Search_Destinazione.Text"), "andr");
    EXPECT_EQ(get("Txt_Case_Search.Text"), "1");
    EXPECT_EQ(grid("Form11.DataGrid1"), QStringList{"PRESSA|AX100|1|Usura|2"});
    drive("select Form11.DataGrid1 0");
    drive("select Form11.DataGrid2 0");
    EXPECT_EQ(grid("Form11.DataGrid3"), (QStringList{"04/03/2025|Mandrino", "09/03/2026|Mandrino"}));
    drive("select Form11.DataGrid3 1");
    EXPECT_EQ(get("Txt_DATA.Text") + " " + get("Txt_Destinazione.Text"), "09/03/2026 Mandrino");

    // A model from its start.
    drive("type Form11.Txt_Search_Mod_Macc T2");
    EXPECT_EQ(grid("Form11.DataGrid1"), QStringList{"TORNIO|T200|10|Usura|1"});
    EXPECT_EQ(get("Txt_Search_Destinazione.Text"), "");

    // The ranking: most interventions first, then a machine's parts and their dates.
    drive("click Form11.Cmd_Interventi_Macch");
    EXPECT_EQ(grid("Form11.DataGrid1"), (QStringList{"3|PRESSA|AX100|1|1", "1|TORNIO|T200|10|3"}));
    EXPECT_EQ(get("Label1.Caption"), "Conteggio Interventi: 2");
    drive("select Form11.DataGrid1 1");
    EXPECT_EQ(grid("Form11.DataGrid2"), QStringList{"TORNIO|T200|OLIO|Idraulico HLP46|1|10"});
    drive("select Form11.DataGrid2 0");
    EXPECT_EQ(grid("Form11.DataGrid3"), QStringList{"20/05/2026|Testa"});
}

TEST_F(Form11Road, TheChartsDrawTheGridsFiguresAndSaveThroughTheFileDialog)
{
    drive("show Form11");
    drive("click Form11.Cmd_Grafico");
    spares::InterventionCharts* charts = form11()->charts();
    ASSERT_NE(charts, nullptr);
    ASSERT_EQ(std::pair(charts->count(), charts->current()), std::pair(3, 0));

    // Every machine of the list: the grid's counts summed by cause.
    const spares::ChartFigures& causes = charts->figures(0);
    EXPECT_EQ(causes.labels, (QStringList{"Usura", "Rottura"}));
    EXPECT_EQ(causes.values[0], (std::vector<double>{3, 1}));
    const spares::ChartFigures& months = charts->figures(2);
    EXPECT_EQ(months.series, (QStringList{"2025", "2026"}));
    EXPECT_EQ(months.values[1][4], 2) << "May 2026: the one with an unknown cause left out";

    // The machine chosen; then the ranking opens on its own tab, as the grid lists it.
    drive("select Form11.DataGrid1 2");
    drive("click Form11.Cmd_Grafico");
    EXPECT_EQ(form11()->charts()->figures(0).labels, QStringList{"Usura"});
    EXPECT_EQ(form11()->charts()->figures(0).values[0], std::vector<double>{1});
    drive("click Form11.Cmd_Interventi_Macch");
    drive("click Form11.Cmd_Grafico");
    charts = form11()->charts();
    EXPECT_EQ(charts->current(), 1);
    EXPECT_EQ(charts->figures(1).labels, (QStringList{"AX100 N° 1", "T200 N° 10"}));
    EXPECT_EQ(charts->figures(1).values[0], (std::vector<double>{3, 1}));

    const QString png = path() + "/grafico.png";
    drive("file " + png);
    charts->saveAs(false);
    EXPECT_TRUE(QFileInfo(png).size() > 0);
    const QJsonArray dialogs = drive("dialogs").toArray();
    ASSERT_EQ(dialogs.size(), 1);
    EXPECT_EQ(dialogs[0]["title"].toString(), "Salva grafico");
    EXPECT_TRUE(charts->save(path() + "/grafico.pdf"));

    // An empty store draws empty charts that say so.
    exec("DELETE * FROM Tbl_Ricerca");
    kit::run(drive, {"unload Form11", "show Form11", "click Form11.Cmd_Grafico"});
    EXPECT_TRUE(form11()->charts()->figures(0).empty());
    EXPECT_TRUE(form11()->charts()->figures(2).empty());
}
