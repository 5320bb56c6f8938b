#include "store/Batch.h"

#include <QtGlobal>

#include <sqlite3.h>

namespace store {

Batch::Batch(DataStore& store)
{
    sqlite3* db = store.handle();
    if (!db || !sqlite3_get_autocommit(db))
        return;
    // The write lock is taken now, without waiting: a store busy elsewhere keeps the old
    // way, where each statement waits for the lock and reports it on its own.
    sqlite3_busy_timeout(db, 0);
    if (sqlite3_exec(db, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr) == SQLITE_OK)
        m_db = db;
    sqlite3_busy_timeout(db, LockWaitMs);
}

Batch::~Batch()
{
    // A disk error may already have undone the transaction; there is nothing left to end.
    if (!m_db || sqlite3_get_autocommit(m_db))
        return;
    if (sqlite3_exec(m_db, "COMMIT", nullptr, nullptr, nullptr) != SQLITE_OK) {
        qWarning("store: a batch of writes could not be committed: %s", sqlite3_errmsg(m_db));
        sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
    }
}

} // namespace store
