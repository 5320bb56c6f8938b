#include "demo/LargeStore.h"

#include "definition/Workload.h"
#include "demo/PlantCatalogue.h"
#include "demo/Random.h"
#include "demo/StoreRows.h"
#include "runtime/Clock.h"
#include "runtime/VBError.h"
#include "runtime/VBFunctions.h"
#include "store/DataStore.h"

#include <QStringList>

#include <sqlite3.h>

namespace demo {

namespace {

using store::Recordset;
using vb::Variant;

/// A Jet text literal.
QString lit(const QString& s)
{
    return QLatin1Char('\'') + QString(s).replace(QLatin1Char('\''), QStringLiteral("''")) + QLatin1Char('\'');
}

/// A Jet date literal.
QString lit(const QDate& d)
{
    return d.toString(QStringLiteral("#MM/dd/yyyy#"));
}

/// One transaction around a bulk of rows: the store itself commits every statement at
/// once, which at these sizes is all the time there is.
class Bulk
{
public:
    Bulk() { sqlite3_exec(store::DataStore::instance().handle(), "BEGIN", nullptr, nullptr, nullptr); }
    ~Bulk() { sqlite3_exec(store::DataStore::instance().handle(), "COMMIT", nullptr, nullptr, nullptr); }
    Bulk(const Bulk&) = delete;
    Bulk& operator=(const Bulk&) = delete;
};

struct Model
{
    int id;
    const MachineKind* kind;
    QString macchina, modello;
    std::vector<std::pair<int, double>> types; ///< ID_MAINT_TIPO, weeks
    std::vector<QString> typeNames;
    std::vector<double> minutes;
};

} // namespace

LargeSummary makeLargeStore(std::uint64_t seed, const LargeSizes& sizes)
{
    Random rng(seed);
    const QDate today = vb::Clock::today();
    store::DataStore& db = store::DataStore::instance();
    LargeSummary out;

    struct Kind
    {
        int id;
        QString name;
        double weeks;
    };
    std::vector<Kind> kinds;
    {
        Recordset rs;
        rs.Open(QStringLiteral("SELECT * FROM Tbl_Maint_Tipo WHERE Frequenza_Sett >= 4 ORDER BY ID_MAINT_TIPO"));
        for (; !rs.Eof(); rs.MoveNext())
            kinds.push_back({rs.Fields(QStringLiteral("ID_MAINT_TIPO")).Value().toLong(),
                             rs.Fields(QStringLiteral("Maint_Tipo")).Value().toString(),
                             rs.Fields(QStringLiteral("Frequenza_Sett")).Value().toDouble()});
    }
    if (kinds.empty())
        throw vb::VBError(3021, QStringLiteral("Nessun tipo di manutenzione nell'archivio"));

    // Every model of the catalogue, two or three types each, with their steps.
    std::vector<Model> models;
    {
        Bulk bulk;
        for (const MachineKind& k : machineKinds()) {
            for (const char* name : k.models) {
                Model m{0, &k, text(k.macchina), text(name), {}, {}, {}};
                m.id = addRow(QStringLiteral("Tbl_Macchina"), QStringLiteral("ID_MODELLO"), [&](Recordset& rs) {
                    rs.Fields(QStringLiteral("Macchina")) = m.macchina;
                    rs.Fields(QStringLiteral("Modello")) = m.modello;
                    rs.Fields(QStringLiteral("Stato")) = QStringLiteral("In servizio");
                    rs.Fields(QStringLiteral("Costruttore")) = text(k.makers.front());
                });
                std::vector<int> chosen = rng.sample(0, int(kinds.size()) - 1, rng.between(2, 3));
                for (int c : chosen) {
                    const Kind& kind = kinds[size_t(c)];
                    m.types.emplace_back(kind.id, kind.weeks);
                    m.typeNames.push_back(kind.name);
                    db.Execute(
                        QStringLiteral("INSERT INTO Tbl_Assegna_M (ID_MODELLO, ID_MAINT_TIPO, Macchina, Modello, "
                                       "Manutenzione_Tipo) VALUES (%1, %2, %3, %4, %5)")
                            .arg(m.id)
                            .arg(kind.id)
                            .arg(lit(m.macchina), lit(m.modello), lit(kind.name)));
                    double total = 0;
                    for (size_t s = 0; s < k.steps.size(); ++s) {
                        const StepText& st = k.steps[s];
                        const int minutes = rng.between(st.minutesLow, st.minutesHigh);
                        total += minutes;
                        db.Execute(QStringLiteral("INSERT INTO Tbl_ProcedureM (ID_MODELLO, ID_MAINT_TIPO, Num, Titolo, "
                                                  "Procedura, Minuti) VALUES (%1, %2, %3, %4, %5, %6)")
                                       .arg(m.id)
                                       .arg(kind.id)
                                       .arg(s + 1)
                                       .arg(lit(text(st.titolo)), lit(text(st.procedura)))
                                       .arg(minutes));
                    }
                    m.minutes.push_back(total);
                }
                models.push_back(std::move(m));
            }
        }
    }
    out.models = int(models.size());

    // Units round the models until the register holds the rows asked for.
    struct Unit
    {
        const Model* model;
        int id;
        QString number;
    };
    std::vector<Unit> units;
    {
        Bulk bulk;
        std::vector<int> next(models.size(), 1);
        size_t mi = 0;
        while (out.registerRows < sizes.registerRows) {
            Model& m = models[mi];
            const QString number = QString::number(next[mi]++);
            const int idNum = addRow(QStringLiteral("Tbl_Numerazione"), QStringLiteral("ID_NUM"), [&](Recordset& rs) {
                rs.Fields(QStringLiteral("Numerazione")) = number;
                rs.Fields(QStringLiteral("ID_MODELLO")) = m.id;
            });
            units.push_back({&m, idNum, number});
            for (size_t t = 0; t < m.types.size() && out.registerRows < sizes.registerRows; ++t) {
                const double weeks = m.types[t].second;
                const QDate prossima = today.addDays(rng.between(-30, int(weeks * 7)));
                const QDate ultima = prossima.addDays(-qint64(weeks * 7));
                db.Execute(QStringLiteral("INSERT INTO Tbl_Maintenance (ID_MODELLO, Macchina, Modello, ID_NUM, "
                                          "Numerazione, ID_MAINT_TIPO, Manutenzione_Tipo, Frequenza_Sett, Ultima, "
                                          "Prossima, Tempo_Minuti, Operatore) VALUES (%1, %2, %3, %4, %5, %6, %7, %8, "
                                          "%9, %10, %11, '')")
                               .arg(m.id)
                               .arg(lit(m.macchina), lit(m.modello))
                               .arg(idNum)
                               .arg(lit(number))
                               .arg(m.types[t].first)
                               .arg(lit(m.typeNames[t]))
                               .arg(weeks)
                               .arg(lit(ultima), lit(prossima))
                               .arg(m.minutes[t]));
                ++out.registerRows;
            }
            mi = (mi + 1) % models.size();
        }
    }
    out.units = int(units.size());
    for (const Model& m : models)
        for (const auto& type : m.types)
            definition::Recompute_Workload(m.id, type.first);

    {
        Bulk bulk;
        // Stop records: a third of them machines standing now, the rest restarted. Only
        // on machine numbers that fit VB's Integer: the register's load keeps them in one
        // and ends in an overflow on a larger one, as the old program did.
        const int stoppable = std::min<int>(int(units.size()), 32767);
        std::vector<int> stopped = rng.sample(0, stoppable - 1, std::min<int>(sizes.stopRecords, stoppable));
        for (int i : stopped) {
            const Unit& u = units[size_t(i)];
            const bool now = rng.between(0, 2) == 0;
            const int days = rng.between(2, 20);
            db.Execute(QStringLiteral("INSERT INTO Tbl_Fermi_Macchina (ID_NUM, ID_MAINT_TIPO, Ferma_Dal, Giorni_Stop, "
                                      "TOT_Giorni_Stop, Numero_Stop) VALUES (%1, %2, %3, 0, %4, 1)")
                           .arg(u.id)
                           .arg(u.model->types.back().first)
                           .arg(now ? lit(vb::ShortDate(today.addDays(-days))) : QStringLiteral("Null"))
                           .arg(now ? 0 : days));
            ++out.stopRecords;
        }
        // The chart's rows, as the register's save makes sure of them.
        for (int i = 0; i < sizes.plannedRows && i < int(units.size()); ++i) {
            const Unit& u = units[size_t(i)];
            db.Execute(QStringLiteral("INSERT INTO Tbl_Planned (ID_MODELLO, Macchina, Modello, ID_NUM, Numerazione) "
                                      "VALUES (%1, %2, %3, %4, %5)")
                           .arg(u.model->id)
                           .arg(lit(u.model->macchina), lit(u.model->modello))
                           .arg(u.id)
                           .arg(lit(u.number)));
            ++out.plannedRows;
        }
    }

    // The parts and two years of interventions on them.
    struct Part
    {
        int id, idRicambi;
        QString ricambi, descrizione;
    };
    std::vector<Part> parts;
    std::vector<int> causes;
    {
        Bulk bulk;
        for (const PartCategory& c : partCategories()) {
            const int idRicambi =
                addRow(QStringLiteral("Tbl_Ricambi"), QStringLiteral("ID_RICAMBI"), [&](Recordset& rs) {
                    rs.Fields(QStringLiteral("Ricambi")) = text(c.ricambi);
                    rs.Fields(QStringLiteral("Unita_Misura")) = text(c.unita);
                });
            for (const PartText& p : c.parts) {
                const int id = addRow(QStringLiteral("Tbl_Descrizione_Ricambi"),
                                      QStringLiteral("ID_DESCRIZIONE_RICAMBI"), [&](Recordset& rs) {
                                          rs.Fields(QStringLiteral("ID_Ricambi")) = idRicambi;
                                          rs.Fields(QStringLiteral("Ricambi")) = text(c.ricambi);
                                          rs.Fields(QStringLiteral("Descrizione")) = text(p.descrizione);
                                          rs.Fields(QStringLiteral("Codice")) = text(p.codice);
                                          rs.Fields(QStringLiteral("Costo")) = p.costo;
                                          rs.Fields(QStringLiteral("Giacenza")) = 100.0;
                                          rs.Fields(QStringLiteral("Scorta")) = 5.0;
                                      });
                parts.push_back({id, idRicambi, text(c.ricambi), text(p.descrizione)});
            }
        }
        for (const char* c : interventionCauses())
            causes.push_back(addRow(QStringLiteral("Tbl_Causa_Intervento"), QStringLiteral("ID_CAUSA"),
                                    [&](Recordset& rs) { rs.Fields(QStringLiteral("Causa_Interv")) = text(c); }));
        for (int i = 0; i < sizes.interventions; ++i) {
            const Unit& u = units[size_t(rng.between(0, int(units.size()) - 1))];
            const Part& p = parts[size_t(rng.between(0, int(parts.size()) - 1))];
            db.Execute(
                QStringLiteral("INSERT INTO Tbl_Ricerca (Data, ID_MODELLO, Macchina, Modello, ID_NUM, Numerazione, "
                               "ID_DESCRIZIONE_RICAMBI, Descrizione, ID_RICAMBI, Ricambi, Quantita, Destinazione, "
                               "ID_CAUSA) VALUES (%1, %2, %3, %4, %5, %6, %7, %8, %9, %10, %11, %12, %13)")
                    .arg(lit(today.addDays(-rng.between(1, 730))))
                    .arg(u.model->id)
                    .arg(lit(u.model->macchina), lit(u.model->modello))
                    .arg(u.id)
                    .arg(lit(u.number))
                    .arg(p.id)
                    .arg(lit(p.descrizione))
                    .arg(p.idRicambi)
                    .arg(lit(p.ricambi))
                    .arg(rng.between(1, 4))
                    .arg(lit(text(rng.pick(u.model->kind->destinations))))
                    .arg(causes[size_t(rng.between(0, int(causes.size()) - 1))]));
            ++out.interventions;
        }
    }
    return out;
}

} // namespace demo
