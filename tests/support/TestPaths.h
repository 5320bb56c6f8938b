#pragma once
// Where the tests find their data, the old plant's files and the program itself. Kept
// out of the compile flags so that moving the clone rebuilds one file, not every test.

#include <QString>

namespace testpaths {

/// A file of tests/data.
QString data(const QString& name);
/// A file of the shared folder beside the clone (the old plant's files).
QString shared(const QString& name);
/// The program as built.
QString velmoraBinary();

} // namespace testpaths
