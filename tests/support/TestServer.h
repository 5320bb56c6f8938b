#pragma once
// The PostgreSQL server the server store's tests run on: VELMORA_TEST_PG (a libpq URI),
// else the throwaway cluster CTest starts (scripts/pg-cluster.sh, its URI in the file
// VELMORA_TEST_PG_FILE, by default build/pg-test/uri). Each ScratchDatabase is a new database, dropped afterwards.

#include "store/pg/PgSession.h"

#include <QString>

#include <memory>

namespace testserver {

/// The server's URI, "" when none is there.
QString uri();

/// The same URI with another database.
QString withDatabase(const QString& uri, const QString& database);

/// The server's URI for the one role that must give a password, with a wrong one; "" when
/// the server is not the throwaway cluster on its socket, which alone has that role.
QString withWrongPassword();

/// A new, empty database on the test server and a session on it.
class ScratchDatabase
{
public:
    ScratchDatabase();
    ~ScratchDatabase();
    store::pg::PgSession& session() { return *m_session; }
    const QString& uri() const { return m_uri; }

private:
    QString m_name;
    QString m_uri;
    std::unique_ptr<store::pg::PgSession> m_session;
};

} // namespace testserver

/// Skips a test that needs the server when none could be started.
#define SKIP_WITHOUT_SERVER()                                                                                          \
    if (testserver::uri().isEmpty())                                                                                   \
    GTEST_SKIP()                                                                                                       \
        << "no PostgreSQL server for the server store (scripts/pg-cluster.sh start DIR, or VELMORA_TEST_PG=URI)"
