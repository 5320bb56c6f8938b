#include "store/Schema.h"

#include "runtime/VBError.h"
#include "store/jet/Jet.h"
#include "store/jet/PostgresGenerator.h"

#include <QHash>

#include <sqlite3.h>
#include <vector>

namespace store {

namespace {

// How each Jet type is declared in SQLite. The declared name is what tells the store a
// Date column from a number or a text later on; the affinity SQLite derives from it
// keeps numbers as numbers (DOUBLE -> REAL, LONG/DATE -> NUMERIC, VARCHAR -> TEXT).
QString declFor(ColumnType t)
{
    const QString text = QStringLiteral(" COLLATE ") + QLatin1String(jet::Collation);
    switch (t) {
    case ColumnType::Counter: return QStringLiteral("INTEGER PRIMARY KEY AUTOINCREMENT");
    case ColumnType::Long: return QStringLiteral("LONG");
    case ColumnType::Integer: return QStringLiteral("SMALLINT");
    case ColumnType::Double: return QStringLiteral("DOUBLE");
    case ColumnType::Currency: return QStringLiteral("CURRENCY");
    case ColumnType::Boolean: return QStringLiteral("BIT");
    case ColumnType::Date: return QStringLiteral("DATE");
    case ColumnType::Text: return QStringLiteral("VARCHAR(255)") + text;
    case ColumnType::Memo: return QStringLiteral("LONGTEXT") + text;
    case ColumnType::Unknown: break;
    }
    return {};
}

struct Col
{
    const char* name;
    ColumnType type;
    const char* extra = nullptr; // DEFAULT clause
};

struct Table
{
    const char* name;
    std::vector<Col> columns;
};

using T = ColumnType;

std::vector<Table> tables()
{
    std::vector<Table> all = {
        {"Tbl_Reparto", {{"ID_Reparto", T::Counter}, {"Reparto", T::Text}}},
        {"Tbl_Macchina",
         {{"ID_MODELLO", T::Counter},
          {"Macchina", T::Text},
          {"Modello", T::Text},
          {"Stato", T::Text},
          {"ID_REPARTO", T::Long},
          {"REPARTO", T::Text},
          {"Costruttore", T::Text},
          {"Anno", T::Text}}},
        {"Tbl_Numerazione", {{"ID_NUM", T::Counter}, {"Numerazione", T::Text}, {"ID_MODELLO", T::Long}}},
        {"Tbl_Maint_Tipo",
         {{"ID_MAINT_TIPO", T::Counter},
          {"Maint_Tipo", T::Text},
          {"Frequenza_Sett", T::Double},
          {"Koeff_Settimanale", T::Double}}},
        {"Tbl_Proc_General_Macc",
         {{"ID", T::Counter},
          {"ID_MODELLO", T::Long},
          {"Macchina", T::Text},
          {"Modello", T::Text},
          {"Tempo_Minuti", T::Double}}},
        {"Tbl_Proc_General",
         {{"ID_Procedura", T::Counter},
          {"ID_MODELLO", T::Long},
          {"Num", T::Integer},
          {"Titolo", T::Text},
          {"Procedura", T::Memo},
          {"Minuti", T::Double}}},
        {"Tbl_Assegna_M",
         {{"ID", T::Counter},
          {"ID_MODELLO", T::Long},
          {"ID_MAINT_TIPO", T::Long},
          {"Macchina", T::Text},
          {"Modello", T::Text},
          {"Manutenzione_Tipo", T::Text},
          {"Tempo_Minuti", T::Double},
          {"Tempo_Ore", T::Text},
          {"Minuti_Sett", T::Text},
          {"Num_Macchine", T::Text},
          {"Tot_Minuti_Sett", T::Text},
          {"Tot_Ore_Sett", T::Text}}},
        {"Tbl_ProcedureM",
         {{"ID_Procedura", T::Counter},
          {"ID_MODELLO", T::Long},
          {"ID_MAINT_TIPO", T::Long},
          {"Num", T::Integer},
          {"Titolo", T::Text},
          {"Procedura", T::Memo},
          {"Minuti", T::Double}}},
        // The search grid lays SELECT * out by position: machine 2, model 3, number 5,
        // type 7, last 9, next 10 of fourteen.
        {"Tbl_Maintenance",
         {{"ID", T::Counter},
          {"ID_MODELLO", T::Long},
          {"Macchina", T::Text},
          {"Modello", T::Text},
          {"ID_NUM", T::Long},
          {"Numerazione", T::Text},
          {"ID_MAINT_TIPO", T::Long},
          {"Manutenzione_Tipo", T::Text},
          {"Frequenza_Sett", T::Double},
          {"Ultima", T::Date},
          {"Prossima", T::Date},
          {"Tempo_Minuti", T::Double},
          {"ID_OPERATORE", T::Long},
          {"Operatore", T::Text}}},
        // Tipo_Nota, Images and Percorso come with the start-up upgrade.
        {"Tbl_Maintenance_Note",
         {{"ID", T::Counter},
          {"ID_MAINTENANCE", T::Long},
          {"ID_MODELLO", T::Long},
          {"ID_NUM", T::Long},
          {"ID_OPERATORE", T::Long},
          {"Ultima", T::Text},
          {"Avvisa", T::Text},
          {"NOTE", T::Memo},
          {"Tipo_Nota2", T::Text}}},
        {"Tbl_Fermi_Macchina",
         {{"ID_NUM", T::Long},
          {"ID_MAINT_TIPO", T::Long},
          {"Ferma_Dal", T::Text},
          {"Giorni_Stop", T::Integer},
          {"TOT_Giorni_Stop", T::Integer, "DEFAULT 0"},
          {"Numero_Stop", T::Integer, "DEFAULT 0"}}},
        {"Tbl_Ricambi", {{"ID_RICAMBI", T::Counter}, {"Ricambi", T::Text}, {"Unita_Misura", T::Text}}},
        {"Tbl_Descrizione_Ricambi",
         {{"ID_DESCRIZIONE_RICAMBI", T::Counter},
          {"ID_Ricambi", T::Long},
          {"Ricambi", T::Text},
          {"Descrizione", T::Text},
          {"Codice", T::Text},
          {"Costo", T::Double},
          {"Giacenza", T::Double},
          {"Scorta", T::Double},
          {"NOTE", T::Memo}}},
        {"Tbl_Images_Desc_Ricambi",
         {{"ID_IMAGES_DC", T::Counter},
          {"ID_DESCRIZIONE_RICAMBI", T::Long},
          {"Images", T::Text},
          {"Percorso", T::Text}}},
        // Images and Percorso come with the start-up upgrade, after ID_CAUSA.
        {"Tbl_Ricerca",
         {{"ID", T::Counter},
          {"Data", T::Date},
          {"ID_MODELLO", T::Long},
          {"Macchina", T::Text},
          {"Modello", T::Text},
          {"ID_NUM", T::Long},
          {"Numerazione", T::Text},
          {"ID_DESCRIZIONE_RICAMBI", T::Long},
          {"Descrizione", T::Text},
          {"ID_RICAMBI", T::Long},
          {"Ricambi", T::Text},
          {"Quantita", T::Double},
          {"Destinazione", T::Text},
          {"ID_CAUSA", T::Long}}},
        {"Tbl_Causa_Intervento", {{"ID_CAUSA", T::Counter}, {"Causa_Interv", T::Text}}},
        {"Tbl_Fornitori",
         {{"ID_FORNITORE", T::Counter},
          {"Fornitore", T::Text},
          {"Nome_Soceta", T::Text},
          {"Part_IVA/Cod_Fisc", T::Text},
          {"Citta/Paese", T::Text},
          {"CAP", T::Text},
          {"Provincia", T::Text},
          {"Via", T::Text},
          {"Tel", T::Text},
          {"Fax", T::Text},
          {"Email", T::Text},
          {"Url", T::Text}}},
        {"Tbl_Order",
         {{"ID", T::Counter},
          {"ID_RICAMBI", T::Long},
          {"Ricambi", T::Text},
          {"ID_DESCRIZIONE_RICAMBI", T::Long},
          {"Descrizione", T::Text},
          {"Codice", T::Text},
          {"Quantita", T::Double},
          {"ID_FORNITORE", T::Long},
          {"Fornitore", T::Text}}},
        // The goods-received logic looks for the literal default: the evasion INSERT
        // does not name the column.
        {"Tbl_Historian_Orders",
         {{"ID_Historian_Orders", T::Counter},
          {"DATA", T::Date},
          {"ID_RICAMBI", T::Long},
          {"Ricambi", T::Text},
          {"ID_DESCRIZIONE_RICAMBI", T::Long},
          {"Descrizione", T::Text},
          {"Codice", T::Text},
          {"Quantita", T::Double},
          {"Data_Ricevuto", T::Text, "DEFAULT 'Non Ricevuto'"},
          {"ID_FORNITORE", T::Long},
          {"Fornitore", T::Text}}},
        {"Tbl_Operatore",
         {{"ID_OPERATORE", T::Counter},
          {"Operatore", T::Text},
          {"Qualifica", T::Text},
          {"Data_Nascita", T::Date},
          {"Tipo", T::Text},
          {"Inizio_Rapp", T::Date},
          {"Fine_Rapp", T::Date}}},
        {"Tbl_Register", {{"Date_Open", T::Date}, {"Date_Close", T::Date}, {"Tempo", T::Text}}},
        {"Tbl_Materiale",
         {{"ID_MATERIALE", T::Counter},
          {"Materiale", T::Text},
          {"Unita_Misura", T::Text},
          {"Costo", T::Double},
          {"Note", T::Memo}}},
        {"Tbl_0_Economia", {{"ID", T::Counter}, {"Costo_Economia", T::Double}}},
        {"Tbl_Unita_Misura", {{"ID", T::Counter}, {"Unita_Misura", T::Text}}},
    };
    return all;
}

// The wall chart: key, the machine number, then the week columns [1]..[145] at
// positions 6..150, addressed by position as well as by name.
QString plannedTable()
{
    QString sql = QStringLiteral("CREATE TABLE \"Tbl_Planned\" (\"ID\" %1, \"ID_MODELLO\" %2, \"Macchina\" %3, "
                                 "\"Modello\" %3, \"ID_NUM\" %2, \"Numerazione\" %3")
                      .arg(declFor(T::Counter), declFor(T::Long), declFor(T::Text));
    for (int week = 1; week <= 145; ++week)
        sql += QStringLiteral(", \"%1\" %2").arg(week).arg(declFor(T::Text));
    return sql + QLatin1Char(')');
}

QString createTable(const Table& t)
{
    QStringList cols;
    for (const Col& c : t.columns) {
        QString def = QStringLiteral("\"%1\" %2").arg(QLatin1String(c.name), declFor(c.type));
        if (c.extra)
            def += QLatin1Char(' ') + QLatin1String(c.extra);
        cols << def;
    }
    return QStringLiteral("CREATE TABLE \"%1\" (%2)").arg(QLatin1String(t.name), cols.join(QStringLiteral(", ")));
}

// The stored queries of the notes reports, in SQLite's words. A new store lacks
// Tipo_Nota, Images and Percorso until the start-up upgrade adds them; SQLite resolves
// a view's columns when it is used, so the views work from then on.
QString noteQuery(const QString& name, const QString& classification)
{
    const QString group =
        QStringLiteral("N.ID, N.Ultima, %1, M.Macchina, M.Modello, U.Numerazione, N.Images, N.Percorso")
            .arg(classification);
    return QStringLiteral("CREATE VIEW \"%1\" AS SELECT %2, COUNT(N.Tipo_Nota) AS ConteggioDiTipo_Nota "
                          "FROM Tbl_Macchina AS M RIGHT JOIN (Tbl_Maintenance_Note AS N LEFT JOIN Tbl_Numerazione AS U "
                          "ON N.ID_NUM = U.ID_NUM) ON M.ID_MODELLO = N.ID_MODELLO "
                          "GROUP BY %2 ORDER BY substr(N.Ultima, -4) DESC, substr(N.Ultima, -7) DESC, N.Ultima DESC")
        .arg(name, group);
}

void exec(sqlite3* db, const QString& sql)
{
    char* message = nullptr;
    if (sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, &message) != SQLITE_OK) {
        const QString text = QString::fromUtf8(message ? message : "");
        sqlite3_free(message);
        throw vb::VBError(vb::err::SyntaxError, text);
    }
}

const QHash<QString, QString>& commands()
{
    static const QHash<QString, QString> all = {
        {QStringLiteral("tbl_maintenance_search"),
         QStringLiteral("SELECT * FROM Tbl_Maintenance WHERE Macchina LIKE '%' & ? & '%' ORDER BY Macchina")},
        {QStringLiteral("tbl_maintenance_tipo_search"),
         QStringLiteral("SELECT * FROM Tbl_Maintenance WHERE Manutenzione_Tipo LIKE '%' & ? & '%' ORDER BY Macchina")},
        {QStringLiteral("tbl_macchina"),
         QStringLiteral(
             "SELECT *\r\nFROM Tbl_Macchina\r\nWHERE Macchina LIKE '%' & ? & '%'\r\nORDER BY Macchina, Modello")},
        {QStringLiteral("tbl_macchina_search_modello"),
         QStringLiteral("SELECT * FROM Tbl_Macchina WHERE Modello LIKE '%' & ? & '%' ORDER BY Modello,Macchina")},
        {QStringLiteral("tbl_macchina_search_stato"),
         QStringLiteral("SELECT * FROM Tbl_Macchina WHERE Stato LIKE '%' & ? & '%' ORDER BY Modello,Macchina")},
    };
    return all;
}

} // namespace

