// The importer against the old plant file of the shared fixtures and its summary
// (Velmora.json: every table, column type, row count and the first rows).
#include "importer/Importer.h"

#include "importer/StoreWriter.h"
#include "store/Schema.h"
#include "store/jet/Jet.h"
#include "support/TestPaths.h"

#include <QCryptographicHash>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTextStream>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace {

const QString FixtureDir = testpaths::shared(QStringLiteral("fixtures/legacy"));

QString fixtureMdb()
{
    return FixtureDir + QStringLiteral("/Velmora.mdb");
}

// A look at a store, values as SQLite holds them.
class Store
{
public:
    explicit Store(const QString& path)
    {
        sqlite3_open_v2(path.toUtf8().constData(), &m_db, SQLITE_OPEN_READWRITE, nullptr);
        store::jet::registerFunctions(m_db);
    }
    ~Store() { sqlite3_close(m_db); }
    sqlite3* db() const { return m_db; }

    /// Rows of a statement, each value as QVariant (null, qlonglong, double, QString).
    QList<QVariantList> rows(const QString& sql) const
    {
        QList<QVariantList> out;
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(m_db, sql.toUtf8().constData(), -1, &stmt, nullptr) != SQLITE_OK) {
            ADD_FAILURE() << sql.toStdString() << ": " << sqlite3_errmsg(m_db);
            return out;
        }
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            QVariantList row;
            for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
                switch (sqlite3_column_type(stmt, i)) {
                case SQLITE_NULL: row << QVariant(); break;
                case SQLITE_INTEGER: row << QVariant(qlonglong(sqlite3_column_int64(stmt, i))); break;
                case SQLITE_FLOAT: row << QVariant(sqlite3_column_double(stmt, i)); break;
                default: row << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, i)));
                }
            }
            out << row;
        }
        sqlite3_finalize(stmt);
        return out;
    }
    QVariant value(const QString& sql) const
    {
        const auto r = rows(sql);
        return r.isEmpty() || r.first().isEmpty() ? QVariant() : r.first().first();
    }
    QStringList columns(const QString& table) const
    {
        QStringList names;
        for (const QVariantList& r : rows(QStringLiteral("SELECT name FROM pragma_table_info('%1')").arg(table)))
            names << r.first().toString();
        return names;
    }

private:
    sqlite3* m_db = nullptr;
};

// Jet's day number of an ISO date and time.
double dayNumber(const QString& iso)
{
    const QDateTime at = QDateTime::fromString(iso, Qt::ISODate);
    return QDate(1899, 12, 30).daysTo(at.date()) + at.time().msecsSinceStartOfDay() / 86400000.0;
}

QByteArray folderState(const QString& dir)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    const auto entries = QDir(dir).entryInfoList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& f : entries) {
        hash.addData(f.fileName().toUtf8());
        QFile file(f.absoluteFilePath());
        if (file.open(QIODevice::ReadOnly))
            hash.addData(file.readAll());
    }
    return hash.result().toHex();
}

QString qi(const QString& name)
{
    return QLatin1Char('"') + name + QLatin1Char('"');
}

class ImporterTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (!QFile::exists(fixtureMdb()))
            GTEST_SKIP() << "the old plant file is not beside the clone";
        ASSERT_TRUE(m_home.isValid());
    }
    QString home() const { return m_home.path(); }
    QString storePath() const { return home() + QStringLiteral("/Velmora.sqlite"); }
    importer::ImportResult import(bool replace = false, const QString& mdb = fixtureMdb())
    {
        return importer::importMdb({mdb, home(), replace});
    }
    QJsonObject summary() const
    {
        QFile f(FixtureDir + QStringLiteral("/Velmora.json"));
        EXPECT_TRUE(f.open(QIODevice::ReadOnly));
        return QJsonDocument::fromJson(f.readAll()).object();
    }

    QTemporaryDir m_home;
};

