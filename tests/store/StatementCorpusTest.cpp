// Every statement the program runs (tests/data/statements.txt) translates and runs on a
// store holding sample rows, or is refused where Jet refuses it.
#include "JetTestSupport.h"
#include "StoreFixture.h"
#include "runtime/VBError.h"
#include "store/Schema.h"
#include "store/StoreErrors.h"
#include "store/jet/PostgresGenerator.h"
#include "support/TestPaths.h"
#include "support/TestServer.h"

#include <QFile>
#include <QTextStream>

#include <cstdio>

namespace store::testing {
namespace {

struct Section
{
    QString name;
    QStringList lines;
};

std::vector<Section> readCorpus()
{
    QFile file(testpaths::data(QStringLiteral("statements.txt")));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly | QIODevice::Text));
    QTextStream in(&file);
    std::vector<Section> sections;
    while (!in.atEnd()) {
        const QString line = in.readLine();
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        if (line.startsWith(u'[')) {
            sections.push_back({line.mid(1, line.size() - 2), {}});
            continue;
        }
        if (!sections.empty())
            sections.back().lines << line;
    }
    return sections;
}

/// Opens every child of every parent row, so that the relations run too.
int walkShape(Recordset& rs)
{
    int rows = 0;
    if (rs.RecordCount() == 0)
        return 0;
    for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext()) {
        ++rows;
        for (const QString& member : rs.ChildNames())
            rows += walkShape(*rs.Child(member));
    }
    return rows;
}

/// A value as both stores' rows are compared: numbers and dates as numbers.
QString cell(const vb::Variant& v)
{
    if (v.isNull())
        return QStringLiteral("Null");
    if (v.type() == vb::Variant::Type::String)
        return v.rawString();
    return QString::number(v.toDouble(), 'g', 15);
}

/// Rows as "a|1;b|2", in order when the statement sorts them, else sorted.
QString rowsText(std::vector<QStringList> rows, const QString& jetSql)
{
    QStringList out;
    for (const QStringList& r : rows)
        out << r.join(u'|');
    if (!jetSql.contains(QLatin1String("ORDER BY"), Qt::CaseInsensitive))
        out.sort();
    return out.join(u';');
}

/// The same rows, allowing rows that tie on the statement's ORDER BY to come in another
/// order: both stores leave ties unordered (the first column must still run alike).
bool sameRows(const QString& a, const QString& b)
{
    if (a == b)
        return true;
    QStringList ra = a.split(u';'), rb = b.split(u';');
    QStringList firstA, firstB;
    for (const QString& r : ra)
        firstA << r.section(u'|', 0, 0);
    for (const QString& r : rb)
        firstB << r.section(u'|', 0, 0);
    ra.sort();
    rb.sort();
    return ra == rb && firstA == firstB;
}

QString rowsOf(Recordset& rs, const QString& jetSql)
{
    std::vector<QStringList> rows;
    for (int r = 0; r < rs.RecordCount(); ++r) {
        rows.emplace_back();
        for (int c = 0; c < rs.FieldCount(); ++c)
            rows.back() << cell(rs.value(r, c));
    }
    return rowsText(rows, jetSql);
}

/// The same screen's statements on a new server database, from the same sample rows.
class ServerSide
{
public:
    ServerSide() { pg::createPostgresSchema(session()); }
    pg::PgSession& session() { return m_db.session(); }

    void upgradeAndCopy(sqlite3* from)
    {
        for (const QString& v : postgresViewStatements())
            session().exec(v);
        pg::copyRows(from, session());
    }

    QString outcome(const QString& jetSql, bool onReport, const std::vector<vb::Variant>& user)
    {
        pg::PgSession& on = onReport ? m_report : session();
        on.schemaChanged(); // the other session may have changed the tables
        QString out;
        jet::Translation t;
        try {
            t = jet::testing::withUserParams(jet::translate(jetSql, &on.schema(), jet::Dialect::Postgres), user);
            const pg::PgResult r = on.run(t);
            std::vector<QStringList> rows;
            for (const auto& row : r.rows) {
                rows.emplace_back();
                for (const vb::Variant& v : row)
                    rows.back() << cell(v);
            }
            out = rowsText(rows, jetSql);
        } catch (const vb::VBError& e) {
            const vb::VBError worded = errors::forStatement(e, t.kind);
            out = QStringLiteral("error %1 %2").arg(worded.number()).arg(worded.description());
        }
        return out;
    }

private:
    testserver::ScratchDatabase m_db;
    pg::PgSession m_report{m_db.uri(), pg::PgSession::Store::Report};
};

// Embedded/...: every statement runs or is refused; Server/...: and gives on the server
// store the same rows, or the same error, as on the embedded one.
class StatementCorpusTest : public StoreFixture, public ::testing::WithParamInterface<bool>
{
};

