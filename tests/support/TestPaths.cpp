#include "support/TestPaths.h"

namespace testpaths {

QString data(const QString& name)
{
    return QStringLiteral(VELMORA_TEST_DATA "/") + name;
}

QString shared(const QString& name)
{
    return QStringLiteral(VELMORA_SHARED_DIR "/") + name;
}

QString velmoraBinary()
{
    return QStringLiteral(VELMORA_BINARY);
}

} // namespace testpaths
