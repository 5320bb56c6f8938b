// The Jet dialect on the statements' harder corners: the translation cache, literals,
// Nulls in conditions and functions, grouping, nested joins, action statements over
// joins, run-time table changes and names with "/".

#include "JetTestSupport.h"

#include <QDate>

using namespace store::jet;
using namespace store::jet::testing;

namespace {

struct Case
{
    const char* jet;
    const char* expected;
};

class JetDialectTest : public JetDialectFixture
{
protected:
    void SetUp() override
    {
        JetDialectFixture::SetUp();
        run("CREATE TABLE Uno (ID COUNTER, X Integer)");
        run("INSERT INTO Uno (X) VALUES (1)");
    }

    void expectValues(std::initializer_list<Case> cases)
    {
        for (const Case& c : cases)
            EXPECT_EQ(value(QString::fromUtf8(c.jet)).toStdString(), c.expected) << c.jet;
    }
    void expectRows(std::initializer_list<Case> cases)
    {
        for (const Case& c : cases)
            EXPECT_EQ(run(c.jet).toStdString(), c.expected) << c.jet;
    }

    /// Machines, departments, suppliers and maintenance rows for the join tests.
    void plant()
    {
        run("CREATE TABLE Tbl_Reparto (ID_Reparto COUNTER, Reparto VARCHAR(50))");
        run("CREATE TABLE Tbl_Macchina (ID_Macchina COUNTER, Macchina VARCHAR(50), ID_Reparto Long, "
            "ID_Fornitore Long, Modello VARCHAR(50))");
        run("CREATE TABLE Tbl_Fornitore (ID_Fornitore COUNTER, Ragione VARCHAR(50), [Part_IVA/Cod_Fisc] VARCHAR(16), "
            "[Citta/Paese] VARCHAR(30))");
        run("CREATE TABLE Tbl_Maintenance (ID COUNTER, ID_Macchina Long, Ultima DATE, Frequenza_Sett Integer, "
            "Costo Double, Nota VARCHAR(50) NULL)");
        run("INSERT INTO Tbl_Reparto (Reparto) VALUES ('Presse')");
        run("INSERT INTO Tbl_Reparto (Reparto) VALUES ('Torni')");
        run("INSERT INTO Tbl_Fornitore (Ragione, [Part_IVA/Cod_Fisc], [Citta/Paese]) VALUES ('Alfa', '01234567890', "
            "'Como')");
        run("INSERT INTO Tbl_Fornitore (Ragione, [Part_IVA/Cod_Fisc], [Citta/Paese]) VALUES ('Beta', 'RSSMRA80A01', "
            "'Lecco')");
        // Macchina 3 has no supplier, macchina 4 no department and no maintenance.
        run("INSERT INTO Tbl_Macchina (Macchina, ID_Reparto, ID_Fornitore, Modello) VALUES ('Pressa A', 1, 1, 'P-100')");
        run("INSERT INTO Tbl_Macchina (Macchina, ID_Reparto, ID_Fornitore, Modello) VALUES ('Pressa B', 1, 2, 'P-200')");
        run("INSERT INTO Tbl_Macchina (Macchina, ID_Reparto, ID_Fornitore, Modello) VALUES ('Tornio', 2, Null, 'T-1')");
        run("INSERT INTO Tbl_Macchina (Macchina, ID_Reparto, ID_Fornitore, Modello) VALUES ('Fresa', Null, 1, 'F-9')");
        const char* rows[] = {
            "1, #1/15/2016#, 4, 1234.5, 'olio'",   "1, #9/3/2016#, 4, 0.125, Null",
            "1, #10/20/2016#, 4, 1000000, 'filtri'", "2, #9/30/2016#, 2, 2.5, Null",
            "2, #1/2/2017#, 2, 7, 'cinghia'",      "3, #12/31/2016#, 1, Null, Null",
        };
        for (const char* r : rows)
            jet.run(QStringLiteral("INSERT INTO Tbl_Maintenance (ID_Macchina, Ultima, Frequenza_Sett, Costo, Nota) "
                                   "VALUES (%1)")
                        .arg(QString::fromUtf8(r)));
    }
};

} // namespace

