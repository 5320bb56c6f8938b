#pragma once
/// @file Importer.h
/// Taking over an old Velmora.mdb: every table and every row into a new Velmora.sqlite
/// in the data folder, written aside and moved into place only once every table's row
/// count has been checked against the old file.

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

class QTextStream;

namespace importer {

/// One line of the closing table.
struct TableCount
{
    QString table;
    qint64 inOldFile = 0;
    qint64 imported = 0;
};

struct ImportRequest
{
    QString mdbPath;
    QString home;         ///< the data folder that receives Velmora.sqlite
    bool replace = false; ///< an existing store with data is kept as a dated backup
};

struct ImportResult
{
    bool ok = false;
    QString message; ///< Italian, for the user: the outcome or why nothing was done
    std::vector<TableCount> tables;
    QString storePath;
    QString backupPath; ///< "" when no store was there before
};

/// The closing table: each table's rows in the old file and rows taken over.
void printTable(QTextStream& out, const std::vector<TableCount>& tables);

/// Runs the import. progress receives one Italian line per table (and per block of rows
/// of a long table). On failure the data folder is left exactly as it was.
ImportResult importMdb(const ImportRequest& request, const std::function<void(const QString&)>& progress = {});

/// True when the store at path holds rows of the plant (anything beyond the frequency
/// kinds a new store is seeded with and the session register), or cannot be read.
bool storeHasData(const QString& path);

/// `velmora --import OLD.mdb [--home DIR] [--replace]`: args as the command line gives
/// them (the program's name first). Progress and errors go to err, the closing table to
/// out. Returns the process's exit code: 0 done, 1 nothing done, 2 wrong arguments.
int runImport(const QStringList& args, QTextStream& out, QTextStream& err);

/// True when the command line asks for an import (it holds --import).
bool wantsImport(int argc, char** argv);
/// runImport on the process's command line, standard output and standard error.
int runImport(int argc, char** argv);

} // namespace importer