// Every table of the summary arrives with its row count, its kinds of column and its
// sample rows value for value: dates as day numbers, text dates as the text they are,
// money and doubles with their decimals, accents and apostrophes intact, Null as Null.
TEST_F(ImporterTest, FixtureArrivesTableByTable)
{
    const importer::ImportResult result = import();
    ASSERT_TRUE(result.ok) << result.message.toStdString();
    Store store(storePath());
    const QJsonArray tables = summary().value(QStringLiteral("tables")).toArray();
    ASSERT_EQ(result.tables.size(), size_t(tables.size()));

    for (const QJsonValue& tv : tables) {
        const QJsonObject t = tv.toObject();
        const QString name = t.value(QStringLiteral("name")).toString();
        SCOPED_TRACE(name.toStdString());
        const qint64 count = t.value(QStringLiteral("row_count")).toInteger();
        EXPECT_EQ(store.value(QStringLiteral("SELECT COUNT(*) FROM %1").arg(qi(name))).toLongLong(), count);
        const auto line = std::find_if(result.tables.begin(), result.tables.end(),
                                       [&](const importer::TableCount& c) { return c.table == name; });
        ASSERT_NE(line, result.tables.end());
        EXPECT_EQ(line->inOldFile, count);
        EXPECT_EQ(line->imported, count);

        QHash<QString, QString> types;
        for (const QJsonValue& cv : t.value(QStringLiteral("columns")).toArray()) {
            const QString col = cv.toObject().value(QStringLiteral("name")).toString();
            const QString type = cv.toObject().value(QStringLiteral("type")).toString();
            types.insert(col, type);
            const store::ColumnType have = store::columnType(store.db(), name, col);
            SCOPED_TRACE(col.toStdString());
            if (type == QLatin1String("SHORT_DATE_TIME"))
                EXPECT_EQ(have, store::ColumnType::Date);
            else if (type == QLatin1String("TEXT") || type == QLatin1String("MEMO"))
                EXPECT_TRUE(store::isTextType(have));
            else
                EXPECT_TRUE(store::isNumberType(have));
        }

        // Samples are the first rows in the old file's order: found by key, or by the
        // order of arrival where the table has none.
        const QString key = t.value(QStringLiteral("primary_key")).toString();
        const QJsonArray samples = t.value(QStringLiteral("sample_rows")).toArray();
        for (int i = 0; i < samples.size(); ++i) {
            const QJsonObject sample = samples.at(i).toObject();
            const QString where =
                key.isEmpty() ? QStringLiteral("rowid = (SELECT rowid FROM %1 ORDER BY rowid LIMIT 1 OFFSET %2)")
                                    .arg(qi(name))
                                    .arg(i)
                              : QStringLiteral("%1 = %2").arg(qi(key)).arg(sample.value(key).toInteger());
            for (auto it = types.cbegin(); it != types.cend(); ++it) {
                SCOPED_TRACE((it.key() + QLatin1Char(' ') + QString::number(i)).toStdString());
                const QVariant got =
                    store.value(QStringLiteral("SELECT %1 FROM %2 WHERE %3").arg(qi(it.key()), qi(name), where));
                const QJsonValue want = sample.value(it.key());
                if (want.isUndefined() || want.isNull()) {
                    EXPECT_FALSE(got.isValid()) << got.toString().toStdString();
                } else if (it.value() == QLatin1String("SHORT_DATE_TIME")) {
                    EXPECT_NEAR(got.toDouble(), dayNumber(want.toString()), 1e-9);
                } else if (want.isString()) {
                    const QString text = want.toString();
                    // Samples cut long texts at 300 characters; the store has them whole.
                    if (text.size() >= 300)
                        EXPECT_TRUE(got.toString().startsWith(text));
                    else
                        EXPECT_EQ(got.toString(), text);
                } else {
                    EXPECT_DOUBLE_EQ(got.toDouble(), want.toDouble());
                }
            }
        }
    }
}