TEST_F(JetDialectTest, OneShapeServesEveryValueAndATableChangeRetranslates)
{
    run("CREATE TABLE T (ID Long, Nome VARCHAR(20), Quando DATE)");
    run("INSERT INTO T VALUES (1, 'uno', #7/3/2016#)");
    run("INSERT INTO T VALUES (2, 'due', #7/4/2016#)");
    // Same shape, other literals: each run binds its own values, never the first's.
    EXPECT_EQ(run("SELECT Nome FROM T WHERE ID = 1"), QStringLiteral("uno"));
    EXPECT_EQ(run("SELECT Nome FROM T WHERE ID = 2"), QStringLiteral("due"));
    EXPECT_EQ(run("SELECT Nome FROM T WHERE ID = 1"), QStringLiteral("uno"));
    EXPECT_EQ(run("SELECT ID FROM T WHERE Nome = 'DUE' AND Quando = #7/4/2016#"), QStringLiteral("2"));
    EXPECT_EQ(run("SELECT ID FROM T WHERE Nome = 'uno' AND Quando = #7/4/2016#"), QString());
    // A text where a number stood is another shape: the text is read as Jet would.
    EXPECT_EQ(run("SELECT Nome FROM T WHERE ID = '2'"), QStringLiteral("due"));
    EXPECT_EQ(run("SELECT Nome FROM T WHERE Quando = '04/07/2016'"), QStringLiteral("due"));

    // The same text after the table changed under it: the new column shows, typed.
    EXPECT_EQ(run("SELECT * FROM T WHERE ID = 1"), QStringLiteral("1|uno|42554"));
    run("ALTER TABLE T ADD COLUMN Fine DATE");
    run("UPDATE T SET Fine = '05/07/2016' WHERE ID = 1");
    EXPECT_EQ(run("SELECT * FROM T WHERE ID = 1"), QStringLiteral("1|uno|42554|42556"));
    EXPECT_EQ(jet.last().dateColumns, (std::vector<bool>{false, false, true, true}));

    // A column that was a date and comes back as text compares as text from then on.
    run("DROP TABLE T");
    run("CREATE TABLE T (ID Long, Nome VARCHAR(20), Quando VARCHAR(10))");
    run("INSERT INTO T VALUES (1, 'uno', '31/12/2016')");
    run("INSERT INTO T VALUES (2, 'due', '04/01/2017')");
    EXPECT_EQ(run("SELECT ID FROM T WHERE Quando > '03/07/2016' ORDER BY ID"), QStringLiteral("1;2"));
    EXPECT_EQ(run("SELECT ID FROM T WHERE Quando > '10/01/2017'"), QStringLiteral("1")); // as text, "31" > "10"
    EXPECT_EQ(run("SELECT * FROM T WHERE ID = 1"), QStringLiteral("1|uno|31/12/2016"));
    EXPECT_EQ(jet.last().dateColumns, (std::vector<bool>{false, false, false}));

    // Two connections never share a translation made for the other's tables.
    JetConnection other;
    other.run(QStringLiteral("CREATE TABLE T (ID Long, Nome VARCHAR(20), Quando DATE)"));
    other.run(QStringLiteral("INSERT INTO T VALUES (1, 'uno', #12/31/2016#)"));
    EXPECT_EQ(other.run(QStringLiteral("SELECT * FROM T WHERE ID = 1")), QStringLiteral("1|uno|42735"));
    EXPECT_EQ(other.last().dateColumns, (std::vector<bool>{false, false, true}));
}

TEST_F(JetDialectTest, LiteralsKeepTheirTextWhole)
{
    run("CREATE TABLE Note (ID Long, Testo VARCHAR(100))");
    // A doubled apostrophe is one apostrophe in the text, and the literal stays one value.
    run("INSERT INTO Note VALUES (1, 'l''olio dell''impianto')");
    run("INSERT INTO Note VALUES (2, \"cambio \"\"rapido\"\"\")");
    run("INSERT INTO Note VALUES (3, 'a;b -- [c] #1/1/2017# ?')");
    expectRows({
        {"SELECT Testo FROM Note WHERE ID = 1", "l'olio dell'impianto"},
        {"SELECT ID FROM Note WHERE Testo = 'L''OLIO DELL''IMPIANTO'", "1"},
        {"SELECT ID FROM Note WHERE Testo Like '%''%'", "1"},
        {"SELECT Testo FROM Note WHERE ID = 2", "cambio \"rapido\""},
        // Semicolons, comment marks, brackets, hashes and "?" inside text are text.
        {"SELECT Testo FROM Note WHERE ID = 3", "a;b -- [c] #1/1/2017# ?"},
        {"SELECT ID FROM Note WHERE Testo = 'a;b -- [c] #1/1/2017# ?'", "3"},
    });
    EXPECT_TRUE(jet.last().userParams.empty());
    expectValues({
        {"'''' & 'x'", "'x"},
        {"Len('it''s')", "4"},
    });

    // Date literals are month/day/year; a first number above 12 can only be the day.
    expectValues({
        {"Format(#7/3/2016#, 'dd/mm/yyyy')", "03/07/2016"},
        {"Format(#13/7/2016#, 'dd/mm/yyyy')", "13/07/2016"},
        {"Format(#7/13/2016#, 'dd/mm/yyyy')", "13/07/2016"},
        {"Format(#31/12/2016#, 'dd/mm/yyyy')", "31/12/2016"},
        {"Format(#12/31/2016 23:59:59#, 'dd/mm/yyyy hh:nn:ss')", "31/12/2016 23.59.59"},
        {"Month(#1/2/2017#) & '/' & Day(#1/2/2017#)", "1/2"},
        {"#13/7/2016# = #7/13/2016#", "-1"},
        {"#12/31/2016# - #1/1/2016#", "365"},
    });
    EXPECT_FALSE(refusal(QStringLiteral("SELECT #13/13/2016# FROM Uno"), jet.schema()).isEmpty());
    EXPECT_FALSE(refusal(QStringLiteral("SELECT #2/30/2016# FROM Uno"), jet.schema()).isEmpty());
}

