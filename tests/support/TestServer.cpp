#include "support/TestServer.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>

namespace testserver {

QString uri()
{
    static const QString found = [] {
        const QString set = qEnvironmentVariable("VELMORA_TEST_PG");
        if (!set.isEmpty())
            return set;
        QString path = qEnvironmentVariable("VELMORA_TEST_PG_FILE");
        if (path.isEmpty())
            path = QStringLiteral(VELMORA_TEST_PG_FILE);
        QFile file(path);
        if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly))
            return QString();
        return QString::fromUtf8(file.readAll()).trimmed();
    }();
    return found;
}

QString withDatabase(const QString& uri, const QString& database)
{
    const qsizetype authority = uri.indexOf(QLatin1String("://")) + 3;
    qsizetype path = uri.indexOf(u'/', authority);
    const qsizetype query = uri.indexOf(u'?', authority);
    if (path < 0 || (query >= 0 && path > query))
        path = query < 0 ? uri.size() : query;
    const qsizetype end = query < 0 ? uri.size() : query;
    return uri.left(path) + u'/' + database + uri.mid(end);
}

QString withWrongPassword()
{
    QString refused = uri();
    if (!refused.startsWith(QLatin1String("postgresql://")) || !refused.contains(QLatin1String("?host=/")))
        return {};
    return refused.replace(QRegularExpression(QStringLiteral("^postgresql://[^@]*@")),
                           QStringLiteral("postgresql://velmora_pw:sbagliata@"));
}

ScratchDatabase::ScratchDatabase()
{
    static int counter = 0;
    m_name = QStringLiteral("velmora_t%1_%2").arg(QCoreApplication::applicationPid()).arg(++counter);
    store::pg::PgSession admin(testserver::uri());
    admin.exec(QStringLiteral("DROP DATABASE IF EXISTS %1").arg(m_name));
    admin.exec(QStringLiteral("CREATE DATABASE %1").arg(m_name));
    m_uri = withDatabase(testserver::uri(), m_name);
    m_session = std::make_unique<store::pg::PgSession>(m_uri);
}

ScratchDatabase::~ScratchDatabase()
{
    m_session.reset();
    try {
        store::pg::PgSession admin(testserver::uri());
        admin.exec(QStringLiteral("DROP DATABASE IF EXISTS %1 WITH (FORCE)").arg(m_name));
    } catch (...) {
        // a database left behind goes with the throwaway cluster
    }
}

} // namespace testserver
