#include "store/StoreErrors.h"

#include <QRegularExpression>

#include <sqlite3.h>

namespace store::errors {

using vb::VBError;

VBError fromSqliteMessage(const QString& message);

namespace {

/// The name SQLite quotes after a prefix ("no such table: main.T" gives "T").
QString nameAfter(const QString& message, QLatin1String prefix)
{
    QString name = message.mid(message.indexOf(prefix) + prefix.size()).trimmed();
    const qsizetype dot = name.indexOf(u'.');
    if (name.startsWith(QLatin1String("main.")) || name.startsWith(QLatin1String("jet_in.")))
        name = name.mid(dot + 1);
    return name;
}

} // namespace

VBError fromSqlite(sqlite3* db)
{
    return fromSqliteMessage(QString::fromUtf8(sqlite3_errmsg(db)));
}

namespace {
/// The first "quoted" name of a server message.
QString quoted(const QString& message, int which = 0)
{
    static const QRegularExpression re(QStringLiteral("\"([^\"]*)\""));
    auto it = re.globalMatch(message);
    for (int i = 0; it.hasNext(); ++i) {
        const auto m = it.next();
        if (i == which)
            return m.captured(1);
    }
    return {};
}
} // namespace

VBError fromPostgres(const QString& sqlState, const QString& message, const QString& detail)
{
    if (auto raised = jet::errorFromMessage(message))
        return raised->description().isEmpty() ? VBError(raised->number()) : *raised;
    // Each server fault worded as SQLite words it, so that both stores give one text.
    if (sqlState == QLatin1String("42P01"))
        return fromSqliteMessage(QStringLiteral("no such table: ") + quoted(message));
    if (sqlState == QLatin1String("42703"))
        return fromSqliteMessage(QStringLiteral("no such column: ") + quoted(message));
    if (sqlState == QLatin1String("42P07"))
        return tableExists(quoted(message));
    if (sqlState == QLatin1String("42701"))
        return fromSqliteMessage(QStringLiteral("duplicate column name: ") + quoted(message));
    if (sqlState == QLatin1String("23502"))
        return fromSqliteMessage(
            QStringLiteral("NOT NULL constraint failed: %1.%2").arg(quoted(message, 1), quoted(message)));
    if (sqlState == QLatin1String("23505")) {
        static const QRegularExpression key(QStringLiteral("^Key \\(\"?([^)\"]*)\"?\\)"));
        return fromSqliteMessage(
            QStringLiteral("UNIQUE constraint failed: %1.%2")
                .arg(message.section(u'"', 1, 1).section(u'_', 0, -2), key.match(detail).captured(1)));
    }
    if (sqlState == QLatin1String("42601"))
        return fromSqliteMessage(QStringLiteral("syntax error"));
    if (sqlState == QLatin1String("42804") || sqlState == QLatin1String("42883") || sqlState == QLatin1String("22P02"))
        return fromSqliteMessage(QStringLiteral("datatype mismatch"));
    if (sqlState == QLatin1String("55P03") || sqlState == QLatin1String("40P01") || sqlState == QLatin1String("57014"))
        return fromSqliteMessage(QStringLiteral("database is locked"));
    return fromSqliteMessage(message);
}

VBError fromSqliteMessage(const QString& message)
{
    if (auto raised = jet::errorFromMessage(message))
        return *raised;
    if (message.startsWith(QLatin1String("no such table:")))
        return VBError(NotFound, QStringLiteral("Impossibile trovare la tabella o la query di input '%1'. Verificare "
                                                "che esista e che il nome sia stato digitato correttamente.")
                                     .arg(nameAfter(message, QLatin1String("no such table:"))));
    // Jet takes a name it does not know for a parameter left without a value.
    if (message.startsWith(QLatin1String("no such column:")))
        return VBError(TooFewParameters, QStringLiteral("Parametri insufficienti. Previsto 1."));
    static const QRegularExpression exists(QStringLiteral("^table (\\S+) already exists"));
    if (const auto m = exists.match(message); m.hasMatch())
        return tableExists(nameAfter(m.captured(1), QLatin1String("")).remove(u'"'));
    if (message.startsWith(QLatin1String("duplicate column name:")))
        return VBError(Unspecified, QStringLiteral("Il campo '%1' è già presente nella tabella.")
                                        .arg(nameAfter(message, QLatin1String("duplicate column name:"))));
    if (message.startsWith(QLatin1String("NOT NULL constraint failed:")))
        return VBError(Unspecified,
                       QStringLiteral("Il campo '%1' non può contenere un valore Null poiché la proprietà Required di "
                                      "questo campo è impostata a True. Immettere un valore in questo campo.")
                           .arg(nameAfter(message, QLatin1String("NOT NULL constraint failed:"))));
    if (message.contains(QLatin1String("syntax error")) || message.startsWith(QLatin1String("near ")))
        return VBError(vb::err::SyntaxError, QStringLiteral("Errore di sintassi nell'istruzione SQL."));
    if (message.contains(QLatin1String("datatype mismatch")))
        return VBError(TypeMismatchInCriteria,
                       QStringLiteral("Tipo di dati non corrispondente nell'espressione criterio."));
    // A store that cannot be written answers as a locked one: Jet's text names both.
    if (message.startsWith(QLatin1String("database is locked")) || message.contains(QLatin1String("busy")) ||
        message.contains(QLatin1String("readonly database")))
        return VBError(Unspecified, QStringLiteral("Impossibile aggiornare. Database o oggetto di sola lettura o "
                                                   "bloccato da un altro utente."));
    return VBError(Unspecified, QStringLiteral("Errore del motore di database: %1").arg(message));
}

VBError tableExists(const QString& table)
{
    return VBError(vb::err::TableExists, QStringLiteral("La tabella '%1' esiste già.").arg(table));
}

VBError forStatement(const VBError& e, jet::StatementKind kind)
{
    if (kind == jet::StatementKind::DropTable && e.number() == NotFound) {
        const qsizetype start = e.description().indexOf(u'\'');
        const qsizetype end = e.description().indexOf(u'\'', start + 1);
        return VBError(
            NotFound,
            QStringLiteral("La tabella '%1' non esiste.").arg(e.description().mid(start + 1, end - start - 1)));
    }
    return e;
}

} // namespace store::errors
