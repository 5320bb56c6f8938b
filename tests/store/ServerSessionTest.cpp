// The server store's connection: what a workstation is told when the server cannot be
// used, what a database holds before a plant opens on it, autonumbers taken at once, and
// the server's faults under the embedded store's numbers and texts.
#include "store/StoreErrors.h"
#include "store/jet/Jet.h"
#include "store/pg/PgSession.h"
#include "support/TestServer.h"

#include <gtest/gtest.h>

using namespace store;

namespace {

QString failureOf(const QString& uri)
{
    try {
        pg::PgSession session(uri);
    } catch (const vb::VBError& e) {
        EXPECT_EQ(e.number(), errors::Unspecified);
        return e.description();
    }
    return {};
}

QString errorOf(pg::PgSession& s, const QString& jetSql)
{
    try {
        s.run(jet::translate(jetSql, &s.schema(), jet::Dialect::Postgres));
    } catch (const vb::VBError& e) {
        return QString::number(e.number()) + u' ' + e.description();
    }
    return {};
}

TEST(ServerSession, AServerThatCannotBeUsedIsToldInItalian)
{
    EXPECT_EQ(failureOf(QStringLiteral("postgresql://nobody@/velmora?host=/nonexistent/socket/dir")),
              QStringLiteral("Impossibile connettersi al server del database: il server non risponde o non è "
                             "raggiungibile."));
    SKIP_WITHOUT_SERVER();
    EXPECT_EQ(failureOf(testserver::withDatabase(testserver::uri(), QStringLiteral("non_ce"))),
              QStringLiteral("Il database 'non_ce' non esiste sul server."));
    if (const QString wrongPassword = testserver::withWrongPassword(); !wrongPassword.isEmpty()) {
        EXPECT_EQ(failureOf(wrongPassword),
                  QStringLiteral("Accesso negato dal server del database: nome utente o password errati."));
    }
}

TEST(ServerSession, KnowsAPlantFromAnotherProgramsDatabaseAndCountsAtOnce)
{
    SKIP_WITHOUT_SERVER();
    testserver::ScratchDatabase db;
    pg::PgSession& s = db.session();
    EXPECT_EQ(s.contents(), pg::DatabaseContents::Empty);
    s.exec(QStringLiteral("CREATE TABLE fatture (n integer)"));
    EXPECT_EQ(s.contents(), pg::DatabaseContents::OtherProgram);
    s.exec(QStringLiteral("DROP TABLE fatture"));
    pg::createPostgresSchema(s);
    EXPECT_EQ(s.contents(), pg::DatabaseContents::Plant);

    // An autonumber shown by AddNew is never handed out again, nor one written by hand.
    EXPECT_EQ(s.nextCounter(QStringLiteral("Tbl_Reparto"), QStringLiteral("ID_Reparto")), 1);
    s.run(jet::translate(QStringLiteral("INSERT INTO Tbl_Reparto (Reparto) VALUES ('A')"), &s.schema(),
                         jet::Dialect::Postgres));
    s.run(jet::translate(QStringLiteral("INSERT INTO Tbl_Reparto (ID_Reparto, Reparto) VALUES (7, 'B')"), &s.schema(),
                         jet::Dialect::Postgres));
    EXPECT_EQ(s.nextCounter(QStringLiteral("Tbl_Reparto"), QStringLiteral("ID_Reparto")), 8);

    // The faults as the embedded store words them.
    EXPECT_EQ(errorOf(s, QStringLiteral("INSERT INTO Tbl_Reparto (ID_Reparto, Reparto) VALUES (7, 'C')")),
              QStringLiteral("-2147467259 Errore del motore di database: UNIQUE constraint failed: "
                             "Tbl_Reparto.ID_Reparto"));
    EXPECT_EQ(errorOf(s, QStringLiteral("SELECT X FROM Tbl_Reparto")),
              QStringLiteral("-2147217904 Parametri insufficienti. Previsto 1."));
    EXPECT_EQ(errorOf(s, QStringLiteral("CREATE TABLE T (A Text NOT NULL)")), QString());
    EXPECT_EQ(errorOf(s, QStringLiteral("INSERT INTO T (A) VALUES (Null)")),
              QStringLiteral("-2147467259 Il campo 'T.A' non può contenere un valore Null poiché la proprietà "
                             "Required di questo campo è impostata a True. Immettere un valore in questo campo."));
    EXPECT_EQ(errorOf(s, QStringLiteral("ALTER TABLE T ADD COLUMN A Text")),
              QStringLiteral("-2147467259 Il campo 'A' è già presente nella tabella."));
    EXPECT_EQ(errorOf(s, QStringLiteral("SELECT * INTO T FROM Tbl_Reparto")),
              QStringLiteral("3010 La tabella 'T' esiste già."));
    // A SELECT ... INTO whose rows fail leaves no table behind.
    EXPECT_EQ(errorOf(s, QStringLiteral("SELECT Val(Null) AS V INTO T2 FROM Tbl_Reparto")),
              QStringLiteral("94 ") + vb::VBError(94).description());
    EXPECT_EQ(s.schema().table(QStringLiteral("T2")), nullptr);
}

} // namespace