// The cases the old file was made to hold, said in words.
TEST_F(ImporterTest, PlantedCasesSurvive)
{
    ASSERT_TRUE(import().ok);
    Store store(storePath());
    const std::pair<const char*, QVariant> cases[] = {
        // An operator still in service has no end date: Null, not 0 and not "".
        {"SELECT Fine_Rapp FROM Tbl_Operatore WHERE ID_OPERATORE = 5", QVariant()},
        // The operators' dates are text in the old file and stay the text they were.
        {"SELECT Data_Nascita FROM Tbl_Operatore WHERE ID_OPERATORE = 3", QStringLiteral("23/07/1968")},
        {"SELECT Operatore FROM Tbl_Operatore WHERE ID_OPERATORE = 3", QStringLiteral("Niccolò D'Angelo")},
        // The stopped machines: the next date is pushed back beyond the plain interval.
        {"SELECT Prossima - Ultima - 7 * Frequenza_Sett FROM Tbl_Maintenance WHERE ID = 16", 12.0},
        {"SELECT Prossima - Ultima - 7 * Frequenza_Sett FROM Tbl_Maintenance WHERE ID = 25", 6.0},
        // The frequency kinds are the plant's own, not the seed of a new store.
        {"SELECT COUNT(*) FROM Tbl_Maint_Tipo", 7.0},
        {"SELECT Koeff_Settimanale FROM Tbl_Maint_Tipo WHERE ID_MAINT_TIPO = 4", 0.0769},
        // Currency keeps its cents; session times keep their seconds.
        {"SELECT Costo FROM Tbl_Descrizione_Ricambi WHERE ID_DESCRIZIONE_RICAMBI = 2", 7.45},
        {"SELECT Date_Open FROM Tbl_Register ORDER BY rowid LIMIT 1", dayNumber(QStringLiteral("2026-11-16T07:27:34"))},
    };
    for (const auto& [sql, want] : cases) {
        const QVariant got = store.value(QString::fromUtf8(sql));
        if (!want.isValid())
            EXPECT_FALSE(got.isValid()) << sql;
        else if (want.typeId() == QMetaType::Double)
            EXPECT_NEAR(got.toDouble(), want.toDouble(), 1e-9) << sql;
        else
            EXPECT_EQ(got.toString(), want.toString()) << sql;
    }
    // A line evaded after the import, whose INSERT does not name the arrival column, waits
    // under its default: the receiving of goods looks for that literal.
    ASSERT_EQ(sqlite3_exec(store.db(), "INSERT INTO Tbl_Historian_Orders (Ricambi) VALUES ('nuovo')", nullptr, nullptr,
                           nullptr),
              SQLITE_OK);
    EXPECT_EQ(store.value(QStringLiteral("SELECT Data_Ricevuto FROM Tbl_Historian_Orders WHERE Ricambi = 'nuovo'"))
                  .toString(),
              QStringLiteral("Non Ricevuto"));
}

// The old file predates the start-up upgrade and arrives as it is: the upgrade's
// columns and sheet table are left for the program's first start to add. Autonumbers
// go on above the highest imported key, and text columns compare as Jet's do.
TEST_F(ImporterTest, OldFileArrivesAsItIs)
{
    ASSERT_TRUE(import().ok);
    Store store(storePath());
    EXPECT_FALSE(store.columns(QStringLiteral("Tbl_Ricerca")).contains(QStringLiteral("Images")));
    EXPECT_FALSE(store.columns(QStringLiteral("Tbl_Maintenance_Note")).contains(QStringLiteral("Tipo_Nota")));
    EXPECT_FALSE(
        store.value(QStringLiteral("SELECT 1 FROM sqlite_master WHERE name = 'Tbl_Certif_Proced_Manut'")).isValid());

    for (const QString& table : {QStringLiteral("Tbl_Reparto"), QStringLiteral("Tbl_Causa_Intervento")}) {
        const QString key =
            table == QLatin1String("Tbl_Reparto") ? QStringLiteral("ID_Reparto") : QStringLiteral("ID_CAUSA");
        const qlonglong highest = store.value(QStringLiteral("SELECT MAX(%1) FROM %2").arg(key, table)).toLongLong();
        const QString textColumn =
            table == QLatin1String("Tbl_Reparto") ? QStringLiteral("Reparto") : QStringLiteral("Causa_Interv");
        ASSERT_EQ(sqlite3_exec(store.db(),
                               QStringLiteral("INSERT INTO %1 (%2) VALUES ('nuovo')").arg(table, textColumn).toUtf8(),
                               nullptr, nullptr, nullptr),
                  SQLITE_OK);
        EXPECT_EQ(store.value(QStringLiteral("SELECT MAX(%1) FROM %2").arg(key, table)).toLongLong(), highest + 1);
    }
    EXPECT_TRUE(store.value(QStringLiteral("SELECT sql FROM sqlite_master WHERE name = 'Tbl_Operatore'"))
                    .toString()
                    .contains(QStringLiteral("COLLATE JET")));
}