TEST_P(StatementCorpusTest, EveryProgramStatementRunsOrIsRefusedAsJetRefusesIt)
{
    const bool compare = GetParam();
    if (compare) {
        SKIP_WITHOUT_SERVER();
    }
    QStringList serverDiffers;
    const std::vector<Section> sections = readCorpus();
    ASSERT_FALSE(sections.empty());
    int statements = 0, refused = 0, shaped = 0;
    QStringList failures;
    int n = 0;
    for (const Section& section : sections) {
        // Each screen's statements on a store of their own, as the start-up leaves it.
        const QString folder = dir.filePath(QStringLiteral("s%1").arg(++n));
        store = std::make_unique<DataStore>(folder + QStringLiteral("/Velmora.sqlite"));
        // The start-up's own statements find a store not yet upgraded; the sample rows
        // come once the upgrade has run.
        bool filled = !section.lines.first().startsWith(QLatin1String("ALTER"));
        std::unique_ptr<ServerSide> server = compare ? std::make_unique<ServerSide>() : nullptr;
        if (server && filled)
            for (const char* sql : kUpgrade)
                server->outcome(QString::fromLatin1(sql), false, {});
        if (filled)
            upgradeAndFill();
        if (server && filled)
            server->upgradeAndCopy(store->handle());
        const QString reportPath = folder + QStringLiteral("/RPT_Velmora.sqlite");
        auto report = std::make_unique<DataStore>(reportPath, DataStore::Kind::Report);

        for (QString line : section.lines) {
            ++statements;
            if (!filled && !line.startsWith(QLatin1String("ALTER")) && !line.startsWith(QLatin1String("CREATE"))) {
                raw(sampleRows().constData());
                filled = true;
                if (server)
                    server->upgradeAndCopy(store->handle());
            }
            const bool mustFail = line.startsWith(QLatin1String("refused: "));
            const bool onReport = line.startsWith(QLatin1String("report: "));
            const bool command = line.startsWith(QLatin1String("command: "));
            if (mustFail || onReport || command)
                line = line.section(u' ', 1);
            line.replace(QLatin1String("{REPORT_STORE}"), reportPath);
            QString embedded;
            try {
                if (command) {
                    auto rs = store->Command(line.section(u'|', 0, 0), vb::Variant(line.section(u'|', 1)));
                    EXPECT_GT(rs->RecordCount(), 0) << line.toStdString();
                    embedded = rowsOf(*rs, line);
                } else {
                    Recordset rs;
                    rs.Open(line, onReport ? *report : *store);
                    if (line.startsWith(QLatin1String("SHAPE"), Qt::CaseInsensitive)) {
                        walkShape(rs);
                        ++shaped;
                    } else if (rs.isOpen()) {
                        embedded = rowsOf(rs, line);
                    }
                }
                if (mustFail)
                    failures << QStringLiteral("[%1] ran, Jet refuses it: %2").arg(section.name, line);
            } catch (const vb::VBError& e) {
                // A run-time table dropped before it was first made: the program ignores it.
                const bool missingDrop =
                    line.startsWith(QLatin1String("Drop"), Qt::CaseInsensitive) && e.number() == errors::NotFound;
                embedded = QStringLiteral("error %1 %2").arg(e.number()).arg(e.description());
                if (mustFail)
                    ++refused;
                else if (!missingDrop)
                    failures << QStringLiteral("[%1] %2 -> %3 %4")
                                    .arg(section.name, line)
                                    .arg(e.number())
                                    .arg(e.description());
            }
            // SHAPE is the recordset's own language; its inner selects are corpus lines too.
            if (server && !line.startsWith(QLatin1String("SHAPE"), Qt::CaseInsensitive)) {
                const QString jetSql = command ? parameterCommand(line.section(u'|', 0, 0)) : line;
                std::vector<vb::Variant> user;
                if (command)
                    user.emplace_back(line.section(u'|', 1));
                const QString there = server->outcome(jetSql, onReport, user);
                if (!sameRows(there, embedded))
                    serverDiffers << QStringLiteral("[%1] %2\n  embedded: %3\n  server:   %4")
                                         .arg(section.name, line, embedded.left(300), there.left(300));
            }
        }
    }
    EXPECT_TRUE(serverDiffers.isEmpty()) << serverDiffers.size() << " differ:\n"
                                         << serverDiffers.join(u'\n').toStdString();
    std::printf("Program statements covered: %d in %d sections (%d SHAPE, %d refused as Jet refuses them)\n",
                statements, int(sections.size()), shaped, refused);
    EXPECT_TRUE(failures.isEmpty()) << failures.join(u'\n').toStdString();
    EXPECT_EQ(refused, 3) << "WHERE after GROUP BY, the missing bracket, week column [0]";
}

INSTANTIATE_TEST_SUITE_P(Stores, StatementCorpusTest, ::testing::Values(false, true),
                         [](const auto& info) { return info.param ? "Server" : "Embedded"; });

} // namespace
} // namespace store::testing
