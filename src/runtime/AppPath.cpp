#include "runtime/AppPath.h"

#include <QDir>

namespace vb {

namespace {
QString& appPath()
{
    static QString path = QDir::currentPath();
    return path;
}
} // namespace

QString AppPath()
{
    return appPath();
}

void setAppPath(const QString& dir)
{
    appPath() = QDir(dir).absolutePath();
}

QString AppFile(const QString& name)
{
    return appPath() + QLatin1Char('/') + name;
}

QString SupportAddress()
{
    const QByteArray env = qgetenv("VELMORA_SUPPORT_ADDRESS");
    return env.isEmpty() ? QStringLiteral("assistenza@velmora.it") : QString::fromUtf8(env);
}

QString SupportSite()
{
    const QByteArray env = qgetenv("VELMORA_SUPPORT_SITE");
    return env.isEmpty() ? QStringLiteral("http://www.velmora.it") : QString::fromUtf8(env);
}

} // namespace vb