ColumnType columnTypeOfDecl(const QString& declType)
{
    const QString d = declType.trimmed().toUpper();
    if (d.isEmpty())
        return ColumnType::Unknown;
    if (d.contains(QLatin1String("DATE")) || d.contains(QLatin1String("TIME")))
        return ColumnType::Date;
    if (d.contains(QLatin1String("LONGTEXT")) || d.contains(QLatin1String("MEMO")))
        return ColumnType::Memo;
    if (d.contains(QLatin1String("CHAR")) || d.contains(QLatin1String("TEXT")) || d.contains(QLatin1String("CLOB")))
        return ColumnType::Text;
    if (d.contains(QLatin1String("COUNTER")) || d.contains(QLatin1String("AUTOINCREMENT")))
        return ColumnType::Counter;
    if (d == QLatin1String("INTEGER") || d.contains(QLatin1String("SMALLINT")) || d.contains(QLatin1String("SHORT")))
        return ColumnType::Integer;
    if (d.contains(QLatin1String("LONG")) || d.contains(QLatin1String("INT")))
        return ColumnType::Long;
    if (d.contains(QLatin1String("CURRENCY")) || d.contains(QLatin1String("MONEY")))
        return ColumnType::Currency;
    if (d.contains(QLatin1String("BIT")) || d.contains(QLatin1String("BOOL")) || d.contains(QLatin1String("YESNO")))
        return ColumnType::Boolean;
    if (d.contains(QLatin1String("DOUB")) || d.contains(QLatin1String("REAL")) || d.contains(QLatin1String("FLOA")) ||
        d.contains(QLatin1String("NUM")) || d.contains(QLatin1String("DEC")) || d.contains(QLatin1String("SINGLE")))
        return ColumnType::Double;
    return ColumnType::Unknown;
}

