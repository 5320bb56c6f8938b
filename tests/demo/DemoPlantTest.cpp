// The demo plant: sound, the same for a seed, its dates around the demo day, and started on.
#include "DemoFixture.h"
#include "demo/LargeStore.h"
#include "runtime/VBFunctions.h"
#include "shell/Program.h"
#include "shell/frmMain.h"

#include <QRegularExpression>

#include <limits>

namespace {

TEST_F(DemoFixture, DemoPlantIsSoundAndComplete)
{
    EXPECT_FALSE(demo::storeHasData()); // a new store holds only the frequency kinds
    const demo::PlantSummary s = demo::makeDemoPlant();
    EXPECT_TRUE(demo::storeHasData());
    EXPECT_EQ(rows("PRAGMA integrity_check"), QStringList{"ok"});

    // The plant: departments, models with makers and states, 2 to 8 units each.
    EXPECT_TRUE(s.departments >= 4 && s.departments <= 6) << s.departments;
    EXPECT_TRUE(s.models >= 25 && s.models <= 40) << s.models;
    constexpr int many = std::numeric_limits<int>::max();
    // Each statement counts between its two bounds.
    const std::tuple<const char*, int, int> counts[] = {
        {"SELECT count(*) FROM Tbl_Macchina WHERE Costruttore = '' OR Stato = '' OR REPARTO = ''", 0, 0},
        {"SELECT count(DISTINCT Stato) FROM Tbl_Macchina", 2, many},
        {"SELECT count(*) FROM (SELECT ID_MODELLO, count(*) AS n FROM Tbl_Numerazione GROUP BY ID_MODELLO "
         "HAVING n < 2 OR n > 8)",
         0, 0},
        // Every model has units below ten and above: "10" sorts before "2" as text, after it by Val.
        {"SELECT count(*) FROM Tbl_Macchina M WHERE NOT EXISTS (SELECT 1 FROM Tbl_Numerazione U "
         "WHERE U.ID_MODELLO = M.ID_MODELLO AND length(U.Numerazione) = 1) OR NOT EXISTS (SELECT 1 "
         "FROM Tbl_Numerazione U WHERE U.ID_MODELLO = M.ID_MODELLO AND length(U.Numerazione) > 1)",
         0, 0},
        // General procedures of 3 to 10 steps with their texts; 1 to 3 assignments a model.
        {"SELECT count(*) FROM (SELECT ID_MODELLO, count(*) AS n FROM Tbl_Proc_General GROUP BY ID_MODELLO "
         "HAVING n < 3 OR n > 10)",
         0, 0},
        {"SELECT count(*) FROM Tbl_Proc_General WHERE length(Procedura) < 20 OR Minuti <= 0", 0, 0},
        {"SELECT count(*) FROM (SELECT ID_MODELLO, count(*) AS n FROM Tbl_Assegna_M GROUP BY ID_MODELLO "
         "HAVING n < 1 OR n > 3)",
         0, 0},
        // Spare parts below, at and just above the minimum.
        {"SELECT count(*) FROM Tbl_Descrizione_Ricambi WHERE Giacenza < Scorta", 1, many},
        {"SELECT count(*) FROM Tbl_Descrizione_Ricambi WHERE Giacenza = Scorta", 1, many},
        {"SELECT count(*) FROM Tbl_Descrizione_Ricambi WHERE Giacenza = Scorta + 1", 1, many},
        {"SELECT count(*) FROM Tbl_Descrizione_Ricambi WHERE Giacenza > Scorta + 1", 10, many},
        {"SELECT count(*) FROM Tbl_Descrizione_Ricambi WHERE Giacenza < 0", 0, 0},
        {"SELECT count(*) FROM Tbl_Ricerca R WHERE NOT EXISTS (SELECT 1 FROM Tbl_Causa_Intervento C "
         "WHERE C.ID_CAUSA = R.ID_CAUSA) OR Destinazione = ''",
         0, 0},
        // Orders: an open one, evaded lines still waiting and received ones; the latest
        // order has begun to arrive: its date shows lines received and lines waiting.
        {"SELECT count(*) FROM Tbl_Order", 1, many},
        {"SELECT count(*) FROM Tbl_Historian_Orders WHERE Data_Ricevuto = 'Non Ricevuto'", 1, many},
        {"SELECT count(DISTINCT Data_Ricevuto = 'Non Ricevuto') FROM Tbl_Historian_Orders "
         "WHERE DATA = (SELECT max(DATA) FROM Tbl_Historian_Orders)",
         2, 2},
        {"SELECT count(*) FROM Tbl_Fornitori", 5, many},
        // People and notes, general ones among them.
        {"SELECT count(*) FROM Tbl_Operatore", 5, many},
        {"SELECT count(*) FROM Tbl_Maintenance_Note WHERE ID_MODELLO = 0", 1, many},
        {"SELECT count(*) FROM Tbl_Maintenance_Note WHERE ID_MODELLO <> 0", 1, many},
    };
    for (const auto& [sql, low, high] : counts) {
        const int n = number(sql);
        EXPECT_GE(n, low) << sql;
        EXPECT_LE(n, high) << sql;
    }

    // Each assignment has its steps, its sheet (code as the start-up composes it, one
    // revision per step inserted) and the workload figures the program computed.
    EXPECT_EQ(number("SELECT count(*) FROM Tbl_Assegna_M A JOIN Tbl_Certif_Proced_Manut C ON C.ID_Assegna_M = A.ID"),
              s.assignments);
    EXPECT_EQ(
        number("SELECT count(*) FROM Tbl_Assegna_M A JOIN Tbl_Certif_Proced_Manut C ON C.ID_Assegna_M = A.ID "
               "WHERE trim(C.Scheda) <> A.ID_MODELLO || '_' || A.ID_MAINT_TIPO || substr(A.Macchina, 1, 3) || '_' "
               "|| substr(A.Modello, 1, 3) || '_' || substr(A.Manutenzione_Tipo, 1, 3) OR C.Rev < 1 OR C.Rev <> "
               "(SELECT count(*) FROM Tbl_ProcedureM P WHERE P.ID_MODELLO = A.ID_MODELLO AND P.ID_MAINT_TIPO = "
               "A.ID_MAINT_TIPO) OR A.Tempo_Ore NOT GLOB '[0-9][0-9]:[0-9][0-9]:[0-9][0-9]' OR A.Num_Macchine "
               "<> (SELECT count(*) FROM Tbl_Numerazione U WHERE U.ID_MODELLO = A.ID_MODELLO) "
               "OR instr(A.Tot_Minuti_Sett, ',') = 0"), // Italian decimals
        0);

    // Two years of interventions; received orders dated d/m/yyyy, unpadded.
    const int first = int(vb::toSerial(demoDay().addDays(-730)));
    EXPECT_EQ(number("SELECT count(*) FROM Tbl_Ricerca"), s.interventions);
    EXPECT_GE(s.interventions, 300);
    EXPECT_EQ(rows(QString("SELECT min(Data) >= %1, min(Data) < %2, max(Data) < %3 FROM Tbl_Ricerca")
                       .arg(first)
                       .arg(first + 60)
                       .arg(vb::toSerial(demoDay()))),
              QStringList{"1|1|1"});
    const QStringList received =
        rows("SELECT Data_Ricevuto FROM Tbl_Historian_Orders WHERE Data_Ricevuto <> 'Non Ricevuto'");
    ASSERT_FALSE(received.isEmpty());
    for (const QString& r : received)
        EXPECT_TRUE(QRegularExpression("^[1-9]\\d?/[1-9]\\d?/\\d{4}$").match(r).hasMatch()) << qPrintable(r);
}

TEST_F(DemoFixture, RegisterFallsDueAroundTheDemoDayAndTheStartShowsIt)
{
    const demo::PlantSummary s = demo::makeDemoPlant();
    EXPECT_TRUE(s.overdue > 0 && s.dueToday > 0 && s.dueTomorrow > 0);
    const int day = int(vb::toSerial(demoDay()));
    EXPECT_EQ(number(QString("SELECT count(*) FROM Tbl_Maintenance WHERE Prossima < %1").arg(day)), s.overdue);
    EXPECT_GT(number(QString("SELECT count(*) FROM Tbl_Maintenance WHERE Prossima > %1").arg(day + 1)),
              s.registerRows / 2);
    // Overdue rows are three days late or more, so that the start-up shows each of them.
    EXPECT_EQ(
        number(QString("SELECT count(*) FROM Tbl_Maintenance WHERE Prossima IN (%1, %2)").arg(day - 1).arg(day - 2)),
        0);
    // The register's own alert statement sees exactly those rows.
    store::Recordset due;
    due.Open("SELECT * From Tbl_Maintenance Where Prossima <=(Date()+1) order by prossima ;");
    EXPECT_EQ(due.RecordCount(), s.overdue + s.dueToday + s.dueTomorrow);

    // Two machines stand still now, two ran again; the register's stop shift pushed
    // their rows and left every other row at Ultima + 7 × Frequenza_Sett.
    EXPECT_EQ(number("SELECT count(*) FROM Tbl_Fermi_Macchina WHERE length(Ferma_Dal) = 10"), 2);
    EXPECT_EQ(number("SELECT count(*) FROM Tbl_Fermi_Macchina WHERE Ferma_Dal IS NULL AND TOT_Giorni_Stop > 0"), 2);
    EXPECT_EQ(number("SELECT count(*) FROM Tbl_Maintenance M JOIN Tbl_Fermi_Macchina F ON F.ID_NUM = M.ID_NUM "
                     "AND F.ID_MAINT_TIPO = M.ID_MAINT_TIPO WHERE M.Prossima > M.Ultima + 7 * M.Frequenza_Sett"),
              4);
    EXPECT_EQ(number("SELECT count(*) FROM Tbl_Maintenance WHERE Prossima <> Ultima + 7 * Frequenza_Sett"), 4);

    // The chart has the row of every unit in the register.
    EXPECT_EQ(number("SELECT count(*) FROM Tbl_Planned"), number("SELECT count(DISTINCT ID_NUM) FROM Tbl_Maintenance"));

    // Each row's token stands in the week of its Ultima, unless its type never reaches the chart.
    store::Recordset rs;
    rs.Open("SELECT ID_MODELLO, ID_NUM, Manutenzione_Tipo, Ultima FROM Tbl_Maintenance");
    int checked = 0;
    for (; !rs.Eof(); rs.MoveNext()) {
        const QString token = rs.Fields("Manutenzione_Tipo").Value().toString().left(3);
        if (QStringList{"Set", "Ann", "Bie", "Tri"}.contains(token))
            continue;
        const int week = vb::WeekOfYear(vb::dateFromSerial(rs.Fields("Ultima").Value().toDate().serial));
        const QString sql = QString("SELECT \"%1\" FROM Tbl_Planned WHERE ID_MODELLO = %2 AND ID_NUM = %3")
                                .arg(week)
                                .arg(rs.Fields("ID_MODELLO").Value().toLong())
                                .arg(rs.Fields("ID_NUM").Value().toLong());
        EXPECT_TRUE(rows(sql).value(0).contains(token)) << qPrintable(sql);
        ++checked;
    }
    EXPECT_GT(checked, 0);

    // The start on the demo day shows those alerts and the workload line.
    vb::MsgBoxService::takeShown();
    vb::MsgBoxService::queueAnswers({vb::answer::Yes});
    shell::startProgram();

    const std::vector<vb::ShownBox> boxes = vb::MsgBoxService::takeShown();
    ASSERT_FALSE(boxes.empty());
    EXPECT_EQ(boxes.front().title, "MANUTENZIONE DA ESEGUIRE");
    // One box a due row: none of them is one or two days late.
    EXPECT_EQ(int(boxes.size()), 1 + s.overdue + s.dueToday + s.dueTomorrow);
    QStringList titles;
    for (const vb::ShownBox& b : boxes)
        titles << b.title.section(':', 0, 0);
    EXPECT_EQ(titles.count("MANUTENZIONE ODIERNA"), s.dueToday);
    EXPECT_EQ(titles.count("MANUTENZIONE PREVISTA DOMANI"), s.dueTomorrow);

    auto* main = dynamic_cast<shell::frmMain*>(shell::screens().loaded("frmMain"));
    ASSERT_NE(main, nullptr);
    const QRegularExpression line(QStringLiteral(
        "^Tempo previsto per le Manutenzioni inserite \\[-Ore Settimanali: hh:mm:ss \\d\\d:\\d\\d:\\d\\d "
        "-Persone Necessarie: \\d+(,\\d)?\\]$"));
    EXPECT_TRUE(line.match(main->Label1->Caption()).hasMatch()) << qPrintable(main->Label1->Caption());
}

TEST_F(DemoFixture, SameSeedSameRowsOtherSeedOtherRows)
{
    demo::makeDemoPlant(42);
    const QStringList once = dump();
    EXPECT_EQ(madeAfresh([] { demo::makeDemoPlant(42); }), once);
    EXPECT_NE(madeAfresh([] { demo::makeDemoPlant(43); }), once);
}

TEST_F(DemoFixture, LargeStoreHasTheSizesAskedForAndTheSameRowsForASeed)
{
    const demo::LargeSizes sizes{300, 500, 40, 60};
    const demo::LargeSummary s = demo::makeLargeStore(11, sizes);
    EXPECT_EQ(s.registerRows, 300);
    EXPECT_EQ(rows("SELECT (SELECT count(*) FROM Tbl_Maintenance), (SELECT count(*) FROM Tbl_Ricerca), "
                   "(SELECT count(*) FROM Tbl_Fermi_Macchina), (SELECT count(*) FROM Tbl_Planned)"),
              QStringList{"300|500|40|60"});
    EXPECT_EQ(rows("PRAGMA integrity_check"), QStringList{"ok"});
    EXPECT_EQ(number("SELECT count(*) FROM Tbl_Assegna_M WHERE Tot_Minuti_Sett IS NULL"), 0);
    EXPECT_EQ(madeAfresh([&] { demo::makeLargeStore(11, sizes); }), dump());
}

} // namespace