// Columns and tables the store does not know come as the old file declares them: text
// with Jet's collation, dates as DATE, an autonumber as the key that goes on counting.
// Where the old file and the store disagree on the kind of a column, the old file wins.
TEST(StoreWriterTest, UnknownTablesAndColumnsFollowTheOldFile)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("new.sqlite"));
    using importer::JetType;
    importer::StoreWriter writer;
    ASSERT_TRUE(writer.create(path)) << writer.error().toStdString();

    importer::MdbTableInfo extra{QStringLiteral("Tbl_Attrezzi"),
                                 {{QStringLiteral("ID_ATTREZZO"), JetType::Long, 0, 0, 0, true},
                                  {QStringLiteral("Nome"), JetType::Text, 40},
                                  {QStringLiteral("Acquisto"), JetType::DateTime},
                                  {QStringLiteral("Tarato"), JetType::Boolean},
                                  {QStringLiteral("Prezzo"), JetType::Currency},
                                  {QStringLiteral("Note"), JetType::Memo}},
                                 2};
    ASSERT_TRUE(writer.beginTable(extra)) << writer.error().toStdString();
    auto text = [](const char* s) { return importer::MdbValue{importer::MdbValue::Text, 0, 0, QByteArray(s)}; };
    auto integer = [](qint64 i) { return importer::MdbValue{importer::MdbValue::Integer, i, 0, {}}; };
    auto real = [](double d) { return importer::MdbValue{importer::MdbValue::Real, 0, d, {}}; };
    ASSERT_TRUE(writer.insert({integer(7), text("Chiave dinamometrica “Stahl”"), real(45000.5), integer(-1),
                               real(129.9), text("Tarata l'anno scorso")}));
    ASSERT_TRUE(writer.insert({integer(12), text("Calibro"), {}, integer(0), {}, {}}));
    EXPECT_EQ(writer.endTable(), 2);

    importer::MdbTableInfo reparto{QStringLiteral("TBL_REPARTO"),
                                   {{QStringLiteral("ID_Reparto"), JetType::Long, 0, 0, 0, true},
                                    {QStringLiteral("Reparto"), JetType::Text, 255},
                                    {QStringLiteral("Responsabile"), JetType::Text, 50}},
                                   1};
    ASSERT_TRUE(writer.beginTable(reparto)) << writer.error().toStdString();
    ASSERT_TRUE(writer.insert({integer(3), text("Officina"), text("Bianchi")}));
    EXPECT_EQ(writer.endTable(), 1);

    // An old file whose Avvisa is a Yes/No column, where the store has text.
    importer::MdbTableInfo note{
        QStringLiteral("Tbl_Maintenance_Note"),
        {{QStringLiteral("ID"), JetType::Long, 0, 0, 0, true}, {QStringLiteral("Avvisa"), JetType::Boolean}},
        1};
    ASSERT_TRUE(writer.beginTable(note)) << writer.error().toStdString();
    ASSERT_TRUE(writer.insert({integer(4), integer(-1)}));
    EXPECT_EQ(writer.endTable(), 1);

    // An old file whose arrival column is a long text: the rebuilt table keeps its default.
    importer::MdbTableInfo orders{QStringLiteral("Tbl_Historian_Orders"),
                                  {{QStringLiteral("ID_Historian_Orders"), JetType::Long, 0, 0, 0, true},
                                   {QStringLiteral("Data_Ricevuto"), JetType::Memo}},
                                  0};
    ASSERT_TRUE(writer.beginTable(orders)) << writer.error().toStdString();
    EXPECT_EQ(writer.endTable(), 0);
    ASSERT_TRUE(writer.finish()) << writer.error().toStdString();

    Store store(path);
    using store::ColumnType;
    const std::tuple<const char*, const char*, ColumnType> types[] = {
        {"Tbl_Attrezzi", "ID_ATTREZZO", ColumnType::Counter},
        {"Tbl_Attrezzi", "Nome", ColumnType::Text},
        {"Tbl_Attrezzi", "Acquisto", ColumnType::Date},
        {"Tbl_Attrezzi", "Tarato", ColumnType::Boolean},
        {"Tbl_Attrezzi", "Note", ColumnType::Memo},
        {"Tbl_Maintenance_Note", "Avvisa", ColumnType::Boolean},
        // The rebuilt tables keep the store's key and their other columns.
        {"Tbl_Maintenance_Note", "ID", ColumnType::Counter},
        {"Tbl_Maintenance_Note", "NOTE", ColumnType::Memo},
        {"Tbl_Historian_Orders", "Data_Ricevuto", ColumnType::Memo},
    };
    for (const auto& [table, column, type] : types)
        EXPECT_EQ(store::columnType(store.db(), QString::fromUtf8(table), QString::fromUtf8(column)), type)
            << table << "." << column;
    const QString ddl =
        store.value(QStringLiteral("SELECT sql FROM sqlite_master WHERE name = 'Tbl_Attrezzi'")).toString();
    EXPECT_TRUE(ddl.contains(QStringLiteral("\"Nome\" VARCHAR(40) COLLATE JET"))) << ddl.toStdString();
    EXPECT_EQ(
        store.rows(QStringLiteral("SELECT Nome, Acquisto, Tarato, Prezzo FROM Tbl_Attrezzi WHERE ID_ATTREZZO = 7")),
        (QList<QVariantList>{{QStringLiteral("Chiave dinamometrica “Stahl”"), 45000.5, qlonglong(-1), 129.9}}));
    ASSERT_EQ(sqlite3_exec(store.db(), "INSERT INTO Tbl_Attrezzi (Nome) VALUES ('Nuovo')", nullptr, nullptr, nullptr),
              SQLITE_OK);
    EXPECT_EQ(store.value(QStringLiteral("SELECT MAX(ID_ATTREZZO) FROM Tbl_Attrezzi")).toLongLong(), 13);

    EXPECT_EQ(store.value(QStringLiteral("SELECT Responsabile FROM Tbl_Reparto WHERE ID_Reparto = 3")).toString(),
              QStringLiteral("Bianchi"));
    ASSERT_EQ(
        sqlite3_exec(store.db(), "INSERT INTO Tbl_Historian_Orders (Ricambi) VALUES ('x')", nullptr, nullptr, nullptr),
        SQLITE_OK);
    EXPECT_EQ(store.value(QStringLiteral("SELECT Data_Ricevuto FROM Tbl_Historian_Orders")).toString(),
              QStringLiteral("Non Ricevuto"));
}

