// The Jet dialect run for real: statements translated, prepared and run on an in-memory
// SQLite store with our functions and collation, results compared with Jet's.

#include "runtime/Clock.h"
#include "runtime/VBError.h"
#include "store/jet/Jet.h"

#include <QDate>
#include <gtest/gtest.h>
#include <sqlite3.h>

using namespace store;

namespace {

class JetTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(sqlite3_open(":memory:", &db), SQLITE_OK);
        jet::registerFunctions(db);
        schema = std::make_unique<jet::SqliteSchema>(db);
        vb::Clock::freeze(QDateTime(QDate(2026, 11, 15), QTime(8, 0)));
        run("CREATE TABLE One (ID COUNTER, X Integer)");
        run("INSERT INTO One (X) VALUES (1)");
        run("CREATE TABLE Tbl_M (ID COUNTER, Macchina VARCHAR(50), Numerazione TEXT(20), Costo DOUBLE, "
            "Ultima DATE, Freq Double, Nota VARCHAR(20) NULL, [Citta/Paese] VARCHAR(30), Tot Text, Data_T CHAR(10))");
        const char* rows[] = {
            "1, 'Pressa', '10', 5, #7/3/2016#, 4, Null, 'Como', '1.234,50', '03/07/2016'",
            "2, 'PRESSA', '2', 7.5, #12/31/2016#, 1, 'x', 'Lecco', '10', '31/12/2016'",
            "3, 'Tornio', 'A3', Null, Null, 2, 'y', 'Como', Null, '01/01/2017'",
            "4, 'àlesatrice', '1', 1, #1/1/2017 23:30:00#, 2, Null, 'Milano', '0,5', '05/01/2017'",
        };
        for (const char* r : rows)
            run(QStringLiteral("INSERT INTO Tbl_M (ID, Macchina, Numerazione, Costo, Ultima, Freq, Nota, "
                               "[Citta/Paese], Tot, Data_T) VALUES (%1)")
                    .arg(QString::fromUtf8(r)));
        run("CREATE TABLE Tbl_R (ID_R COUNTER, ID Long, Pezzo VARCHAR(30))");
        run("INSERT INTO Tbl_R (ID, Pezzo) VALUES (1, 'vite')");
        run("INSERT INTO Tbl_R (ID, Pezzo) VALUES (1, 'dado')");
        run("INSERT INTO Tbl_R (ID, Pezzo) VALUES (2, 'molla')");
        run("INSERT INTO Tbl_R (ID, Pezzo) VALUES (9, 'orfano')");
    }

    void TearDown() override
    {
        schema.reset();
        sqlite3_close(db);
        vb::Clock::unfreeze();
    }

    static void bind(sqlite3_stmt* st, int i, const vb::Variant& v)
    {
        switch (v.type()) {
        case vb::Variant::Type::Integer:
        case vb::Variant::Type::Long: sqlite3_bind_int64(st, i, v.rawLong()); break;
        case vb::Variant::Type::Double: sqlite3_bind_double(st, i, v.rawDouble()); break;
        case vb::Variant::Type::Date: sqlite3_bind_double(st, i, v.rawDate().serial); break;
        case vb::Variant::Type::Boolean: sqlite3_bind_int(st, i, v.rawBool() ? -1 : 0); break;
        case vb::Variant::Type::String: {
            const QByteArray u = v.rawString().toUtf8();
            sqlite3_bind_text(st, i, u.constData(), int(u.size()), SQLITE_TRANSIENT);
            break;
        }
        default: sqlite3_bind_null(st, i); break;
        }
    }

    static QString cell(sqlite3_stmt* st, int c)
    {
        switch (sqlite3_column_type(st, c)) {
        case SQLITE_NULL: return QStringLiteral("Null");
        case SQLITE_INTEGER: return QString::number(sqlite3_column_int64(st, c));
        case SQLITE_FLOAT: return QString::number(sqlite3_column_double(st, c), 'g', 15);
        default: return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, c)));
        }
    }

    /// Runs a Jet statement; the rows of its last statement as "a|1;b|2". Every
    /// generated statement must prepare: a failure there fails the test.
    QString run(const QString& jetSql, const std::vector<vb::Variant>& user = {})
    {
        jet::Translation t = jet::translate(jetSql, schema.get());
        for (size_t i = 0; i < user.size() && i < t.userParams.size(); ++i)
            for (auto& s : t.statements)
                if (size_t(t.userParams[i]) < s.params.size())
                    s.params[size_t(t.userParams[i])] = user[i];
        last = t;
        QStringList rows;
        for (const jet::SqliteStatement& s : t.statements) {
            rows.clear();
            sqlite3_stmt* st = nullptr;
            const QByteArray sql = s.sql.toUtf8();
            if (sqlite3_prepare_v2(db, sql.constData(), -1, &st, nullptr) != SQLITE_OK) {
                ADD_FAILURE() << "does not prepare: " << s.sql.toStdString() << "\n  " << sqlite3_errmsg(db);
                return QStringLiteral("<prepare>");
            }
            for (size_t i = 0; i < s.params.size(); ++i)
                bind(st, int(i) + 1, s.params[i]);
            int rc;
            const int columns = sqlite3_column_count(st) - (t.baseTable.isEmpty() ? 0 : 1);
            while ((rc = sqlite3_step(st)) == SQLITE_ROW) {
                QStringList row;
                for (int c = 0; c < columns; ++c)
                    row << cell(st, c);
                rows << row.join(u'|');
            }
            if (rc != SQLITE_DONE) {
                const QString msg = QString::fromUtf8(sqlite3_errmsg(db));
                sqlite3_finalize(st);
                if (auto e = jet::errorFromMessage(msg))
                    throw *e;
                throw vb::VBError(-1, msg);
            }
            sqlite3_finalize(st);
        }
        return rows.join(u';');
    }

    /// One value of an expression.
    QString value(const QString& expr) { return run(QStringLiteral("SELECT ") + expr + QStringLiteral(" AS V FROM One")); }

    sqlite3* db = nullptr;
    std::unique_ptr<jet::SqliteSchema> schema;
    jet::Translation last;
};