bool isTextType(ColumnType t)
{
    return t == ColumnType::Text || t == ColumnType::Memo;
}

bool isNumberType(ColumnType t)
{
    switch (t) {
    case ColumnType::Counter:
    case ColumnType::Long:
    case ColumnType::Integer:
    case ColumnType::Double:
    case ColumnType::Currency:
    case ColumnType::Boolean: return true;
    default: return false;
    }
}

// The statistics and the interventions on machines group every intervention by machine
// and unit at their load: the Tbl_Ricerca indexes hold the grouped columns (and the
// counted one) in the grouping's order, so SQLite reads them instead of the whole rows.
// The register's load joins every stop record to its register row by type and number,
// then writes the days stopped back by number, once a record: without the other two,
// SQLite builds an index of the whole register for the join each time, and each write
// reads every stop record. Rows of equal keys come out of an index in the table's order,
// so the statements that look rows up by these columns see them as before (the one that
// finds a type's register rows by model and type only asks whether there are any).
void createIndexes(sqlite3* db)
{
    exec(db, QStringLiteral("CREATE INDEX IF NOT EXISTS \"Idx_Ricerca_Macchina\" ON \"Tbl_Ricerca\" "
                            "(\"Macchina\", \"Modello\", \"Numerazione\", \"ID_CAUSA\");\n"
                            "CREATE INDEX IF NOT EXISTS \"Idx_Ricerca_Unita\" ON \"Tbl_Ricerca\" "
                            "(\"ID_MODELLO\", \"Modello\", \"Numerazione\", \"ID_NUM\", \"ID_RICAMBI\");\n"
                            "CREATE INDEX IF NOT EXISTS \"Idx_Maintenance_Tipo_Num\" ON \"Tbl_Maintenance\" "
                            "(\"ID_MAINT_TIPO\", \"ID_NUM\");\n"
                            "CREATE INDEX IF NOT EXISTS \"Idx_Fermi_Macchina_Num\" ON \"Tbl_Fermi_Macchina\" "
                            "(\"ID_NUM\");"));
}

