#pragma once
// Texts kept in tests/data as the expected output of a whole document or listing: a test
// compares what it produced with the file, and VELMORA_UPDATE_GOLDEN=1 rewrites the file
// instead (review the difference before committing it).

#include <QString>

namespace golden {

/// Compares `actual` with tests/data/`name`; on a difference, a failure naming the first
/// line that differs. With VELMORA_UPDATE_GOLDEN=1 the file is written and nothing fails.
void expectMatches(const QString& name, const QString& actual);

} // namespace golden