struct Case
{
    const char* jet;
    const char* expected;
};

} // namespace

TEST_F(JetTest, ExpressionsGiveJetResults)
{
    const Case cases[] = {
        // "&" binds looser than "+": 1 + 2 first, then joined with 3.
        {"1 + 2 & 3", "33"},
        {"'a' & 1 + 2", "a3"},
        {"2 * 3 & 4 - 1", "63"},
        // One Null joins as "", two give Null; numbers through the Italian CStr.
        {"'a' & Null", "a"},
        {"Null & Null", "Null"},
        {"1.5 & ''", "1,5"},
        {"#7/3/2016# & ''", "03/07/2016"},
        {"Hour(#1/2/2017 09:05:00# - #1/1/2017#) & '.' & Minute(#1/2/2017 09:05:00# - #1/1/2017#)", "9.5"},
        // Val: blanks anywhere, "." as the decimal point, 0 when no number leads.
        {"Val(' 12 34abc')", "1234"},
        {"Val('A3')", "0"},
        {"Val('1.5')", "1.5"},
        {"Val('&H10')", "16"},
        // \ and Mod round their operands first; / always divides exactly.
        {"7 \\ 2", "3"},
        {"7.5 \\ 2", "4"},
        {"-7 Mod 3", "-1"},
        {"5 / 2", "2.5"},
        {"2 ^ 3 * 2", "16"},
        {"-2 ^ 2", "-4"},
        {"IIf(1 > 2, 'si', 'no')", "no"},
        {"IIf(Null, 'si', 'no')", "no"},
        {"Nz(Null, 5)", "5"},
        {"Left('Pressa', 3) & Right('Pressa', 2) & Mid('Pressa', 2, 2) & Len('abc')", "Presare3"},
        {"UCase('àb') & LCase('CD') & Trim('  x  ')", "ÀBcdx"},
        {"Format(1234.5, 'Standard')", "1.234,50"},
        {"Format(1234.5, '##,##0.00')", "1.234,50"},
        {"Format(#7/3/2016#, 'dd/mm/yyyy')", "03/07/2016"},
        {"CStr(2.25)", "2,25"},
        {"CInt('2,5')", "2"},
        {"Year(#7/3/2016#) & '-' & Month(#7/3/2016#) & '-' & Day(#7/3/2016#)", "2016-7-3"},
        // Jet's date literals are US month/day/year; a day above 12 swaps them.
        {"Day(#13/7/2016#)", "13"},
        // Date() and Now() come from the program's clock.
        {"Format(Date(), 'dd/mm/yyyy')", "15/11/2026"},
        {"Format(Now(), 'hh:nn')", "08.00"},
        {"Date() + 1 - #11/15/2026#", "1"},
        // Comparisons: case ignored, accents respected, True is -1.
        {"'abc' = 'ABC'", "-1"},
        {"'à' = 'a'", "0"},
        {"'a' < 'B'", "-1"},
        {"'b' Between 'A' And 'C'", "-1"},
        {"'X' In ('a', 'x')", "-1"},
        {"Null Is Null", "-1"},
        // LIKE: ANSI-92 wildcards, case ignored, accents respected, "*" is plain text.
        {"'Pressa' Like 'p%'", "-1"},
        {"'àla' Like 'a%'", "0"},
        {"'abc' Like 'a_c'", "-1"},
        {"'b' Like '[a-c]'", "-1"},
        {"'d' Like '[!a-c]'", "-1"},
        {"'50%' Like '50[%]'", "-1"},
        {"'abc' Like 'a*'", "0"},
        {"'abc' Not Like '%b%'", "0"},
        {"Null Like 'a'", "Null"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(value(QString::fromUtf8(c.jet)).toStdString(), c.expected) << c.jet;
}

TEST_F(JetTest, QueriesOnTablesGiveJetResults)
{
    const Case cases[] = {
        // Val ordering of a text column: 2 before 10, "A3" counts as 0.
        {"SELECT Numerazione FROM Tbl_M ORDER BY Val(Numerazione)", "A3;1;2;10"},
        // Text sorts and groups without case, accents kept apart.
        {"SELECT Macchina, Count(*) AS N FROM Tbl_M GROUP BY Macchina ORDER BY Macchina", "àlesatrice|1;Pressa|2;Tornio|1"},
        {"SELECT DISTINCT UCase(Left(Macchina, 3)) FROM Tbl_M ORDER BY UCase(Left(Macchina, 3))", "ÀLE;PRE;TOR"},
        {"SELECT ID FROM Tbl_M WHERE Macchina = 'pressa' ORDER BY ID DESC", "2;1"},
        {"SELECT ID FROM Tbl_M WHERE Macchina Like 'PRE%' AND Nota Is Null", "1"},
        // Sum over text numbers reads them under Italian settings; Nulls are skipped.
        {"SELECT Sum(Tot) AS S FROM Tbl_M", "1245"},
        {"SELECT Sum(Costo) AS S, Min(Costo) AS A, Max(Macchina) AS B, Avg(Freq) AS C FROM Tbl_M", "13.5|1|Tornio|2.25"},
        {"SELECT Format(Min(Costo), 'Standard') AS M FROM Tbl_M", "1,00"},
        // HAVING without an aggregate, as Jet allows.
        {"SELECT [Citta/Paese] FROM Tbl_M GROUP BY [Citta/Paese] HAVING ((([Citta/Paese])='como'))", "Como"},
        {"SELECT TOP 2 ID FROM Tbl_M ORDER BY ID DESC", "4;3"},
        // Bang and bracketed-dot columns.
        {"SELECT [Tbl_M]![ID] FROM Tbl_M WHERE [Tbl_M.Numerazione] = '2'", "2"},
        // Date arithmetic and parts of date columns.
        {"SELECT Year(Ultima) AS Y, Count(ID) AS N FROM Tbl_M GROUP BY Year(Ultima) ORDER BY Year(Ultima) DESC",
         "2017|1;2016|2;Null|1"},
        {"SELECT Format([Tbl_M.Ultima]+([Tbl_M.Freq]*7), 'dd/mm/yyyy') FROM Tbl_M WHERE ID = 1", "31/07/2016"},
        // A date column compared with quoted text reads the text as an Italian date;
        // a text-date column compares as text: "31/12/2016" is after "04/01/2017".
        {"SELECT ID FROM Tbl_M WHERE Ultima = '03/07/2016'", "1"},
        {"SELECT ID FROM Tbl_M WHERE Data_T > '04/01/2017' ORDER BY ID", "2;4"},
        {"SELECT ID FROM Tbl_M WHERE Ultima <= (Date() + 1) ORDER BY Ultima DESC", "4;2;1"},
        // Joins nested in brackets, RIGHT JOIN included.
        {"SELECT Tbl_M.ID, Tbl_R.Pezzo FROM Tbl_M INNER JOIN Tbl_R ON Tbl_M.ID = Tbl_R.ID ORDER BY Tbl_R.Pezzo",
         "1|dado;2|molla;1|vite"},
        {"SELECT Tbl_M.ID, Tbl_R.Pezzo FROM Tbl_M RIGHT JOIN Tbl_R ON Tbl_M.ID = Tbl_R.ID WHERE Tbl_M.ID Is Null",
         "Null|orfano"},
        {"SELECT Count(*) FROM One INNER JOIN (Tbl_M LEFT JOIN Tbl_R ON Tbl_M.ID = Tbl_R.ID) ON One.ID = 1", "5"},
        {"SELECT Macchina FROM Tbl_M WHERE ID In (SELECT ID FROM Tbl_R) ORDER BY ID", "Pressa;PRESSA"},
        // IIf with Is Null in select, group and order.
        {"SELECT IIf([Nota] Is Null Or [Nota]='','- - - ',[Nota]) AS N FROM Tbl_M GROUP BY "
         "IIf([Nota] Is Null Or [Nota]='','- - - ',[Nota]) ORDER BY IIf([Nota] Is Null Or [Nota]='','- - - ',[Nota])",
         "- - - ;x;y"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(run(QString::fromUtf8(c.jet)).toStdString(), c.expected) << c.jet;
}

TEST_F(JetTest, SessionTimeTakesTheDifferenceAsATimeOfDay)
{
    // A session across midnight, and one of more than 24 hours: only the remainder
    // of a day shows, as the old statement always did.
    run("CREATE TABLE Tbl_Register (Date_Open DATE, Date_Close DATE, Tempo Text)");
    run("INSERT INTO Tbl_Register VALUES (#1/1/2017 23:50:00#, #1/2/2017 00:15:30#, Null)");
    run("INSERT INTO Tbl_Register VALUES (#1/1/2017 08:00:00#, #1/2/2017 09:05:07#, Null)");
    run("UPDATE Tbl_Register SET Tbl_Register.Tempo =  Hour([Tbl_Register]![Date_Close]-[Tbl_Register]![Date_Open]) "
        "& '.' & Minute([Tbl_Register]![Date_Close]-[Tbl_Register]![Date_Open]) & '.' & "
        "Second([Tbl_Register]![Date_Close]-[Tbl_Register]![Date_Open]);");
    EXPECT_EQ(run("SELECT Tempo FROM Tbl_Register"), QStringLiteral("0.25.30;1.5.7"));
}

TEST_F(JetTest, ActionStatements)
{
    // "Delete * from" and values converted to the column's type on the way in:
    // Italian number text into a number, a date into a text column as dd/mm/yyyy.
    run("Delete * from Tbl_R WHERE ID  = 9");
    EXPECT_EQ(run("SELECT Count(*) FROM Tbl_R"), QStringLiteral("3"));
    run("UPDATE Tbl_M SET Tbl_M.Costo = '12,5', Tbl_M.Nota = Date() WHERE ((Tbl_M.ID = 3))");
    EXPECT_EQ(run("SELECT Costo, Nota FROM Tbl_M WHERE ID = 3"), QStringLiteral("12.5|15/11/2026"));
    run("UPDATE Tbl_M SET Ultima = '3/7/2016  9.5.0' WHERE ID = 3");
    EXPECT_EQ(run("SELECT Format(Ultima, 'dd/mm/yyyy hh:nn:ss') FROM Tbl_M WHERE ID = 3"),
              QStringLiteral("03/07/2016 09.05.00"));

    // UPDATE over a join writes the table its SET names.
    run("UPDATE Tbl_M INNER JOIN (Tbl_R INNER JOIN One ON Tbl_R.ID = One.X) ON Tbl_M.ID = Tbl_R.ID "
        "SET Tbl_R.Pezzo = 'bullone' WHERE (((Tbl_M.Macchina)='pressa'))");
    EXPECT_EQ(run("SELECT Pezzo FROM Tbl_R ORDER BY ID_R"), QStringLiteral("bullone;bullone;molla"));

    // INSERT ... SELECT with Date() into a text column.
    run("INSERT INTO Tbl_R ( ID, Pezzo )SELECT Tbl_M.ID, Date() AS D FROM Tbl_M WHERE Tbl_M.ID = 4;");
    EXPECT_EQ(run("SELECT Pezzo FROM Tbl_R WHERE ID = 4"), QStringLiteral("15/11/2026"));

    // ALTER TABLE at run time; the next statement sees the new column's type.
    run("ALTER TABLE Tbl_R ADD COLUMN Quando DATE");
    run("UPDATE Tbl_R SET Quando = '01/02/2017' WHERE ID = 4");
    EXPECT_EQ(run("SELECT Month(Quando) & '' FROM Tbl_R WHERE ID = 4"), QStringLiteral("2"));
    run("DROP TABLE Tbl_R");
    EXPECT_EQ(schema->table(QStringLiteral("Tbl_R")), nullptr);
}

TEST_F(JetTest, SelectIntoKeepsTheColumnTypes)
{
    jet::Translation t = jet::translate(QStringLiteral("SELECT Tbl_M.ID, Tbl_M.Ultima, '' AS Tipo, Tbl_M.Costo * 2 AS "
                                                       "Doppio INTO Tbl_Copia FROM Tbl_M WHERE Tbl_M.ID < 3;"),
                                        schema.get());
    EXPECT_EQ(t.kind, jet::StatementKind::SelectInto);
    EXPECT_EQ(t.intoTable, QStringLiteral("Tbl_Copia"));
    run(QStringLiteral("SELECT Tbl_M.ID, Tbl_M.Ultima, '' AS Tipo, Tbl_M.Costo * 2 AS Doppio INTO Tbl_Copia FROM "
                       "Tbl_M WHERE Tbl_M.ID < 3;"));
    const jet::TableInfo* copy = schema->table(QStringLiteral("tbl_copia"));
    ASSERT_NE(copy, nullptr);
    ASSERT_EQ(copy->columns.size(), 4u);
    EXPECT_EQ(copy->columns[1].kind, jet::ColumnKind::Date); // dates stay dates
    EXPECT_EQ(copy->columns[2].kind, jet::ColumnKind::Text);
    EXPECT_EQ(copy->columns[3].kind, jet::ColumnKind::Number);
    EXPECT_EQ(run("SELECT ID, Doppio FROM Tbl_Copia WHERE Tipo = '' ORDER BY ID"), QStringLiteral("1|10;2|15"));
    // The copy's text columns compare as Jet's.
    run("SELECT Tbl_M.* INTO Tbl_M2 FROM Tbl_M;");
    EXPECT_EQ(run("SELECT Count(*) FROM Tbl_M2 WHERE Macchina = 'PRESSA'"), QStringLiteral("2"));

    // INTO ... IN "file": the target lives in the attached file.
    t = jet::translate(QStringLiteral("SELECT * INTO Tbl_M IN \"C:\\rpt\\RPT_Velmora.mdb\"FROM Tbl_M"), schema.get());
    EXPECT_EQ(t.intoFile, QStringLiteral("C:\\rpt\\RPT_Velmora.mdb"));
    ASSERT_EQ(t.statements.size(), 2u);
    EXPECT_TRUE(t.statements[0].sql.startsWith(QStringLiteral("CREATE TABLE jet_in.Tbl_M"))) << t.statements[0].sql.toStdString();
    EXPECT_TRUE(t.statements[1].sql.contains(QStringLiteral("FROM main.Tbl_M")));
}

TEST_F(JetTest, RefusesWhatJetRefuses)
{
    const Case cases[] = {
        // WHERE behind GROUP BY.
        {"SELECT Macchina FROM Tbl_M GROUP BY Macchina Where Macchina like '%a%';",
         "Errore di sintassi (operatore mancante) nell'espressione della query 'Macchina Where Macchina like '%a%''."},
        // One closing bracket short.
        {"SELECT ID From Tbl_M WHERE (((Tbl_M.ID)= 3) Order by Macchina ;",
         "Errore di sintassi (operatore mancante) nell'espressione della query '(((Tbl_M.ID)= 3) Order by Macchina'."},
        {"SELECT ID FROM Tbl_M WHERE Macchina = 'Press", "Errore di sintassi nella stringa nell'espressione della query "
                                                         "''Press'."},
        {"SELECT Pippo(ID) FROM Tbl_M", "Funzione 'Pippo' non definita nell'espressione."},
        {"SELECT ID FROM", "Errore di sintassi nella clausola FROM."},
        {"SELECT * FROM Tbl_M INNER JOIN Tbl_R ON Tbl_M.ID = Tbl_R.ID INNER JOIN One ON One.ID = Tbl_R.ID",
         "Errore di sintassi (operatore mancante) nell'espressione della query 'Tbl_M.ID = Tbl_R.ID INNER JOIN One ON "
         "One.ID = Tbl_R.ID'."},
        {"PICK * FROM Tbl_M",
         "Istruzione SQL non valida. Prevista 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT' o 'UPDATE'."},
        {"SELECT ID FROM Tbl_M; x", "Caratteri trovati dopo la fine dell'istruzione SQL."},
        {"SELECT #31/31/2016# FROM One", "Errore di sintassi nella data nell'espressione della query '#31/31/2016#'."},
        {"CREATE TABLE T (A Pippo)", "Errore di sintassi nella definizione del campo."},
    };
    for (const Case& c : cases) {
        try {
            jet::translate(QString::fromUtf8(c.jet), schema.get());
            ADD_FAILURE() << "accepted: " << c.jet;
        } catch (const vb::VBError& e) {
            EXPECT_EQ(e.number(), vb::err::SyntaxError) << c.jet;
            EXPECT_EQ(e.description().toStdString(), c.expected) << c.jet;
        }
    }
    // An unknown column is left to SQLite's prepare.
    const jet::Translation t = jet::translate(QStringLiteral("SELECT Tbl_M.[0] FROM Tbl_M"), schema.get());
    sqlite3_stmt* st = nullptr;
    EXPECT_NE(sqlite3_prepare_v2(db, t.statements[0].sql.toUtf8().constData(), -1, &st, nullptr), SQLITE_OK);
    sqlite3_finalize(st);
    // Val of a Null is error 94, raised from inside the statement.
    try {
        run("SELECT Val(Nota) FROM Tbl_M");
        ADD_FAILURE() << "Val(Null) accepted";
    } catch (const vb::VBError& e) {
        EXPECT_EQ(e.number(), vb::err::InvalidUseOfNull);
    }
}

TEST_F(JetTest, OneTranslationServesEveryValue)
{
    const jet::Translation a = jet::translate(QStringLiteral("Select * from Tbl_M where ID = 1 AND Macchina = 'a'"),
                                              schema.get());
    const jet::Translation b = jet::translate(QStringLiteral("Select * from Tbl_M where ID = 27 AND Macchina = 'it''s'"),
                                              schema.get());
    EXPECT_EQ(a.statements[0].sql, b.statements[0].sql);
    ASSERT_EQ(b.statements[0].params.size(), 2u);
    EXPECT_EQ(b.statements[0].params[0].rawLong(), 27);
    EXPECT_EQ(b.statements[0].params[1].rawString(), QStringLiteral("it's"));
    // A select of one table carries its rowid, and says which columns are dates.
    EXPECT_EQ(b.baseTable, QStringLiteral("Tbl_M"));
    ASSERT_EQ(b.dateColumns.size(), 10u);
    EXPECT_TRUE(b.dateColumns[4]);
    EXPECT_FALSE(b.dateColumns[3]);
    EXPECT_EQ(b.columnNames[7], QStringLiteral("Citta/Paese"));
    // The parameter commands' "?" is the caller's.
    EXPECT_EQ(run("SELECT ID FROM Tbl_M WHERE Macchina LIKE '%' & ? & '%' ORDER BY ID", {vb::Variant("ESS")}),
              QStringLiteral("1;2"));
    // Expressions read back as dates where Jet's would.
    const jet::Translation c = jet::translate(
        QStringLiteral("SELECT Max(Ultima) AS U, Date() AS D, Ultima - 1 AS P, Ultima - Ultima AS Z FROM Tbl_M"),
        schema.get());
    EXPECT_EQ(c.dateColumns, (std::vector<bool>{true, true, true, false}));
    EXPECT_TRUE(c.baseTable.isEmpty());
}

TEST_F(JetTest, JoinsInActionStatementsAndSubqueries)
{
    // UPDATE over an outer join: only the rows the join and WHERE select are written.
    run("UPDATE Tbl_M LEFT JOIN Tbl_R ON Tbl_M.ID = Tbl_R.ID SET Tbl_M.Nota = 'senza' WHERE Tbl_R.ID Is Null");
    EXPECT_EQ(run("SELECT ID FROM Tbl_M WHERE Nota = 'SENZA' ORDER BY ID"), QStringLiteral("3;4"));
    // DELETE over a join deletes from the first table.
    run("DELETE Tbl_R.* FROM Tbl_R INNER JOIN Tbl_M ON Tbl_R.ID = Tbl_M.ID WHERE Tbl_M.Macchina = 'PRESSA'");
    EXPECT_EQ(run("SELECT Pezzo FROM Tbl_R"), QStringLiteral("orfano"));
    // A subquery in FROM, its columns typed for the outer select.
    EXPECT_EQ(run("SELECT Q.M & '' FROM (SELECT Max(Ultima) AS M FROM Tbl_M) AS Q"), QStringLiteral("01/01/2017 23.30.00"));
    EXPECT_EQ(run("SELECT T.Macchina FROM Tbl_M AS T WHERE T.ID = 3"), QStringLiteral("Tornio"));
}

TEST_F(JetTest, TextOrderIgnoresCaseAndPlacesAccentsAfterTheirLetter)
{
    run("CREATE TABLE Parole (P Memo, N Long NOT NULL, C CHAR(5), S SMALLINT, B BIT, Q Currency)");
    for (const char* w : {"b", "à", "a", "Z", "ab", "Àb", "10", "9"})
        run(QStringLiteral("INSERT INTO Parole (P, N) VALUES ('%1', 1)").arg(QString::fromUtf8(w)));
    // Case is ignored ("Z" after "b"), an accent sorts right after its letter, and
    // digits as text ("10" before "9").
    EXPECT_EQ(run("SELECT P FROM Parole ORDER BY P").toStdString(), "10;9;a;à;ab;Àb;b;Z");
    EXPECT_EQ(run("SELECT Count(*) FROM (SELECT DISTINCT P FROM Parole) AS D"), QStringLiteral("8"));
    EXPECT_EQ(run("SELECT Count(*) FROM Parole WHERE P = 'àB'"), QStringLiteral("1"));
    const jet::TableInfo* t = schema->table(QStringLiteral("Parole"));
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->columns[0].kind, jet::ColumnKind::Text);
    EXPECT_EQ(t->columns[1].kind, jet::ColumnKind::Number);
    EXPECT_EQ(t->columns[2].kind, jet::ColumnKind::Text);
    EXPECT_EQ(t->columns[4].kind, jet::ColumnKind::Boolean);
    // Sum of a text that is no number is Jet's type mismatch.
    try {
        run("SELECT Sum(P) FROM Parole");
        ADD_FAILURE() << "Sum over words accepted";
    } catch (const vb::VBError& e) {
        EXPECT_EQ(e.number(), jet::jeterr::TypeMismatchInCriteria);
    }
}