// A store with the plant's data is never overwritten without --replace; with it, the
// old store is kept beside the new one as a dated copy, byte for byte.
TEST_F(ImporterTest, ExistingStoreIsRefusedOrKeptAsBackup)
{
    ASSERT_TRUE(import().ok);
    {
        Store store(storePath());
        ASSERT_EQ(sqlite3_exec(store.db(), "INSERT INTO Tbl_Reparto (Reparto) VALUES ('Solo qui')", nullptr, nullptr,
                               nullptr),
                  SQLITE_OK);
    }
    const QByteArray before = folderState(home());
    QFile old(storePath());
    ASSERT_TRUE(old.open(QIODevice::ReadOnly));
    const QByteArray oldBytes = old.readAll();
    old.close();

    const importer::ImportResult refused = import();
    EXPECT_FALSE(refused.ok);
    EXPECT_TRUE(refused.message.contains(QStringLiteral("--replace"))) << refused.message.toStdString();
    EXPECT_EQ(folderState(home()), before);

    const importer::ImportResult replaced = import(true);
    ASSERT_TRUE(replaced.ok) << replaced.message.toStdString();
    ASSERT_FALSE(replaced.backupPath.isEmpty());
    EXPECT_TRUE(QFileInfo(replaced.backupPath).fileName().startsWith(QStringLiteral("Velmora-")));
    QFile backup(replaced.backupPath);
    ASSERT_TRUE(backup.open(QIODevice::ReadOnly));
    EXPECT_EQ(backup.readAll(), oldBytes);
    Store store(storePath());
    EXPECT_EQ(store.value(QStringLiteral("SELECT COUNT(*) FROM Tbl_Reparto WHERE Reparto = 'Solo qui'")).toInt(), 0);
    EXPECT_EQ(QDir(home()).entryList(QDir::Files).size(), 2);
}

