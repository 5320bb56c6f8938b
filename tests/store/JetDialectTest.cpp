// The Jet dialect run for real: the statements of tests/data/jet_dialect.txt translated,
// prepared and run on an in-memory SQLite store with our functions and collation, their
// results compared with Jet's; then what a translation carries besides its rows.

#include "JetTestSupport.h"
#include "ServerJet.h"
#include "store/Schema.h"
#include "support/TestPaths.h"

#include <QDate>
#include <QFile>
#include <QMap>

#include <cstring>
#include <random>

using namespace store::jet;
using namespace store::jet::testing;

namespace {

/// The corpus's sections, in file order, each as its lines (comments left out).
const QList<QPair<QString, QStringList>>& corpus()
{
    static const QList<QPair<QString, QStringList>> sections = [] {
        QList<QPair<QString, QStringList>> out;
        QFile file(testpaths::data(QStringLiteral("jet_dialect.txt")));
        if (!file.open(QIODevice::ReadOnly))
            ADD_FAILURE() << "jet_dialect.txt is missing";
        for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n')) {
            if (line.startsWith(u'['))
                out.append({line.mid(1, line.size() - 2), {}});
            else if (!line.isEmpty() && !line.startsWith(u'#') && !out.isEmpty())
                out.last().second << line;
        }
        return out;
    }();
    return sections;
}

std::vector<std::string> sectionNames()
{
    std::vector<std::string> names;
    for (const auto& s : corpus())
        names.push_back(s.first.toStdString());
    return names;
}

QString kindsOf(const SchemaInfo* schema, const QString& table)
{
    const TableInfo* t = schema->table(table);
    if (!t)
        return QStringLiteral("none");
    static const char* const names[] = {"Unknown", "Number", "Text", "Date", "Boolean"};
    QStringList out;
    for (const ColumnInfo& c : t->columns)
        out << QLatin1String(names[int(c.kind)]);
    return out.join(u',');
}

// Each section on the embedded store (Dialect/...) and on the server (Server/...).
class JetCorpus : public ::testing::TestWithParam<std::string>
{
protected:
    void SetUp() override
    {
        const bool server =
            std::string_view(::testing::UnitTest::GetInstance()->current_test_suite()->name()).starts_with("Server");
        if (server) {
            SKIP_WITHOUT_SERVER();
            runner = std::make_unique<ServerJet>();
        } else {
            runner = std::make_unique<JetConnection>();
        }
        vb::Clock::freeze(QDateTime(QDate(2026, 11, 15), QTime(8, 0)));
        jet().run(QStringLiteral("CREATE TABLE Uno (ID COUNTER, X Integer)"));
        jet().run(QStringLiteral("INSERT INTO Uno (X) VALUES (1)"));
    }
    JetRunner& jet() { return *runner; }
    void TearDown() override { vb::Clock::unfreeze(); }

    void runSection(const QString& name)
    {
        for (const auto& [section, lines] : corpus())
            if (section == name)
                for (const QString& line : lines)
                    runLine(line);
    }

    void runLine(QString line)
    {
        SCOPED_TRACE(line.toStdString());
        if (line.startsWith(QLatin1String("use: ")))
            return runSection(line.mid(5));
        // "JET => EXPECTED"; a line ending in " =>" expects nothing.
        const bool expects = line.contains(QLatin1String(" => ")) || line.endsWith(QLatin1String(" =>"));
        const QString expected = expects ? line.section(QLatin1String(" =>"), -1).mid(1) : QString();
        if (expects)
            line.truncate(line.lastIndexOf(QLatin1String(" =>")));
        const QString verb = line.section(QLatin1String(": "), 0, 0);
        const QString jetSql = line.section(QLatin1String(": "), 1);
        if (line.startsWith(QLatin1String("= ")))
            return expectRows(QStringLiteral("SELECT ") + line.mid(2) + QStringLiteral(" AS V FROM Uno"), expected);
        if (verb == QLatin1String("refused")) {
            const QString why = refusal(jetSql, jet().schema(), jet().dialect());
            EXPECT_FALSE(why.isEmpty()) << "accepted";
            EXPECT_FALSE(why.startsWith(u'<')) << why.toStdString();
            if (!expected.isEmpty()) {
                EXPECT_EQ(why.toStdString(), expected.toStdString());
            }
        } else if (verb == QLatin1String("unprepared")) {
            EXPECT_TRUE(refusal(jetSql, jet().schema(), jet().dialect()).isEmpty());
            EXPECT_FALSE(jet().prepareOnly(jetSql).isEmpty()) << "prepared";
        } else if (verb == QLatin1String("prepares")) {
            EXPECT_EQ(jet().prepareOnly(jetSql).toStdString(), "");
        } else if (verb.startsWith(QLatin1String("error "))) {
            try {
                jet().run(jetSql);
                ADD_FAILURE() << "ran";
            } catch (const vb::VBError& e) {
                EXPECT_EQ(e.number(), verb.mid(6).toInt());
            }
        } else if (verb == QLatin1String("kinds")) {
            EXPECT_EQ(kindsOf(jet().schema(), jetSql).toStdString(), expected.toStdString());
        } else if (verb == QLatin1String("dates") || verb == QLatin1String("columns")) {
            expectRows(jetSql, std::nullopt);
            QStringList got;
            for (size_t i = 0; i < jet().last().dateColumns.size(); ++i)
                got << (verb == QLatin1String("dates") ? QString::number(int(jet().last().dateColumns[i]))
                                                       : jet().last().columnNames.value(int(i)));
            EXPECT_EQ(got.join(verb == QLatin1String("dates") ? QString() : QStringLiteral(",")).toStdString(),
                      expected.toStdString());
        } else {
            expectRows(line, expects ? std::optional<QString>(expected) : std::nullopt);
        }
    }

