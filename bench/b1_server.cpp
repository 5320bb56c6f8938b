// B1 on the server store: the program's reading statements through DataStore on a
// PostgreSQL database against the same statements in the server's words, prepared once
// through libpq, every row fetched and every value read as a program would. The server
// is VELMORA_BENCH_PG (scripts/bench.sh starts a throwaway one); without it, a line says
// the run was skipped.
#include "BenchStore.h"
#include "store/Backend.h"
#include "store/PlantCopy.h"
#include "store/pg/PgSession.h"

#include <QCoreApplication>
#include <QTextStream>

#include <libpq-fe.h>

namespace {

QByteArray text(const vb::Variant& v)
{
    switch (v.type()) {
    case vb::Variant::Type::String: return v.rawString().toUtf8();
    case vb::Variant::Type::Boolean: return v.rawBool() ? "-1" : "0";
    case vb::Variant::Type::Integer:
    case vb::Variant::Type::Long: return QByteArray::number(qlonglong(v.rawLong()));
    default: return QByteArray::number(v.rawDouble(), 'g', 17);
    }
}

long readAll(PGresult* r)
{
    if (PQresultStatus(r) != PGRES_TUPLES_OK)
        std::fprintf(stderr, "baseline failed: %s", PQresultErrorMessage(r));
    const int rows = PQntuples(r), columns = PQnfields(r);
    std::vector<vb::Variant> values;
    values.reserve(size_t(columns));
    for (int i = 0; i < rows; ++i) {
        values.clear();
        for (int c = 0; c < columns; ++c) {
            if (PQgetisnull(r, i, c))
                values.emplace_back(vb::Variant::null());
            else if (const Oid t = PQftype(r, c); t == 20 || t == 21 || t == 23)
                values.emplace_back(std::int64_t(std::atoll(PQgetvalue(r, i, c))));
            else if (t == 700 || t == 701 || t == 1700)
                values.emplace_back(std::atof(PQgetvalue(r, i, c)));
            else
                values.emplace_back(QString::fromUtf8(PQgetvalue(r, i, c), PQgetlength(r, i, c)));
        }
    }
    PQclear(r);
    return rows;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QString uri = qEnvironmentVariable("VELMORA_BENCH_PG");
    if (uri.isEmpty()) {
        std::printf("B1 on the server store: skipped, no PostgreSQL server could be started\n");
        return 0;
    }
    QTemporaryDir dir;
    auto sample = bench::sampleStore(dir);
    for (int i = 0; i < 6; ++i) {
        bench::exec(sample->handle(),
                    "INSERT INTO Tbl_Ricerca (Data, ID_MODELLO, Macchina, Modello, ID_NUM, "
                    "Numerazione, ID_DESCRIZIONE_RICAMBI, Descrizione, ID_RICAMBI, Ricambi, Quantita, "
                    "Destinazione, ID_CAUSA) SELECT Data, ID_MODELLO, Macchina, Modello, ID_NUM, "
                    "Numerazione, ID_DESCRIZIONE_RICAMBI, Descrizione, ID_RICAMBI, Ricambi, Quantita, "
                    "Destinazione, ID_CAUSA FROM Tbl_Ricerca");
    }
    store::pg::PgSession raw(uri);
    raw.execScript(QStringLiteral("DROP SCHEMA IF EXISTS rpt CASCADE; DROP SCHEMA public CASCADE; CREATE SCHEMA "
                                  "public"));
    store::DataStore server(uri);
    store::copyPlant(*sample, server, true);

    QFile file(bench::testData(QStringLiteral("statements.txt")));
    file.open(QIODevice::ReadOnly | QIODevice::Text);
    QStringList usable;
    std::vector<std::vector<QByteArray>> params;
    QTextStream in(&file);
    while (!in.atEnd()) {
        const QString s = in.readLine();
        if (!s.startsWith(QLatin1String("SELECT"), Qt::CaseInsensitive) || s.contains(QLatin1String(" INTO ")))
            continue;
        try {
            server.Query(s);
        } catch (...) {
            continue;
        }
        const store::jet::Translation t = server.connection().translate(s);
        const QByteArray name = "b1_" + QByteArray::number(usable.size());
        PGresult* r = PQprepare(raw.handle(), name.constData(), t.statements.back().sql.toUtf8().constData(),
                                int(t.statements.back().params.size()), nullptr);
        const bool ok = PQresultStatus(r) == PGRES_COMMAND_OK;
        PQclear(r);
        if (!ok)
            continue;
        usable << s;
        params.emplace_back();
        for (const vb::Variant& v : t.statements.back().params)
            params.back().push_back(text(v));
    }

    const int rounds = argc > 1 ? std::max(1, QString::fromLocal8Bit(argv[1]).toInt()) : 20;
    long rowsOurs = 0, rowsRaw = 0;
    auto ours = [&] {
        for (const QString& s : std::as_const(usable))
            rowsOurs += server.Query(s)->RecordCount();
    };
    auto byHand = [&] {
        for (qsizetype i = 0; i < usable.size(); ++i) {
            std::vector<const char*> values;
            for (const QByteArray& p : params[size_t(i)])
                values.push_back(p.constData());
            const QByteArray name = "b1_" + QByteArray::number(i);
            rowsRaw += readAll(
                PQexecPrepared(raw.handle(), name.constData(), int(values.size()), values.data(), nullptr, nullptr, 0));
        }
    };
    ours();
    byHand();
    if (rowsOurs != rowsRaw) {
        std::printf("B1 on the server store: the rows read differ, %ld against %ld\n", rowsOurs, rowsRaw);
        return 1;
    }
    double tOurs = 1e300, tRaw = 1e300;
    for (int r = 0; r < rounds; ++r) {
        tOurs = std::min(tOurs, bench::bestOf(1, ours));
        tRaw = std::min(tRaw, bench::bestOf(1, byHand));
    }
    std::printf("B1 on the server store: %lld reading statements per run, best of %d runs\n",
                static_cast<long long>(usable.size()), rounds);
    std::printf("  DataStore on PostgreSQL (Jet text, recordsets): %8.2f ms\n", tOurs);
    std::printf("  libpq by hand (prepared once):                  %8.2f ms\n", tRaw);
    std::printf("  ratio: %.2fx (goal <= 1.3x)\n", tOurs / tRaw);
    return 0;
}