void createSchema(sqlite3* db)
{
    jet::registerFunctions(db);
    QString sql = QStringLiteral("BEGIN;\n");
    for (const Table& t : tables())
        sql += createTable(t) + QStringLiteral(";\n");
    sql += plannedTable() + QStringLiteral(";\n");

    // Seed of the frequency kinds: the interval in weeks and its weekly coefficient.
    const std::pair<const char*, int> kinds[] = {{"Settimanale", 1},  {"Mensile", 4},     {"Bimestrale", 8},
                                                 {"Trimestrale", 13}, {"Semestrale", 26}, {"Annuale", 52},
                                                 {"Biennale", 104}};
    for (const auto& [name, weeks] : kinds)
        sql += QStringLiteral("INSERT INTO Tbl_Maint_Tipo (Maint_Tipo, Frequenza_Sett, Koeff_Settimanale) "
                              "VALUES ('%1', %2, 1.0 / %2);\n")
                   .arg(QLatin1String(name))
                   .arg(weeks);

    const QString nota = QStringLiteral("N.Tipo_Nota");
    const QString nota2 = QStringLiteral("N.Tipo_Nota2");
    sql += noteQuery(QStringLiteral("Qry_Report10"), nota) + QStringLiteral(";\n");
    sql += noteQuery(QStringLiteral("Qry_Report18"), nota) + QStringLiteral(";\n");
    sql += noteQuery(QStringLiteral("Qry_Report19"), nota2) + QStringLiteral(";\n");
    sql += noteQuery(QStringLiteral("Qry_Report20"), nota + QStringLiteral(", ") + nota2) + QStringLiteral(";\n");
    sql += noteQuery(QStringLiteral("Qry_Report21"), nota + QStringLiteral(", ") + nota2) + QStringLiteral(";\n");
    sql += QStringLiteral("COMMIT;");
    try {
        exec(db, sql);
    } catch (...) {
        sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
        throw;
    }
    createIndexes(db);
}