TEST_F(JetDialectTest, NullsInConditionsAndFunctions)
{
    // Between, In and Not In with a Null anywhere are Null, not False: a WHERE drops
    // the row either way, but Not negates Null to Null, so "Not In" drops it too.
    expectValues({
        {"Null Between 1 And 3", "Null"},
        {"2 Between Null And 3", "Null"},
        {"2 Between 3 And 1", "0"},
        {"Null In (1, 2)", "Null"},
        {"3 In (1, Null)", "Null"},
        {"1 In (1, Null)", "-1"},
        {"3 Not In (1, 2)", "-1"},
        {"3 Not In (1, Null)", "Null"},
        {"Not Null", "Null"},
        {"Null = Null", "Null"},
        {"Null And False", "0"},
        {"Null Or True", "-1"},
    });
    // IIf: a Null condition takes the False branch; the branches may be Null.
    expectValues({
        {"IIf(Null, 'si', 'no')", "no"},
        {"IIf(Null = 1, 'si', 'no')", "no"},
        {"IIf(Not (Null = 1), 'si', 'no')", "no"},
        {"IIf(1 = 1, Null, 'no')", "Null"},
        {"IIf(1 = 1, 5, 'no') + 1", "6"},
    });
    // Nz gives its second value only for Null; zero and "" are values.
    expectValues({
        {"Nz(Null, 0)", "0"},
        {"Nz(Null, 'vuoto')", "vuoto"},
        {"Nz(0, 5)", "0"},
        {"Nz('', 'x')", ""},
        {"Nz(Null, 0) + 1", "1"},
    });
    // Left, Right and Mid: past the end is the whole text or "", Null stays Null,
    // characters are letters, not bytes.
    expectValues({
        {"Left('Pressa', 0)", ""},
        {"Left('Pressa', 99)", "Pressa"},
        {"Right('Pressa', 99)", "Pressa"},
        {"Right('Pressa', 0)", ""},
        {"Mid('Pressa', 7)", ""},
        {"Mid('Pressa', 99, 2)", ""},
        {"Mid('Pressa', 4)", "ssa"},
        {"Mid('Pressa', 2, 0)", ""},
        {"Mid('Pressa', 5, 99)", "sa"},
        {"Left('àèìòù', 2) & Right('àèìòù', 2) & Mid('àèìòù', 3, 1)", "àèòùì"},
        {"Len('àèì')", "3"},
        {"Left(Null, 2)", "Null"},
        {"Right(Null, 2)", "Null"},
        {"Mid(Null, 1, 2)", "Null"},
        {"Len(Null)", "Null"},
        {"Left(123, 2)", "12"},
    });
    // A negative length or a start below 1 is VB's invalid procedure call.
    for (const char* bad : {"Left('abc', -1)", "Mid('abc', 0)", "Right('abc', -2)"}) {
        try {
            value(QString::fromUtf8(bad));
            ADD_FAILURE() << "accepted: " << bad;
        } catch (const vb::VBError& e) {
            EXPECT_EQ(e.number(), 5) << bad;
        }
    }
    // On rows: Nulls in a column behave as the literal Nulls above.
    plant();
    expectRows({
        {"SELECT ID FROM Tbl_Maintenance WHERE Nota Not In ('olio') ORDER BY ID", "3;5"},
        {"SELECT ID FROM Tbl_Maintenance WHERE Costo Between 1 And 10 ORDER BY ID", "4;5"},
        {"SELECT ID FROM Tbl_Maintenance WHERE Not (Costo Between 1 And 10) ORDER BY ID", "1;2;3"},
        {"SELECT IIf(Nota = 'olio', 'si', 'no') FROM Tbl_Maintenance WHERE ID < 3 ORDER BY ID", "si;no"},
        {"SELECT Nz(Costo, 0) FROM Tbl_Maintenance WHERE ID = 6", "0"},
        // "Not X Is Null" is "Not (X Is Null)"; date bounds of Between are inclusive.
        {"SELECT ID FROM Tbl_Maintenance WHERE Not Nota Is Null ORDER BY ID", "1;3;5"},
        {"SELECT ID FROM Tbl_Maintenance WHERE Ultima Between #9/3/2016# And #9/30/2016# ORDER BY ID", "2;4"},
        {"SELECT ID_Macchina FROM Tbl_Macchina WHERE ID_Fornitore Not In (SELECT ID_Fornitore FROM Tbl_Macchina "
         "WHERE ID_Macchina > 1)",
         ""},
    });
}