// A store the program made but nobody filled is no obstacle; it is still kept aside.
TEST_F(ImporterTest, EmptyStoreGivesWay)
{
    {
        sqlite3* db = nullptr;
        ASSERT_EQ(sqlite3_open(storePath().toUtf8().constData(), &db), SQLITE_OK);
        store::createSchema(db);
        sqlite3_close(db);
    }
    EXPECT_FALSE(importer::storeHasData(storePath()));
    const importer::ImportResult result = import();
    ASSERT_TRUE(result.ok) << result.message.toStdString();
    EXPECT_TRUE(QFile::exists(result.backupPath));
}

// A file that is not an old Velmora.mdb, or is cut short, is refused with a message and
// leaves the data folder as it was: no store, no temporary file, no folder created.
TEST_F(ImporterTest, BadOldFilesLeaveNothingBehind)
{
    QTemporaryDir sources;
    const QString text = sources.filePath(QStringLiteral("Velmora.mdb"));
    {
        QFile f(text);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("ID;Reparto\n1;Stampaggio\n");
    }
    QFile fixture(fixtureMdb());
    ASSERT_TRUE(fixture.open(QIODevice::ReadOnly));
    const QByteArray whole = fixture.readAll();
    auto cutAt = [&](qint64 size) {
        const QString path = sources.filePath(QStringLiteral("cut-%1.mdb").arg(size));
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(whole.left(size));
        return path;
    };

    struct Case
    {
        QString file;
        QString says;
    };
    const Case cases[] = {
        {sources.filePath(QStringLiteral("assente.mdb")), QStringLiteral("non esiste")},
        {text, QStringLiteral("non è un database Access")},
        {cutAt(100000), QStringLiteral("danneggiato")},                         // not a whole number of pages
        {cutAt(whole.size() / 2 / 4096 * 4096), QStringLiteral("danneggiato")}, // whole pages, half the file
    };
    const QString before = QString::fromLatin1(folderState(home()));
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file.toStdString());
        const importer::ImportResult result = import(false, c.file);
        EXPECT_FALSE(result.ok);
        EXPECT_TRUE(result.message.contains(c.says)) << result.message.toStdString();
        EXPECT_EQ(QString::fromLatin1(folderState(home())), before);

        const QString unborn = home() + QStringLiteral("/nuova");
        EXPECT_FALSE(importer::importMdb({c.file, unborn, false}).ok);
        EXPECT_FALSE(QFileInfo::exists(unborn));
    }
}

// The command line: arguments, the progress on the error stream, the closing table.
TEST_F(ImporterTest, CommandLine)
{
    QString out, err;
    QTextStream o(&out), e(&err);
    EXPECT_EQ(importer::runImport({QStringLiteral("velmora"), QStringLiteral("--import")}, o, e), 2);
    EXPECT_TRUE(err.contains(QStringLiteral("Uso: velmora --import")));
    err.clear();
    EXPECT_EQ(
        importer::runImport(
            {QStringLiteral("velmora"), QStringLiteral("--import"), fixtureMdb(), QStringLiteral("--colore")}, o, e),
        2);
    err.clear();

    ASSERT_EQ(importer::runImport({QStringLiteral("velmora"), QStringLiteral("--import"), fixtureMdb(),
                                   QStringLiteral("--home"), home()},
                                  o, e),
              0)
        << err.toStdString();
    EXPECT_TRUE(err.contains(QStringLiteral("Tbl_Numerazione: 33 righe...")));
    const QStringList lines = out.split(QLatin1Char('\n'));
    EXPECT_TRUE(lines.first().startsWith(QStringLiteral("Tabella")));
    EXPECT_TRUE(lines.first().contains(QStringLiteral("Righe nel file  Righe importate")));
    const auto numerazione = std::find_if(
        lines.begin(), lines.end(), [](const QString& l) { return l.startsWith(QStringLiteral("Tbl_Numerazione ")); });
    ASSERT_NE(numerazione, lines.end()) << out.toStdString();
    EXPECT_EQ(numerazione->simplified(), QStringLiteral("Tbl_Numerazione 33 33"));
    EXPECT_TRUE(out.contains(QStringLiteral("Importazione completata: 25 tabelle")));

    out.clear();
    err.clear();
    EXPECT_EQ(importer::runImport({QStringLiteral("velmora"), QStringLiteral("--import"), fixtureMdb(),
                                   QStringLiteral("--home"), home()},
                                  o, e),
              1);
    EXPECT_TRUE(out.isEmpty());
    EXPECT_TRUE(err.contains(QStringLiteral("esiste già")));
}

} // namespace