void createReportSchema(sqlite3* db)
{
    jet::registerFunctions(db);
    // Nothing to create: the plan's copy arrives with "SELECT * INTO Tbl_Planned IN".
    exec(db, QStringLiteral("PRAGMA user_version = 1"));
}

// A table on the server: the same columns, the hidden key, the autonumber's trigger.
QStringList postgresTable(const QString& name, const std::vector<std::pair<QString, QString>>& columns)
{
    QStringList cols;
    QStringList out;
    for (const auto& [column, decl] : columns) {
        cols << jet::postgresIdent(column) + u' ' + jet::postgresType(decl);
        if (decl.contains(QLatin1String("AUTOINCREMENT")))
            out << jet::postgresCounterTrigger(name, column);
    }
    cols << QLatin1String(jet::RowidColumn);
    out.prepend(QStringLiteral("CREATE TABLE %1 (%2)").arg(jet::postgresIdent(name), cols.join(QStringLiteral(", "))));
    return out;
}

QStringList postgresSchemaStatements()
{
    QStringList out;
    for (const Table& t : tables()) {
        std::vector<std::pair<QString, QString>> cols;
        for (const Col& c : t.columns)
            cols.emplace_back(QLatin1String(c.name),
                              declFor(c.type) + (c.extra ? u' ' + QLatin1String(c.extra) : QString()));
        out << postgresTable(QLatin1String(t.name), cols);
    }
    std::vector<std::pair<QString, QString>> planned = {
        {QStringLiteral("ID"), declFor(T::Counter)},    {QStringLiteral("ID_MODELLO"), declFor(T::Long)},
        {QStringLiteral("Macchina"), declFor(T::Text)}, {QStringLiteral("Modello"), declFor(T::Text)},
        {QStringLiteral("ID_NUM"), declFor(T::Long)},   {QStringLiteral("Numerazione"), declFor(T::Text)}};
    for (int week = 1; week <= 145; ++week)
        planned.emplace_back(QString::number(week), declFor(T::Text));
    out << postgresTable(QStringLiteral("Tbl_Planned"), planned);
    const std::pair<const char*, int> kinds[] = {{"Settimanale", 1},  {"Mensile", 4},     {"Bimestrale", 8},
                                                 {"Trimestrale", 13}, {"Semestrale", 26}, {"Annuale", 52},
                                                 {"Biennale", 104}};
    for (const auto& [name, weeks] : kinds)
        out << QStringLiteral("INSERT INTO \"Tbl_Maint_Tipo\" (\"Maint_Tipo\", \"Frequenza_Sett\", "
                              "\"Koeff_Settimanale\") VALUES ('%1', %2, 1.0 / %2)")
                   .arg(QLatin1String(name))
                   .arg(weeks);
    out << QStringLiteral("CREATE SCHEMA IF NOT EXISTS ") + QLatin1String(jet::ReportSchema);
    return out;
}