TEST_F(JetDialectTest, GroupsFormatsAndDateParts)
{
    plant();
    // Format over Min and Sum per group, in Italian separators, halves away from zero.
    expectRows({
        {"SELECT ID_Macchina, Format(Min(Costo),'Standard') AS M, Format(Sum(Costo), '#,##0.00') AS S FROM "
         "Tbl_Maintenance GROUP BY ID_Macchina ORDER BY ID_Macchina",
         "1|0,13|1.001.234,63;2|2,50|9,50;3|Null|Null"},
        {"SELECT Format(Max(Costo), 'Standard') FROM Tbl_Maintenance", "1.000.000,00"},
        {"SELECT Format(-Sum(Costo), '#,##0.00') FROM Tbl_Maintenance WHERE ID_Macchina = 2", "-9,50"},
        {"SELECT Format(Sum(Costo) - Sum(Costo), '#,##0.00') FROM Tbl_Maintenance", "0,00"},
    });
    // Year and Month group and sort as numbers: month 10 after month 9.
    expectRows({
        {"SELECT Year(Ultima) AS Y, Month(Ultima) AS M, Count(*) AS N FROM Tbl_Maintenance "
         "GROUP BY Year(Ultima), Month(Ultima) ORDER BY Year(Ultima), Month(Ultima)",
         "2016|1|1;2016|9|2;2016|10|1;2016|12|1;2017|1|1"},
        {"SELECT Month(Ultima) FROM Tbl_Maintenance WHERE Year(Ultima) = 2016 GROUP BY Month(Ultima) "
         "ORDER BY Month(Ultima) DESC",
         "12;10;9;1"},
        {"SELECT ID FROM Tbl_Maintenance ORDER BY Year(Ultima) DESC, Month(Ultima) DESC, Day(Ultima)", "5;6;3;2;4;1"},
    });
    // Count(*) counts rows, Count(column) and Sum skip Nulls; HAVING on either.
    expectRows({
        {"SELECT ID_Macchina, Count(*) AS N, Count(Costo) AS C, Count(Nota) AS T FROM Tbl_Maintenance "
         "GROUP BY ID_Macchina ORDER BY ID_Macchina",
         "1|3|3|2;2|2|2|1;3|1|0|0"},
        {"SELECT ID_Macchina FROM Tbl_Maintenance GROUP BY ID_Macchina HAVING Count(*) > 1 ORDER BY ID_Macchina",
         "1;2"},
        {"SELECT ID_Macchina, Sum(Costo) FROM Tbl_Maintenance GROUP BY ID_Macchina HAVING Sum(Costo) < 100", "2|9.5"},
        {"SELECT ID_Macchina FROM Tbl_Maintenance WHERE Nota Is Not Null GROUP BY ID_Macchina "
         "HAVING Count(Nota) = 1",
         "2"},
        {"SELECT Count(*) FROM Tbl_Maintenance WHERE ID < 0", "0"},
        {"SELECT Sum(Costo) FROM Tbl_Maintenance WHERE ID < 0", "Null"},
    });
    // Left of a bang column in GROUP BY, as the machine lists group models.
    expectRows({
        {"SELECT Left([Tbl_Macchina]![Modello],1) AS L, Count(*) FROM Tbl_Macchina "
         "GROUP BY Left([Tbl_Macchina]![Modello],1) ORDER BY Left([Tbl_Macchina]![Modello],1)",
         "F|1;P|2;T|1"},
    });
}

TEST_F(JetDialectTest, NestedBracketedJoins)
{
    plant();
    expectRows({
        // Three tables, inner inside left: the machine without a department stays.
        {"SELECT Tbl_Macchina.Macchina, Tbl_Reparto.Reparto FROM (Tbl_Macchina LEFT JOIN Tbl_Reparto ON "
         "Tbl_Macchina.ID_Reparto = Tbl_Reparto.ID_Reparto) INNER JOIN Tbl_Fornitore ON Tbl_Macchina.ID_Fornitore = "
         "Tbl_Fornitore.ID_Fornitore ORDER BY Tbl_Macchina.Macchina",
         "Fresa|Null;Pressa A|Presse;Pressa B|Presse"},
        // Four tables, as Access writes them: ((A J B) J C) J D.
        {"SELECT Tbl_Reparto.Reparto, Tbl_Macchina.Macchina, Tbl_Fornitore.[Part_IVA/Cod_Fisc], "
         "Format(Tbl_Maintenance.Ultima, 'dd/mm/yyyy') FROM ((Tbl_Reparto INNER JOIN Tbl_Macchina ON "
         "Tbl_Reparto.ID_Reparto = Tbl_Macchina.ID_Reparto) LEFT JOIN Tbl_Fornitore ON Tbl_Macchina.ID_Fornitore = "
         "Tbl_Fornitore.ID_Fornitore) INNER JOIN Tbl_Maintenance ON Tbl_Macchina.ID_Macchina = "
         "Tbl_Maintenance.ID_Macchina WHERE Tbl_Maintenance.Ultima >= #9/30/2016# ORDER BY Tbl_Maintenance.Ultima",
         "Presse|Pressa B|RSSMRA80A01|30/09/2016;Presse|Pressa A|01234567890|20/10/2016;"
         "Torni|Tornio|Null|31/12/2016;Presse|Pressa B|RSSMRA80A01|02/01/2017"},
        // The join on the right nested: A LEFT JOIN (B INNER JOIN C ON ..) ON ..
        {"SELECT Tbl_Macchina.Macchina, Count(Tbl_Maintenance.ID) AS N FROM Tbl_Macchina LEFT JOIN "
         "(Tbl_Maintenance INNER JOIN Tbl_Reparto ON Tbl_Maintenance.ID_Macchina = Tbl_Reparto.ID_Reparto) ON "
         "Tbl_Macchina.ID_Macchina = Tbl_Maintenance.ID_Macchina GROUP BY Tbl_Macchina.Macchina "
         "ORDER BY Tbl_Macchina.Macchina",
         "Fresa|0;Pressa A|3;Pressa B|2;Tornio|0"},
        // Conditions in brackets on a join, and bang columns in its expressions.
        {"SELECT [Tbl_Macchina]![Macchina] & ' (' & [Tbl_Reparto]![Reparto] & ')' AS M FROM Tbl_Macchina INNER JOIN "
         "Tbl_Reparto ON (Tbl_Macchina.ID_Reparto = Tbl_Reparto.ID_Reparto) WHERE ([Tbl_Reparto]![Reparto] Like 'tor%')",
         "Tornio (Torni)"},
        {"SELECT Format([Tbl_Maintenance]![Ultima]+([Tbl_Maintenance]![Frequenza_Sett]*7), 'dd/mm/yyyy') FROM "
         "Tbl_Maintenance WHERE [Tbl_Maintenance]![Costo]*2 > 10 AND [Tbl_Maintenance]![Costo] < 100",
         "16/01/2017"},
    });
}

