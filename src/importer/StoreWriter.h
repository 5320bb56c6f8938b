#pragma once
/// @file StoreWriter.h
/// Writing the tables of an old file into a new store: the store's own schema for the
/// tables it knows, the old file's columns and types for everything else.

#include "importer/MdbReader.h"

#include <QHash>
#include <QString>

#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace importer {

/// A new store file being filled, in one transaction. Every failing call leaves an
/// Italian explanation in error(); the caller then throws the file away.
class StoreWriter
{
public:
    StoreWriter() = default;
    ~StoreWriter();
    StoreWriter(const StoreWriter&) = delete;
    StoreWriter& operator=(const StoreWriter&) = delete;

    /// Opens the (new, empty) file, creates the store's schema and starts the transaction.
    bool create(const QString& path);
    /// Makes the table ready for the old file's rows: creates it if the store does not
    /// know it, adds the old file's extra columns, takes the old file's type where the
    /// two disagree on the kind of value, and empties it (seed rows included).
    bool beginTable(const MdbTableInfo& table);
    bool insert(const std::vector<MdbValue>& row);
    /// Rows now in the table, -1 on failure.
    qint64 endTable();
    /// Commits, flushes the file to disk and closes it.
    bool finish();
    /// Closes the file as it is (what was not committed is lost); false if SQLite refused.
    bool close();

    QString error() const { return m_error; }

    /// The SQLite declaration the store would give a column of the old file.
    static QString declaration(const MdbColumnInfo& column, bool asKey);

private:
    bool exec(const QString& sql);
    bool rebuild(const QString& name, const QString& storeSql, const QHash<QString, QString>& overrides);
    bool fail(const QString& what);

    sqlite3* m_db = nullptr;
    sqlite3_stmt* m_insert = nullptr;
    QString m_table;
    QString m_path;
    QString m_error;
};

} // namespace importer
