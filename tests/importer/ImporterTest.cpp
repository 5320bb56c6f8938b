// The importer against the old plant file and its summary (Velmora.json: every table,
// column type, row count and the first rows).
#include "importer/Importer.h"

#include "importer/StoreWriter.h"
#include "store/Schema.h"
#include "store/jet/Jet.h"
#include "support/TestPaths.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTextStream>

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

namespace {

const QString FixtureDir = testpaths::shared("fixtures/legacy");

const QString FixtureMdb = FixtureDir + "/Velmora.mdb";

// A look at a store, values as SQLite holds them.
class Store
{
public:
    explicit Store(const QString& path)
    {
        sqlite3_open_v2(path.toUtf8().constData(), &m_db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
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
    bool exec(const QString& sql) const
    {
        return sqlite3_exec(m_db, sql.toUtf8(), nullptr, nullptr, nullptr) == SQLITE_OK;
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

QByteArray bytesOf(const QString& path)
{
    QFile f(path);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << path.toStdString();
    return f.readAll();
}

QString written(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    EXPECT_TRUE(f.open(QIODevice::WriteOnly)) << path.toStdString();
    f.write(bytes);
    return path;
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
        if (!QFile::exists(FixtureMdb))
            GTEST_SKIP() << "the old plant file is not beside the clone";
        ASSERT_TRUE(m_home.isValid());
    }
    QString home() const { return m_home.path(); }
    QString storePath() const { return home() + "/Velmora.sqlite"; }
    importer::ImportResult import(bool replace = false, const QString& mdb = FixtureMdb)
    {
        return importer::importMdb({mdb, home(), replace});
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
    const QJsonArray tables =
        QJsonDocument::fromJson(bytesOf(FixtureDir + "/Velmora.json")).object().value("tables").toArray();
    ASSERT_EQ(result.tables.size(), size_t(tables.size()));

    for (const QJsonValue& tv : tables) {
        const QJsonObject t = tv.toObject();
        const QString name = t.value("name").toString();
        SCOPED_TRACE(name.toStdString());
        const qint64 count = t.value("row_count").toInteger();
        EXPECT_EQ(store.value(QStringLiteral("SELECT COUNT(*) FROM %1").arg(qi(name))).toLongLong(), count);
        const auto line = std::find_if(result.tables.begin(), result.tables.end(),
                                       [&](const importer::TableCount& c) { return c.table == name; });
        ASSERT_NE(line, result.tables.end());
        EXPECT_EQ(std::pair(line->inOldFile, line->imported), std::pair(count, count));

        QHash<QString, QString> types;
        for (const QJsonValue& cv : t.value("columns").toArray()) {
            const QString col = cv.toObject().value("name").toString();
            const QString type = cv.toObject().value("type").toString();
            types.insert(col, type);
            const store::ColumnType have = store::columnType(store.db(), name, col);
            EXPECT_TRUE(type == "SHORT_DATE_TIME"          ? have == store::ColumnType::Date
                        : type == "TEXT" || type == "MEMO" ? store::isTextType(have)
                                                           : store::isNumberType(have))
                << col.toStdString() << " " << type.toStdString();
        }

        // Samples are the first rows in the old file's order: found by key, or by the
        // order of arrival where the table has none.
        const QString key = t.value("primary_key").toString();
        const QJsonArray samples = t.value("sample_rows").toArray();
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
                    // Samples cut long texts at 300 characters; the store has them whole.
                    const QString text = want.toString();
                    EXPECT_TRUE(text.size() >= 300 ? got.toString().startsWith(text) : got.toString() == text)
                        << got.toString().toStdString();
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
        {"SELECT Data_Nascita FROM Tbl_Operatore WHERE ID_OPERATORE = 3", "23/07/1968"},
        {"SELECT Operatore FROM Tbl_Operatore WHERE ID_OPERATORE = 3", "Niccolò D'Angelo"},
        // The stopped machines: the next date is pushed back beyond the plain interval.
        {"SELECT Prossima - Ultima - 7 * Frequenza_Sett FROM Tbl_Maintenance WHERE ID = 16", 12.0},
        {"SELECT Prossima - Ultima - 7 * Frequenza_Sett FROM Tbl_Maintenance WHERE ID = 25", 6.0},
        // The frequency kinds are the plant's own, not the seed of a new store.
        {"SELECT COUNT(*) FROM Tbl_Maint_Tipo", 7.0},
        {"SELECT Koeff_Settimanale FROM Tbl_Maint_Tipo WHERE ID_MAINT_TIPO = 4", 0.0769},
        // Currency keeps its cents; session times keep their seconds.
        {"SELECT Costo FROM Tbl_Descrizione_Ricambi WHERE ID_DESCRIZIONE_RICAMBI = 2", 7.45},
        {"SELECT Date_Open FROM Tbl_Register ORDER BY rowid LIMIT 1", dayNumber("2026-11-16T07:27:34")},
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
    ASSERT_TRUE(store.exec("INSERT INTO Tbl_Historian_Orders (Ricambi) VALUES ('nuovo')"));
    EXPECT_EQ(store.value("SELECT Data_Ricevuto FROM Tbl_Historian_Orders WHERE Ricambi = 'nuovo'").toString(),
              "Non Ricevuto");
}

// The old file predates the start-up upgrade and arrives as it is: the upgrade's
// columns and sheet table are left for the program's first start to add. Autonumbers
// go on above the highest imported key, and text columns compare as Jet's do.
TEST_F(ImporterTest, OldFileArrivesAsItIs)
{
    ASSERT_TRUE(import().ok);
    Store store(storePath());
    for (const char* absent : {"pragma_table_info('Tbl_Ricerca') WHERE name = 'Images'",
                               "pragma_table_info('Tbl_Maintenance_Note') WHERE name = 'Tipo_Nota'",
                               "sqlite_master WHERE name = 'Tbl_Certif_Proced_Manut'"})
        EXPECT_FALSE(store.value(QStringLiteral("SELECT 1 FROM ") + absent).isValid()) << absent;

    for (const auto& [table, key, text] : {std::tuple{"Tbl_Reparto", "ID_Reparto", "Reparto"},
                                           std::tuple{"Tbl_Causa_Intervento", "ID_CAUSA", "Causa_Interv"}}) {
        const QString highest = QStringLiteral("SELECT MAX(%1) FROM %2").arg(key, table);
        const qlonglong before = store.value(highest).toLongLong();
        ASSERT_TRUE(store.exec(QStringLiteral("INSERT INTO %1 (%2) VALUES ('nuovo')").arg(table, text)));
        EXPECT_EQ(store.value(highest).toLongLong(), before + 1) << table;
    }
    EXPECT_TRUE(
        store.value("SELECT sql FROM sqlite_master WHERE name = 'Tbl_Operatore'").toString().contains("COLLATE JET"));
}

// Columns and tables the store does not know come as the old file declares them: text
// with Jet's collation, dates as DATE, an autonumber as the key that goes on counting.
// Where the old file and the store disagree on the kind of a column, the old file wins.
TEST(StoreWriterTest, UnknownTablesAndColumnsFollowTheOldFile)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("new.sqlite");
    using importer::JetType;
    importer::StoreWriter writer;
    ASSERT_TRUE(writer.create(path)) << writer.error().toStdString();

    importer::MdbTableInfo extra{"Tbl_Attrezzi",
                                 {{"ID_ATTREZZO", JetType::Long, 0, 0, 0, true},
                                  {"Nome", JetType::Text, 40},
                                  {"Acquisto", JetType::DateTime},
                                  {"Tarato", JetType::Boolean},
                                  {"Prezzo", JetType::Currency},
                                  {"Note", JetType::Memo}},
                                 2};
    ASSERT_TRUE(writer.beginTable(extra)) << writer.error().toStdString();
    auto text = [](const char* s) { return importer::MdbValue{importer::MdbValue::Text, 0, 0, QByteArray(s)}; };
    auto integer = [](qint64 i) { return importer::MdbValue{importer::MdbValue::Integer, i, 0, {}}; };
    auto real = [](double d) { return importer::MdbValue{importer::MdbValue::Real, 0, d, {}}; };
    ASSERT_TRUE(writer.insert({integer(7), text("Chiave dinamometrica “Stahl”"), real(45000.5), integer(-1),
                               real(129.9), text("Tarata l'anno scorso")}));
    ASSERT_TRUE(writer.insert({integer(12), text("Calibro"), {}, integer(0), {}, {}}));
    EXPECT_EQ(writer.endTable(), 2);

    ASSERT_TRUE(writer.beginTable({"TBL_REPARTO",
                                   {{"ID_Reparto", JetType::Long, 0, 0, 0, true},
                                    {"Reparto", JetType::Text, 255},
                                    {"Responsabile", JetType::Text, 50}},
                                   1}));
    ASSERT_TRUE(writer.insert({integer(3), text("Officina"), text("Bianchi")}));
    EXPECT_EQ(writer.endTable(), 1);
    // An old file whose Avvisa is a Yes/No column, where the store has text.
    ASSERT_TRUE(writer.beginTable(
        {"Tbl_Maintenance_Note", {{"ID", JetType::Long, 0, 0, 0, true}, {"Avvisa", JetType::Boolean}}, 1}));
    ASSERT_TRUE(writer.insert({integer(4), integer(-1)}));
    EXPECT_EQ(writer.endTable(), 1);
    // An old file whose arrival column is a long text: the rebuilt table keeps its default.
    ASSERT_TRUE(
        writer.beginTable({"Tbl_Historian_Orders",
                           {{"ID_Historian_Orders", JetType::Long, 0, 0, 0, true}, {"Data_Ricevuto", JetType::Memo}},
                           0}));
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
    const QString ddl = store.value("SELECT sql FROM sqlite_master WHERE name = 'Tbl_Attrezzi'").toString();
    EXPECT_TRUE(ddl.contains("\"Nome\" VARCHAR(40) COLLATE JET")) << ddl.toStdString();
    EXPECT_EQ(store.rows("SELECT Nome, Acquisto, Tarato, Prezzo FROM Tbl_Attrezzi WHERE ID_ATTREZZO = 7"),
              (QList<QVariantList>{{"Chiave dinamometrica “Stahl”", 45000.5, qlonglong(-1), 129.9}}));
    ASSERT_TRUE(store.exec("INSERT INTO Tbl_Attrezzi (Nome) VALUES ('Nuovo')"));
    EXPECT_EQ(store.value("SELECT MAX(ID_ATTREZZO) FROM Tbl_Attrezzi").toLongLong(), 13);

    EXPECT_EQ(store.value("SELECT Responsabile FROM Tbl_Reparto WHERE ID_Reparto = 3").toString(), "Bianchi");
    ASSERT_TRUE(store.exec("INSERT INTO Tbl_Historian_Orders (Ricambi) VALUES ('x')"));
    EXPECT_EQ(store.value("SELECT Data_Ricevuto FROM Tbl_Historian_Orders").toString(), "Non Ricevuto");
}

// A store with the plant's data is never overwritten without --replace; with it, the
// old store is kept beside the new one as a dated copy, byte for byte.
TEST_F(ImporterTest, ExistingStoreIsRefusedOrKeptAsBackup)
{
    ASSERT_TRUE(import().ok);
    {
        Store store(storePath());
        ASSERT_TRUE(store.exec("INSERT INTO Tbl_Reparto (Reparto) VALUES ('Solo qui')"));
    }
    const QByteArray before = folderState(home());
    const QByteArray oldBytes = bytesOf(storePath());

    const importer::ImportResult refused = import();
    EXPECT_FALSE(refused.ok);
    EXPECT_TRUE(refused.message.contains("--replace")) << refused.message.toStdString();
    EXPECT_EQ(folderState(home()), before);

    const importer::ImportResult replaced = import(true);
    ASSERT_TRUE(replaced.ok) << replaced.message.toStdString();
    ASSERT_FALSE(replaced.backupPath.isEmpty());
    EXPECT_TRUE(QFileInfo(replaced.backupPath).fileName().startsWith("Velmora-"));
    EXPECT_EQ(bytesOf(replaced.backupPath), oldBytes);
    Store store(storePath());
    EXPECT_EQ(store.value("SELECT COUNT(*) FROM Tbl_Reparto WHERE Reparto = 'Solo qui'").toInt(), 0);
    EXPECT_EQ(QDir(home()).entryList(QDir::Files).size(), 2);
}

// A store the program made but nobody filled is no obstacle; it is still kept aside.
TEST_F(ImporterTest, EmptyStoreGivesWay)
{
    store::createSchema(Store(storePath()).db());
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
    const QByteArray whole = bytesOf(FixtureMdb);
    auto cutAt = [&](qint64 size) {
        return written(sources.filePath(QStringLiteral("cut-%1.mdb").arg(size)), whole.left(size));
    };
    const std::pair<QString, QString> cases[] = {
        {sources.filePath("assente.mdb"), "non esiste"},
        {written(sources.filePath("Velmora.mdb"), "ID;Reparto\n1;Stampaggio\n"), "non è un database Access"},
        {cutAt(100000), "danneggiato"},                         // not a whole number of pages
        {cutAt(whole.size() / 2 / 4096 * 4096), "danneggiato"}, // whole pages, half the file
        {written(sources.filePath("catalogo.mdb"), QByteArray(whole).replace(8192, 2000, QByteArray(2000, '\xA7'))),
         "danneggiato"}, // the table catalogue's page overwritten
    };
    const QString before = QString::fromLatin1(folderState(home()));
    for (const auto& [file, says] : cases) {
        SCOPED_TRACE(file.toStdString());
        // libmdb's own English lines never reach the user ahead of the Italian message.
        QTemporaryFile libraryLines;
        ASSERT_TRUE(libraryLines.open());
        std::fflush(stderr);
        const int savedErr = ::dup(STDERR_FILENO);
        ::dup2(libraryLines.handle(), STDERR_FILENO);
        const importer::ImportResult result = import(false, file);
        const QString unborn = home() + "/nuova";
        EXPECT_FALSE(importer::importMdb({file, unborn, false}).ok);
        std::fflush(stderr);
        ::dup2(savedErr, STDERR_FILENO);
        ::close(savedErr);
        EXPECT_EQ(bytesOf(libraryLines.fileName()), QByteArray());
        EXPECT_FALSE(result.ok);
        EXPECT_TRUE(result.message.contains(says)) << result.message.toStdString();
        EXPECT_EQ(QString::fromLatin1(folderState(home())), before);
        EXPECT_FALSE(QFileInfo::exists(unborn));
    }
}

// The command line: arguments, the progress on the error stream, the closing table.
TEST_F(ImporterTest, CommandLine)
{
    QString out, err;
    const auto run = [&](const QStringList& more) {
        out.clear();
        err.clear();
        QTextStream o(&out), e(&err);
        return importer::runImport(QStringList{"velmora", "--import"} + more, o, e);
    };
    EXPECT_EQ(run({}), 2);
    EXPECT_TRUE(err.contains("Uso: velmora --import"));
    EXPECT_EQ(run({FixtureMdb, "--colore"}), 2);

    ASSERT_EQ(run({FixtureMdb, "--home", home()}), 0) << err.toStdString();
    EXPECT_TRUE(err.contains("Tbl_Numerazione: 33 righe..."));
    const QStringList lines = out.split(QLatin1Char('\n'));
    EXPECT_TRUE(lines.first().startsWith("Tabella") && lines.first().contains("Righe nel file  Righe importate"));
    const auto numerazione =
        std::find_if(lines.begin(), lines.end(), [](const QString& l) { return l.startsWith("Tbl_Numerazione "); });
    ASSERT_NE(numerazione, lines.end()) << out.toStdString();
    EXPECT_EQ(numerazione->simplified(), "Tbl_Numerazione 33 33");
    EXPECT_TRUE(out.contains("Importazione completata: 25 tabelle"));

    EXPECT_EQ(run({FixtureMdb, "--home", home()}), 1);
    EXPECT_TRUE(out.isEmpty());
    EXPECT_TRUE(err.contains("esiste già"));
}

} // namespace