TEST_F(JetDialectTest, SelectIntoKeepsDatesAsDates)
{
    plant();
    run("SELECT Tbl_Maintenance.ID, Tbl_Maintenance.Ultima, Tbl_Maintenance.Ultima + "
        "(Tbl_Maintenance.Frequenza_Sett * 7) AS Prossima, Date() AS Oggi, Year(Tbl_Maintenance.Ultima) AS Anno, "
        "Tbl_Macchina.Macchina INTO Tbl_Planned_2 FROM Tbl_Maintenance INNER JOIN Tbl_Macchina ON "
        "Tbl_Maintenance.ID_Macchina = Tbl_Macchina.ID_Macchina WHERE Tbl_Maintenance.ID <= 3");
    const TableInfo* t = jet.schema()->table(QStringLiteral("Tbl_Planned_2"));
    ASSERT_NE(t, nullptr);
    ASSERT_EQ(t->columns.size(), 6u);
    EXPECT_EQ(t->columns[1].kind, ColumnKind::Date);
    EXPECT_EQ(t->columns[2].kind, ColumnKind::Date);
    EXPECT_EQ(t->columns[3].kind, ColumnKind::Date);
    EXPECT_EQ(t->columns[4].kind, ColumnKind::Number);
    EXPECT_EQ(t->columns[5].kind, ColumnKind::Text);
    // Read back: dates as dates (arithmetic, Italian text, parts), text under Jet's collation.
    expectRows({
        {"SELECT Format(Prossima, 'dd/mm/yyyy') FROM Tbl_Planned_2 WHERE ID = 1", "12/02/2016"},
        {"SELECT ID FROM Tbl_Planned_2 WHERE Ultima = '03/09/2016'", "2"},
        {"SELECT Oggi - Ultima FROM Tbl_Planned_2 WHERE ID = 3", "3678"},
        {"SELECT Count(*) FROM Tbl_Planned_2 WHERE Macchina = 'PRESSA A' AND Anno = 2016", "3"},
        {"SELECT Ultima & '' FROM Tbl_Planned_2 WHERE ID = 1", "15/01/2016"},
    });
    run("SELECT * FROM Tbl_Planned_2");
    EXPECT_EQ(jet.last().dateColumns, (std::vector<bool>{false, true, true, true, false, false}));
    // An empty select still makes the table, with the same types.
    run("SELECT Ultima INTO Tbl_Vuota FROM Tbl_Maintenance WHERE ID < 0");
    ASSERT_NE(jet.schema()->table(QStringLiteral("Tbl_Vuota")), nullptr);
    EXPECT_EQ(jet.schema()->table(QStringLiteral("Tbl_Vuota"))->columns[0].kind, ColumnKind::Date);
}