QStringList postgresViewStatements()
{
    QStringList out;
    const QString nota = QStringLiteral("N.\"Tipo_Nota\"");
    const QString nota2 = QStringLiteral("N.\"Tipo_Nota2\"");
    const std::pair<const char*, QString> views[] = {{"Qry_Report10", nota},
                                                     {"Qry_Report18", nota},
                                                     {"Qry_Report19", nota2},
                                                     {"Qry_Report20", nota + QStringLiteral(", ") + nota2},
                                                     {"Qry_Report21", nota + QStringLiteral(", ") + nota2}};
    for (const auto& [name, classification] : views) {
        const QString group = QStringLiteral("N.\"ID\", N.\"Ultima\", %1, M.\"Macchina\", M.\"Modello\", "
                                             "U.\"Numerazione\", N.\"Images\", N.\"Percorso\"")
                                  .arg(classification);
        out << QStringLiteral(
                   "CREATE OR REPLACE VIEW \"%1\" AS SELECT %2, COUNT(N.\"Tipo_Nota\") AS "
                   "\"ConteggioDiTipo_Nota\" FROM \"Tbl_Macchina\" AS M RIGHT JOIN (\"Tbl_Maintenance_Note\" AS N "
                   "LEFT JOIN \"Tbl_Numerazione\" AS U ON N.\"ID_NUM\" = U.\"ID_NUM\") ON M.\"ID_MODELLO\" = "
                   "N.\"ID_MODELLO\" GROUP BY %2 ORDER BY right(N.\"Ultima\", 4) DESC, right(N.\"Ultima\", 7) DESC, "
                   "N.\"Ultima\" DESC")
                   .arg(QLatin1String(name), group);
    }
    return out;
}

ColumnType columnType(sqlite3* db, const QString& table, const QString& column)
{
    sqlite3_stmt* stmt = nullptr;
    const QByteArray sql = "SELECT type, pk FROM pragma_table_info(?1) WHERE name = ?2 COLLATE NOCASE";
    if (sqlite3_prepare_v2(db, sql.constData(), -1, &stmt, nullptr) != SQLITE_OK)
        return ColumnType::Unknown;
    const QByteArray t = table.toUtf8();
    const QByteArray c = column.toUtf8();
    sqlite3_bind_text(stmt, 1, t.constData(), t.size(), SQLITE_TRANSIENT);
    sqlite3_bind_text(stmt, 2, c.constData(), c.size(), SQLITE_TRANSIENT);
    ColumnType result = ColumnType::Unknown;
    if (sqlite3_step(stmt) == SQLITE_ROW) {
        const QString decl = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
        result = columnTypeOfDecl(decl);
        if (sqlite3_column_int(stmt, 1) == 1 && decl.compare(QLatin1String("INTEGER"), Qt::CaseInsensitive) == 0)
            result = ColumnType::Counter;
    }
    sqlite3_finalize(stmt);
    return result;
}

QString parameterCommand(const QString& name)
{
    return commands().value(name.toLower());
}

QStringList parameterCommandNames()
{
    return {QStringLiteral("Tbl_Maintenance_Search"), QStringLiteral("Tbl_Maintenance_Tipo_Search"),
            QStringLiteral("Tbl_Macchina"), QStringLiteral("Tbl_Macchina_Search_Modello"),
            QStringLiteral("Tbl_Macchina_Search_Stato")};
}

} // namespace store
