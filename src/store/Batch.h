#pragma once
/// @file Batch.h
/// A loop that writes one row at a time runs its statements as one commit: with the store
/// synchronised to the disk at every commit, that is the difference between one wait for
/// the disk and one per row.

#include "store/DataStore.h"

namespace store {

/// Opens a transaction on the store for the life of the object and commits whatever ran,
/// also when an error leaves the loop. A statement that fails inside it undoes only
/// itself, so the rows written before it stay written, as they did with a commit a row.
/// Nested batches, and a store that another program holds for writing or that is read
/// only, run as before: each statement commits on its own.
class Batch
{
public:
    explicit Batch(DataStore& store = DataStore::instance());
    ~Batch();
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;

private:
    sqlite3* m_db = nullptr; ///< set while this batch owns an open transaction
};

} // namespace store