TEST_F(JetDialectTest, ActionStatementsOverJoinsAndNewColumns)
{
    plant();
    // The SET takes its value from the joined table, row by row.
    run("UPDATE Tbl_Maintenance INNER JOIN Tbl_Macchina ON Tbl_Maintenance.ID_Macchina = Tbl_Macchina.ID_Macchina "
        "SET Tbl_Maintenance.Nota = Tbl_Macchina.Modello, Tbl_Maintenance.Costo = Tbl_Maintenance.Costo * 2 "
        "WHERE Tbl_Macchina.ID_Reparto = 1 AND Tbl_Maintenance.Nota Is Null");
    expectRows({
        {"SELECT ID, Nota, Costo FROM Tbl_Maintenance ORDER BY ID",
         "1|olio|1234.5;2|P-100|0.25;3|filtri|1000000;4|P-200|5;5|cinghia|7;6|Null|Null"},
    });
    // Nested join in an UPDATE, with a bang column in the SET.
    run("UPDATE Tbl_Maintenance INNER JOIN (Tbl_Macchina INNER JOIN Tbl_Reparto ON Tbl_Macchina.ID_Reparto = "
        "Tbl_Reparto.ID_Reparto) ON Tbl_Maintenance.ID_Macchina = Tbl_Macchina.ID_Macchina SET "
        "Tbl_Maintenance.Nota = [Tbl_Reparto]![Reparto] & '/' & [Tbl_Macchina]![Macchina] WHERE "
        "(((Tbl_Reparto.Reparto)='torni'))");
    EXPECT_EQ(run("SELECT Nota FROM Tbl_Maintenance WHERE ID = 6"), QStringLiteral("Torni/Tornio"));
    EXPECT_EQ(run("SELECT Count(*) FROM Tbl_Maintenance WHERE Nota Like 'Torni/%'"), QStringLiteral("1"));

    // Columns added at run time, one of each type the program adds, then written and read.
    run("ALTER TABLE Tbl_Macchina ADD COLUMN Images VARCHAR(255) NULL");
    run("ALTER TABLE Tbl_Macchina ADD COLUMN Scheda CHAR(50)");
    run("ALTER TABLE Tbl_Macchina ADD COLUMN Rev Integer");
    run("ALTER TABLE Tbl_Macchina ADD COLUMN Data_Rev DATE");
    const TableInfo* t = jet.schema()->table(QStringLiteral("Tbl_Macchina"));
    ASSERT_NE(t, nullptr);
    ASSERT_EQ(t->columns.size(), 9u);
    EXPECT_EQ(t->columns[5].kind, ColumnKind::Text);
    EXPECT_EQ(t->columns[6].kind, ColumnKind::Text);
    EXPECT_EQ(t->columns[7].kind, ColumnKind::Number);
    EXPECT_EQ(t->columns[8].kind, ColumnKind::Date);
    run("UPDATE Tbl_Macchina SET Images = 'C:\\foto\\p.jpg', Scheda = 'SK-1', Rev = '3', Data_Rev = '13/07/2016' "
        "WHERE ID_Macchina = 1");
    run("INSERT INTO Tbl_Macchina (Macchina, Scheda, Rev, Data_Rev) VALUES ('Trapano', 'sk-2', 4, #2/1/2017#)");
    expectRows({
        {"SELECT Images, Scheda, Rev, Format(Data_Rev, 'dd/mm/yyyy') FROM Tbl_Macchina WHERE ID_Macchina = 1",
         "C:\\foto\\p.jpg|SK-1|3|13/07/2016"},
        {"SELECT Macchina FROM Tbl_Macchina WHERE Scheda = 'SK-2' AND Rev + 1 = 5 AND Data_Rev > #7/13/2016#",
         "Trapano"},
        {"SELECT Macchina FROM Tbl_Macchina WHERE Data_Rev Is Null ORDER BY ID_Macchina",
         "Pressa B;Tornio;Fresa"},
    });
    run("SELECT * FROM Tbl_Macchina WHERE ID_Macchina = 1");
    EXPECT_EQ(jet.last().dateColumns.size(), 9u);
    EXPECT_TRUE(jet.last().dateColumns[8]);

    // Whole-number columns keep whole numbers: a fraction written there is rounded as
    // CLng rounds, halves to the even number (2,5 weeks are 2, 3,5 are 4).
    run("CREATE TABLE Tbl_Freq (ID Long, Sett Integer, Piccolo SMALLINT, Costo Double)");
    run("INSERT INTO Tbl_Freq VALUES (1, '2,5', 3.7, '2,5')");
    run("INSERT INTO Tbl_Freq (ID, Sett, Piccolo, Costo) VALUES (2, 3.5, Null, 3.5)");
    run("INSERT INTO Tbl_Freq (ID, Sett, Costo) SELECT 3, Costo / 2, Costo / 2 FROM Tbl_Maintenance WHERE ID = 4");
    expectRows({{"SELECT ID, Sett, Piccolo, Costo FROM Tbl_Freq ORDER BY ID", "1|2|4|2.5;2|4|Null|3.5;3|2|Null|2.5"}});
    run("UPDATE Tbl_Freq SET Sett = Sett + '1,5', Piccolo = '' WHERE ID = 1");
    expectRows({{"SELECT Sett, Piccolo FROM Tbl_Freq WHERE ID = 1", "4|Null"}});
}

