#pragma once
/// @file PlantCopy.h
/// A plant's rows from one store into another (the embedded file onto a server).

#include <QString>

#include <utility>
#include <vector>

namespace store {

class DataStore;

/// Every row of every table of the embedded store `from` into the tables of the same
/// names of `to`, whose rows are replaced, in one transaction: a failure (raised as
/// vb::VBError) leaves `to` as it was. Refused when `to` holds a plant and not replace.
/// Returns each table with the rows copied.
std::vector<std::pair<QString, qint64>> copyPlant(DataStore& from, DataStore& to, bool replace);

} // namespace store