    void expectRows(const QString& jetSql, const std::optional<QString>& expected)
    {
        try {
            const QString rows = jet().run(jetSql);
            if (expected) {
                EXPECT_EQ(rows.toStdString(), expected->toStdString());
            }
        } catch (const vb::VBError& e) {
            ADD_FAILURE() << "error " << e.number() << " " << e.description().toStdString();
        }
    }

    std::unique_ptr<JetRunner> runner;
};

} // namespace

TEST_P(JetCorpus, GivesJetsResults)
{
    runSection(QString::fromStdString(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Dialect, JetCorpus, ::testing::ValuesIn(sectionNames()),
                         [](const auto& info) { return info.param; });
INSTANTIATE_TEST_SUITE_P(Server, JetCorpus, ::testing::ValuesIn(sectionNames()),
                         [](const auto& info) { return info.param; });

TEST(JetTranslation, OneShapeServesEveryValueAndTheCallersParameters)
{
    JetConnection jet;
    jet.run(QStringLiteral("CREATE TABLE Tbl_M (ID COUNTER, Macchina VARCHAR(50), Ultima DATE)"));
    jet.run(QStringLiteral("INSERT INTO Tbl_M (Macchina) VALUES ('Pressa')"));
    jet.run(QStringLiteral("INSERT INTO Tbl_M (Macchina) VALUES ('PRESSA')"));
    const Translation a =
        translate(QStringLiteral("Select * from Tbl_M where ID = 1 AND Macchina = 'a'"), jet.schema());
    const Translation b =
        translate(QStringLiteral("Select * from Tbl_M where ID = 27 AND Macchina = 'it''s'"), jet.schema());
    EXPECT_EQ(a.statements[0].sql, b.statements[0].sql);
    ASSERT_EQ(b.statements[0].params.size(), 2u);
    EXPECT_EQ(b.statements[0].params[0].rawLong(), 27);
    EXPECT_EQ(b.statements[0].params[1].rawString(), QStringLiteral("it's"));
    // A "?" inside a text is text, not the caller's parameter.
    EXPECT_TRUE(
        translate(QStringLiteral("SELECT ID FROM Tbl_M WHERE Macchina = 'a;b ?'"), jet.schema()).userParams.empty());
    // A select of one table carries its rowid; an aggregate none.
    EXPECT_EQ(b.baseTable, QStringLiteral("Tbl_M"));
    EXPECT_TRUE(translate(QStringLiteral("SELECT Max(Ultima) AS U FROM Tbl_M"), jet.schema()).baseTable.isEmpty());
    // The parameter commands' "?" is the caller's.
    EXPECT_EQ(jet.run(QStringLiteral("SELECT ID FROM Tbl_M WHERE Macchina LIKE '%' & ? & '%' ORDER BY ID"),
                      {vb::Variant("ESS")}),
              QStringLiteral("1;2"));
    // Two connections never share a translation made for the other's tables.
    JetConnection other;
    other.run(QStringLiteral("CREATE TABLE Tbl_M (ID Long, Macchina VARCHAR(20), Ultima VARCHAR(10))"));
    other.run(QStringLiteral("INSERT INTO Tbl_M VALUES (1, 'uno', '31/12/2016')"));
    EXPECT_EQ(other.run(QStringLiteral("SELECT * FROM Tbl_M WHERE ID = 1")), QStringLiteral("1|uno|31/12/2016"));
    EXPECT_EQ(other.last().dateColumns, (std::vector<bool>{false, false, false}));
    jet.run(QStringLiteral("SELECT * FROM Tbl_M WHERE ID = 1"));
    EXPECT_EQ(jet.last().dateColumns, (std::vector<bool>{false, false, true}));
}

TEST(JetTranslation, SelectIntoAndIntoAnotherFile)
{
    JetConnection jet;
    jet.run(QStringLiteral("CREATE TABLE Tbl_M (ID COUNTER, Macchina VARCHAR(50))"));
    Translation t =
        translate(QStringLiteral("SELECT Tbl_M.ID INTO Tbl_Copia FROM Tbl_M WHERE Tbl_M.ID < 3;"), jet.schema());
    EXPECT_EQ(t.kind, StatementKind::SelectInto);
    EXPECT_EQ(t.intoTable, QStringLiteral("Tbl_Copia"));
    // INTO ... IN "file": the target lives in the attached file.
    t = translate(QStringLiteral("SELECT * INTO Tbl_M IN \"C:\\rpt\\RPT_Velmora.mdb\"FROM Tbl_M"), jet.schema());
    EXPECT_EQ(t.intoFile, QStringLiteral("C:\\rpt\\RPT_Velmora.mdb"));
    ASSERT_EQ(t.statements.size(), 2u);
    EXPECT_TRUE(t.statements[0].sql.startsWith(QStringLiteral("CREATE TABLE jet_in.Tbl_M")))
        << t.statements[0].sql.toStdString();
    EXPECT_TRUE(t.statements[1].sql.contains(QStringLiteral("FROM main.Tbl_M")));
}

// The interventions by machine unit and by machine and cause, against the groupings with
// every term written out, on random rows with few values (groups of many rows, tied
// counts, texts differing in case, Nulls, unmatched keys, causes sharing a name on odd
// seeds and names told apart by an accent only on even ones, a Null unit on seed 3): the
// same columns, rows, values and order, or the same error.
TEST(JetTranslation, GroupingsOverTheInterventionsKeepEveryRow)
{
    const char* cases[][2] = {
        {"SELECT Tbl_Ricerca.ID_MODELLO, Tbl_Ricerca.Modello, Tbl_Ricerca.Numerazione, Tbl_Macchina.Stato, "
         "Tbl_Ricerca.ID_NUM, Count(Tbl_Ricerca.ID_RICAMBI) AS ConteggioDiID_RICAMBI FROM Tbl_Ricerca INNER JOIN "
         "Tbl_Macchina ON Tbl_Ricerca.ID_MODELLO = Tbl_Macchina.ID_MODELLO GROUP BY Tbl_Ricerca.ID_MODELLO, "
         "Tbl_Ricerca.Modello, Tbl_Ricerca.Numerazione, Tbl_Macchina.Stato, Tbl_Ricerca.ID_NUM, "
         "Val([Tbl_Ricerca].[Numerazione])ORDER BY Val([Tbl_Ricerca].[Numerazione]);",
         "SELECT Tbl_Ricerca.ID_MODELLO, Tbl_Ricerca.Modello, Tbl_Ricerca.Numerazione, Tbl_Macchina.Stato, "
         "Tbl_Ricerca.ID_NUM, count(Tbl_Ricerca.ID_RICAMBI) AS ConteggioDiID_RICAMBI FROM Tbl_Ricerca INNER JOIN "
         "Tbl_Macchina ON (Tbl_Ricerca.ID_MODELLO = Tbl_Macchina.ID_MODELLO) GROUP BY Tbl_Ricerca.ID_MODELLO, "
         "Tbl_Ricerca.Modello COLLATE JET, Tbl_Ricerca.Numerazione COLLATE JET, Tbl_Macchina.Stato COLLATE JET, "
         "Tbl_Ricerca.ID_NUM, jet_val(Tbl_Ricerca.Numerazione) ORDER BY jet_val(Tbl_Ricerca.Numerazione)"},
        {"SELECT Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, Tbl_Ricerca.Numerazione, "
         "Tbl_Causa_Intervento.Causa_Interv, "
         "Count(Tbl_Ricerca.ID_CAUSA) AS ConteggioDiID_CAUSA FROM Tbl_Ricerca INNER JOIN Tbl_Causa_Intervento ON "
         "Tbl_Ricerca.ID_CAUSA = Tbl_Causa_Intervento.ID_CAUSA GROUP BY Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, "
         "Tbl_Ricerca.Numerazione, Tbl_Causa_Intervento.Causa_Interv ORDER BY Tbl_Ricerca.Macchina, "
         "Tbl_Ricerca.Modello, Val(Tbl_Ricerca.Numerazione), Count(Tbl_Causa_Intervento.Causa_Interv) DESC;",
         "SELECT Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, Tbl_Ricerca.Numerazione, "
         "Tbl_Causa_Intervento.Causa_Interv, count(Tbl_Ricerca.ID_CAUSA) AS ConteggioDiID_CAUSA FROM Tbl_Ricerca "
         "INNER JOIN Tbl_Causa_Intervento ON (Tbl_Ricerca.ID_CAUSA = Tbl_Causa_Intervento.ID_CAUSA) GROUP BY "
         "Tbl_Ricerca.Macchina COLLATE JET, Tbl_Ricerca.Modello COLLATE JET, Tbl_Ricerca.Numerazione COLLATE JET, "
         "Tbl_Causa_Intervento.Causa_Interv COLLATE JET ORDER BY Tbl_Ricerca.Macchina COLLATE JET, "
         "Tbl_Ricerca.Modello COLLATE JET, jet_val(Tbl_Ricerca.Numerazione), count(Tbl_Causa_Intervento.Causa_Interv) "
         "DESC"},
    };
    for (const unsigned seed : {1u, 2u, 3u, 4u}) {
        JetConnection jet;
        store::createSchema(jet.db());
        std::mt19937 rng(seed);
        auto pick = [&](std::initializer_list<const char*> pool) {
            const char* v = pool.begin()[rng() % pool.size()];
            return v ? QStringLiteral("'%1'").arg(QLatin1String(v)) : QStringLiteral("Null");
        };
        QString rows =
            QStringLiteral("INSERT INTO Tbl_Causa_Intervento VALUES (1,'Guasto'),(2,%1),(3,'Usura'),(4,Null),"
                           "(5,'Altro'),(6,%2);")
                .arg(seed % 2 ? "'guasto'" : "'Rottura'", seed % 2 ? "Null" : "'Usurà'");
        for (int model = 1; model <= 8; ++model)
            rows += QStringLiteral("INSERT INTO Tbl_Macchina (ID_MODELLO, Stato) VALUES (%1, %2);")
                        .arg(QString::number(model), pick({"Attiva", "attiva", "Ferma", nullptr}));
        for (int i = 0; i < 3000; ++i)
            rows += QStringLiteral("INSERT INTO Tbl_Ricerca (ID_MODELLO, Macchina, Modello, ID_NUM, Numerazione, "
                                   "ID_RICAMBI, ID_CAUSA) VALUES (%1, %2, %3, %4, %5, %6, %7);")
                        .arg(pick({"1", "2", "5", "8", "9", nullptr}), pick({"Pressa", "PRESSA", "Tornio", nullptr}),
                             pick({"M1", "m1", "M2", nullptr}), pick({"1", "2", "3", nullptr}),
                             pick({"1", "01", " 1", "1a", "1A", "10", "x", seed == 3 && i % 100 == 0 ? nullptr : "X"}),
                             pick({"1", "2", nullptr}), pick({"1", "2", "3", "4", "5", "6", "7", nullptr}));
        ASSERT_EQ(sqlite3_exec(jet.db(), rows.toUtf8().constData(), nullptr, nullptr, nullptr), SQLITE_OK);
        for (const auto& [statement, everyTerm] : cases) {
            Translation t = translate(QString::fromUtf8(statement), jet.schema());
            auto outcome = [&] {
                sqlite3_stmt* st = nullptr;
                sqlite3_prepare_v2(jet.db(), t.statements.back().sql.toUtf8().constData(), -1, &st, nullptr);
                std::string out;
                for (int i = 0; i < sqlite3_column_count(st); ++i)
                    out += std::string(sqlite3_column_name(st, i)) + ' ' +
                           (sqlite3_column_decltype(st, i) ? sqlite3_column_decltype(st, i) : "") + ',';
                sqlite3_finalize(st);
                try {
                    return out + jet.runTranslation(t).toStdString();
                } catch (const vb::VBError& e) {
                    return "<error " + std::to_string(e.number()) + '>';
                }
            };
            const std::string ours = outcome();
            // The order the store gives the rows: each of its directions tells.
            EXPECT_EQ(t.order.terms.size(), std::strstr(statement, "Causa") ? 6u : 0u);
            for (size_t i = 0; i < t.order.terms.size() && seed % 2 == 0; ++i) {
                Translation flipped = t;
                flipped.order.terms[i].descending = !flipped.order.terms[i].descending;
                EXPECT_TRUE(jet.runTranslation(flipped).toStdString() != ours.substr(ours.rfind(',') + 1)) << i;
            }
            EXPECT_NE(t.statements.back().sql, QString::fromUtf8(everyTerm));
            t.statements.back().sql = QString::fromUtf8(everyTerm);
            EXPECT_EQ(ours, outcome()) << statement;
            EXPECT_EQ(ours[0] == '<', seed == 3);
        }
    }
    // Dates reach the recordset as dates, not as SQLite's numbers: their order stays SQLite's.
    JetConnection jet;
    store::createSchema(jet.db());
    const QString byDate =
        QString::fromUtf8(cases[1][0]).replace(QStringLiteral("Numerazione"), QStringLiteral("Data"));
    EXPECT_TRUE(translate(byDate, jet.schema()).order.terms.empty()) << byDate.toStdString();
}