TEST_F(JetDialectTest, NamesWithSlashes)
{
    plant();
    expectRows({
        {"SELECT [Part_IVA/Cod_Fisc] FROM Tbl_Fornitore WHERE [Citta/Paese] = 'COMO'", "01234567890"},
        {"SELECT Tbl_Fornitore.[Citta/Paese] FROM Tbl_Fornitore ORDER BY [Tbl_Fornitore].[Citta/Paese] DESC",
         "Lecco;Como"},
        {"SELECT [Tbl_Fornitore]![Citta/Paese] & ' - ' & [Tbl_Fornitore]![Part_IVA/Cod_Fisc] FROM Tbl_Fornitore "
         "WHERE [Tbl_Fornitore]![Part_IVA/Cod_Fisc] Like 'RSS%'",
         "Lecco - RSSMRA80A01"},
        {"SELECT [Citta/Paese], Count(*) FROM Tbl_Fornitore GROUP BY [Citta/Paese] HAVING [Citta/Paese] <> 'x' "
         "ORDER BY [Citta/Paese]",
         "Como|1;Lecco|1"},
    });
    EXPECT_EQ(jet.last().columnNames.value(0), QStringLiteral("Citta/Paese"));
    run("UPDATE Tbl_Fornitore SET [Part_IVA/Cod_Fisc] = 'IT' & [Part_IVA/Cod_Fisc] WHERE [Citta/Paese] = 'Como'");
    run("SELECT Ragione, [Part_IVA/Cod_Fisc] INTO Tbl_Copia FROM Tbl_Fornitore");
    EXPECT_EQ(run("SELECT [Part_IVA/Cod_Fisc] FROM Tbl_Copia WHERE Ragione = 'alfa'"), QStringLiteral("IT01234567890"));
    run("ALTER TABLE Tbl_Copia ADD COLUMN [Citta/Paese] VARCHAR(30)");
    run("INSERT INTO Tbl_Copia (Ragione, [Citta/Paese]) VALUES ('Gamma', 'Sondrio')");
    EXPECT_EQ(run("SELECT Ragione FROM Tbl_Copia WHERE [Citta/Paese] Is Not Null"), QStringLiteral("Gamma"));
}

TEST_F(JetDialectTest, SessionTimeAcrossMidnight)
{
    // The session's length as "h.m.s" of the difference; seconds that a day number
    // cannot hold exactly still come out whole, and a session with no close gives
    // ".." (each Null part joins as "").
    run("CREATE TABLE Tbl_Register (ID Long, Date_Open DATE, Date_Close DATE, Tempo Text)");
    run("INSERT INTO Tbl_Register VALUES (1, #12/31/2016 23:59:59#, #1/1/2017 00:00:01#, Null)");
    run("INSERT INTO Tbl_Register VALUES (2, #1/1/2017 22:30:00#, #1/2/2017 01:15:07#, Null)");
    run("INSERT INTO Tbl_Register VALUES (3, #1/1/2017 23:00:00#, #1/1/2017 23:00:00#, Null)");
    run("INSERT INTO Tbl_Register VALUES (4, #1/1/2017 10:00:00#, Null, Null)");
    run("INSERT INTO Tbl_Register VALUES (5, #1/1/2017 08:00:00#, #1/1/2017 17:59:59#, Null)");
    run("UPDATE Tbl_Register SET Tbl_Register.Tempo =  Hour([Tbl_Register]![Date_Close]-[Tbl_Register]![Date_Open]) "
        "& '.' & Minute([Tbl_Register]![Date_Close]-[Tbl_Register]![Date_Open]) & '.' & "
        "Second([Tbl_Register]![Date_Close]-[Tbl_Register]![Date_Open]);");
    EXPECT_EQ(run("SELECT Tempo FROM Tbl_Register ORDER BY ID"), QStringLiteral("0.0.2;2.45.7;0.0.0;..;9.59.59"));
}

TEST_F(JetDialectTest, RefusedStatements)
{
    plant();
    const Case refused[] = {
        {"SELECT ID_Macchina, Count(*) FROM Tbl_Maintenance GROUP BY ID_Macchina WHERE Costo > 1",
         "Errore di sintassi (operatore mancante) nell'espressione della query 'ID_Macchina WHERE Costo > 1'."},
        {"SELECT [Macchina FROM Tbl_Macchina", "Errore di sintassi (operatore mancante) nell'espressione della query "
                                               "'[Macchina FROM Tbl_Macchina'."},
        {"SELECT Macchina FROM Tbl_Macchina WHERE ((ID_Macchina = 1)", ""},
        {"SELECT Macchina FROM Tbl_Macchina WHERE Macchina = 'Pressa", ""},
        {"UPDATE Tbl_Macchina SET WHERE ID_Macchina = 1", ""},
        {"SELECT Macchina FROM Tbl_Macchina ORDER BY", ""},
    };
    for (const Case& c : refused) {
        const QString why = refusal(QString::fromUtf8(c.jet), jet.schema());
        EXPECT_FALSE(why.isEmpty()) << "accepted: " << c.jet;
        EXPECT_FALSE(why.startsWith(u'<')) << c.jet << ": " << why.toStdString();
        if (*c.expected) {
            EXPECT_EQ(why.toStdString(), c.expected);
        }
    }
    // An unknown column or table translates, and SQLite's prepare refuses it; nothing
    // of the statement has run.
    for (const char* jetSql : {"SELECT Pippo FROM Tbl_Macchina", "SELECT Macchina FROM Tbl_Macchina ORDER BY Pippo",
                               "UPDATE Tbl_Macchina SET Pippo = 1 WHERE ID_Macchina = 1",
                               "DELETE * FROM Tbl_Macchina WHERE Pippo = 1", "SELECT * FROM Tbl_Pippo",
                               "SELECT [Tbl_Macchina]![Pippo] FROM Tbl_Macchina",
                               "INSERT INTO Tbl_Macchina (Pippo) VALUES (1)"}) {
        EXPECT_TRUE(refusal(QString::fromUtf8(jetSql), jet.schema()).isEmpty()) << jetSql;
        EXPECT_FALSE(jet.prepareOnly(QString::fromUtf8(jetSql)).isEmpty()) << "prepared: " << jetSql;
    }
    EXPECT_EQ(run("SELECT Count(*) FROM Tbl_Macchina"), QStringLiteral("4"));
}

TEST_F(JetDialectTest, TheProgramsStatementsPrepare)
{
    plant();
    run("CREATE TABLE Tbl_Register (Date_Open DATE, Date_Close DATE, Tempo Text)");
    const char* statements[] = {
        "SELECT * FROM Tbl_Macchina ORDER BY Macchina",
        "Select * from Tbl_Maintenance where Ultima <=(Date()+1) ORDER by Ultima",
        "SELECT Tbl_Maintenance.ID, [Tbl_Maintenance.Ultima]+([Tbl_Maintenance.Frequenza_Sett]*7) AS Prossima FROM "
        "Tbl_Maintenance WHERE [Tbl_Maintenance.Ultima]+([Tbl_Maintenance.Frequenza_Sett]*7) < Date() + 7",
        "SELECT Tbl_Reparto.Reparto FROM Tbl_Reparto where Reparto like 'Pre%' ORDER BY Reparto",
        "SELECT Left([Tbl_Macchina]![Modello],30) AS M FROM Tbl_Macchina GROUP BY Left([Tbl_Macchina]![Modello],30)",
        "SELECT Format(Min(Tbl_Maintenance.Costo),'Standard') AS C, Format(Min(Tbl_Maintenance.Costo), '#,##0.00') "
        "AS D FROM Tbl_Maintenance GROUP BY Tbl_Maintenance.ID_Macchina",
        "SELECT Year(Ultima), Month(Ultima), Sum(Costo) FROM Tbl_Maintenance GROUP BY Year(Ultima), Month(Ultima) "
        "HAVING Sum(Costo) > 0 ORDER BY Year(Ultima), Month(Ultima)",
        "SELECT IIf(Nota Is Null,'-',Nota) AS N FROM Tbl_Maintenance ORDER BY IIf(Nota Is Null,'-',Nota)",
        "SELECT Macchina FROM Tbl_Macchina WHERE Macchina LIKE '%' & ? & '%'",
        "UPDATE Tbl_Register SET Tbl_Register.Tempo = Hour([Tbl_Register]![Date_Close]-[Tbl_Register]![Date_Open]) "
        "& '.' & Minute([Tbl_Register]![Date_Close]-[Tbl_Register]![Date_Open])",
        "Delete * from Tbl_Maintenance WHERE ID_Macchina = 9",
        "INSERT INTO Tbl_Reparto ( Reparto ) SELECT Tbl_Macchina.Macchina FROM Tbl_Macchina WHERE ID_Reparto Is Null",
        "UPDATE Tbl_Macchina INNER JOIN Tbl_Reparto ON Tbl_Macchina.ID_Reparto = Tbl_Reparto.ID_Reparto SET "
        "Tbl_Macchina.Modello = Tbl_Reparto.Reparto WHERE Tbl_Reparto.ID_Reparto = 2",
        "SELECT Tbl_Fornitore.[Part_IVA/Cod_Fisc], Tbl_Fornitore.[Citta/Paese] FROM Tbl_Fornitore RIGHT JOIN "
        "Tbl_Macchina ON Tbl_Fornitore.ID_Fornitore = Tbl_Macchina.ID_Fornitore",
        "SELECT Count(Tbl_Maintenance.ID) AS N FROM Tbl_Maintenance HAVING Count(Tbl_Maintenance.ID) > 0",
        "SELECT TOP 3 Tbl_Maintenance.* FROM Tbl_Maintenance ORDER BY Costo DESC",
        "SELECT Nz(Costo, 0) + 1, Mid(Nota, 2), Val(Nota & '') FROM Tbl_Maintenance",
    };
    for (const char* s : statements)
        EXPECT_EQ(jet.prepareOnly(QString::fromUtf8(s)).toStdString(), "") << s;
}
