#include "demo/DemoPlant.h"

#include "definition/Workload.h"
#include "demo/PlantCatalogue.h"
#include "demo/Random.h"
#include "demo/StoreRows.h"
#include "execution/Form7.h"
#include "execution/WeeklyPlan.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/VBError.h"
#include "runtime/VBFunctions.h"
#include "shell/frmMain.h"
#include "spares/Form14.h"
#include "spares/Form19.h"
#include "store/DataStore.h"

#include <QStringList>

#include <algorithm>
#include <map>
#include <memory>

namespace demo {

namespace {

using store::Recordset;
using vb::Variant;

// The frequency kinds every store is seeded with, by key.
struct Kind
{
    int id;
    QString name;
    double weeks;
};

std::vector<Kind> readKinds()
{
    std::vector<Kind> kinds;
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM Tbl_Maint_Tipo ORDER BY ID_MAINT_TIPO"));
    while (!rs.Eof()) {
        kinds.push_back({rs.Fields(QStringLiteral("ID_MAINT_TIPO")).Value().toLong(),
                         rs.Fields(QStringLiteral("Maint_Tipo")).Value().toString(),
                         rs.Fields(QStringLiteral("Frequenza_Sett")).Value().toDouble()});
        rs.MoveNext();
    }
    return kinds;
}

struct Model
{
    int id = 0;
    const MachineKind* kind = nullptr;
    QString macchina, modello;
    bool active = true;
    std::vector<std::pair<int, QString>> units; ///< ID_NUM, Numerazione
    std::vector<const StepText*> steps;         ///< the general procedure
    std::vector<int> stepMinutes;
};

struct Assignment
{
    const Model* model;
    Kind kind;
    double minutes = 0; ///< S, as the workload procedure stored it
};

struct RegisterRow
{
    int id = 0;
    const Model* model;
    int idNum;
    QString numerazione;
    Kind kind;
    double minutes;
    QDate ultima, prossima;
};

struct OrderLine
{
    QDate evaded;
    QDate arrived; ///< invalid: still waiting
    int id = 0;    ///< ID_Historian_Orders, once written
    int part = 0;
    int quantity = 0;
    std::pair<int, QString> fornitore;
};

struct Use
{
    QDate date;
    const Model* model = nullptr;
    std::pair<int, QString> unit;
    int part = 0;
    int quantity = 0;
    QString destinazione;
    std::pair<int, QString> cause;
};

struct Part
{
    int id = 0;
    int idRicambi = 0;
    QString ricambi, descrizione, codice, unita;
    double scorta = 0;
    double target = 0; ///< the stock the demo day should show
    double consumed = 0;
    double received = 0;
};

// Unit numbers as a plant writes them: some below ten, some above, so that the text
// order ("10" before "2") and the order by Val differ.
std::vector<int> unitNumbers(Random& rng, int n)
{
    std::vector<int> numbers = rng.sample(1, 24, n);
    if (numbers.front() >= 10)
        numbers.front() = rng.between(1, 9);
    if (numbers.back() < 10)
        numbers.back() = rng.between(10, 24);
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

/// The steps of an assignment of a frequency: the frequent visits do the quick checks,
/// the rarer ones more, the yearly overhaul everything.
std::vector<int> stepsFor(const Model& m, double weeks)
{
    const int depth = weeks <= 8 ? 1 : (weeks <= 26 ? 2 : 3);
    std::vector<int> chosen;
    for (size_t i = 0; i < m.steps.size(); ++i)
        if (m.steps[i]->depth <= depth)
            chosen.push_back(int(i));
    if (chosen.empty())
        chosen.push_back(0);
    return chosen;
}

/// Writes the chart tokens of a register row through the program's own procedure, on a
/// register screen that is never shown: the procedure reads its fields.
class ChartWriter
{
public:
    ChartWriter() : m_form(std::make_unique<execution::Form7>()) { }

    void write(const RegisterRow& r)
    {
        ensureRow(r);
        m_form->ID_MOD->setText(QString::number(r.model->id));
        m_form->ID_NUM->setText(QString::number(r.idNum));
        m_form->DataCombo4->setText(r.kind.name);
        m_form->Txt_Man_Tip->setText(r.kind.name);
        m_form->txtFrequenza->setText(vb::CStr(r.kind.weeks));
        m_form->DTPicker1->setValue(Variant::fromDate(r.ultima));
        execution::Update_Planned_Row(*m_form);
    }

    /// The stop shift of the register's load, on the stop records just written.
    void applyStopShift() { m_form->Apply_Stop_Shift(); }

private:
    // The machine's row of the chart, as the register's save makes sure of it.
    void ensureRow(const RegisterRow& r)
    {
        Recordset rs;
        rs.Open(QStringLiteral("Select * from Tbl_Planned where ID_MODELLO = %1 AND ID_NUM = %2")
                    .arg(r.model->id)
                    .arg(r.idNum));
        if (!rs.Eof())
            return;
        rs.AddNew();
        rs.Fields(QStringLiteral("ID_MODELLO")) = r.model->id;
        rs.Fields(QStringLiteral("Macchina")) = r.model->macchina;
        rs.Fields(QStringLiteral("Modello")) = r.model->modello;
        rs.Fields(QStringLiteral("ID_NUM")) = r.idNum;
        rs.Fields(QStringLiteral("Numerazione")) = r.numerazione;
        rs.UpdateBatch();
    }

    std::unique_ptr<execution::Form7> m_form;
};

/// Runs a screen's procedure with its boxes answered from `answers`, and puts the boxes
/// away: nobody is there to read them.
void answered(const std::vector<int>& answers, const std::function<void()>& work)
{
    const bool scripted = vb::MsgBoxService::scripted();
    vb::MsgBoxService::setScripted(true);
    vb::MsgBoxService::queueAnswers(answers);
    work();
    vb::MsgBoxService::setScripted(scripted);
    vb::MsgBoxService::takeShown();
}

/// Books each intervention's withdrawal the way the interventions screen does, on a
/// screen that is never shown: the part typed as a description (its stock and minimum
/// come with it), the quantity, and the screen's own Update_Stock, whose box is answered.
class WithdrawalCounter
{
public:
    WithdrawalCounter() : m_form(std::make_unique<spares::Form14>()) { }

    void withdraw(const QString& category, const QString& description, int quantity)
    {
        m_form->Clear_Fields();
        m_form->DataCombo1->setText(category);
        m_form->DataCombo5->setText(description);
        m_form->Txt_prelievo->setText(QString::number(quantity));
        answered({}, [this] { m_form->Update_Stock(); });
    }

private:
    std::unique_ptr<spares::Form14> m_form;
};

/// Books each arrival the way the orders screen does, on a screen that is never shown:
/// the evasion date chosen among the dates, the line chosen in the grid, the arrival's
/// catch ticked and its question answered Yes. The screen dates the arrival by the clock,
/// so the clock stands on the day the goods came while it books them.
class DeliveryCounter
{
public:
    DeliveryCounter() : m_form(std::make_unique<spares::Form19>()) { m_form->Fill_History_Dates(); }

    void receive(const OrderLine& line)
    {
        spares::Form19& f = *m_form;
        const int date = f.List2->items().indexOf(vb::ShortDate(line.evaded));
        if (date != f.List2->ListIndex())
            f.List2->setListIndex(date);
        bool chosen = false;
        for (int r = 0; r < f.DataGrid2->RecordCount() && !chosen; ++r) {
            chosen = f.DataGrid2->cellValue(r, 0).toLong() == line.id;
            if (chosen)
                f.DataGrid2->setRow(r);
        }
        // Only a line the screen offers for confirmation, as a user would find it.
        if (!chosen || f.Check2->isHidden())
            return;
        f.Check2->setValue(1);
        const bool frozen = vb::Clock::frozen();
        const QDateTime now = vb::Clock::now();
        vb::Clock::freeze(QDateTime(line.arrived, now.time()));
        answered({vb::answer::Yes}, [&f] { f.Cmd_Confirm_Click(); });
        if (frozen)
            vb::Clock::freeze(now);
        else
            vb::Clock::unfreeze();
    }

private:
    std::unique_ptr<spares::Form19> m_form;
};

int countWhere(const QString& condition)
{
    Recordset rs;
    rs.Open(QStringLiteral("SELECT Count(ID) AS N FROM Tbl_Maintenance WHERE ") + condition);
    return rs.Fields(QStringLiteral("N")).Value().toLong();
}

class Builder
{
public:
    Builder(std::uint64_t seed) : rng(seed), today(vb::Clock::today()) { }

    PlantSummary run()
    {
        upgrade();
        kinds = readKinds();
        makeDepartments();
        makeModels();
        makeProcedures();
        makeOperators();
        makeAssignments();
        makeRegister();
        makeStops();
        makeStore();
        makeSuppliers();
        planOrders();
        planInterventions();
        writeMovements();
        makeOpenOrder();
        makeNotes();
        s.overdue = countWhere(QStringLiteral("Prossima < Date()"));
        s.dueToday = countWhere(QStringLiteral("Prossima = Date()"));
        s.dueTomorrow = countWhere(QStringLiteral("Prossima = Date()+1"));
        return s;
    }

private:
    Random rng;
    QDate today;
    PlantSummary s;
    std::vector<Kind> kinds;
    std::vector<std::pair<int, QString>> reparti;
    std::vector<Model> models;
    std::vector<Assignment> assignments;
    std::vector<RegisterRow> rows;
    std::vector<std::pair<int, QString>> staff; ///< ID_OPERATORE, Operatore (still employed)
    std::vector<Part> parts;
    std::vector<std::pair<int, QString>> causes;
    std::vector<std::pair<int, QString>> fornitori;
    std::vector<OrderLine> history;
    std::vector<Use> uses;

    const Kind& kindNamed(const char* name) const
    {
        for (const Kind& k : kinds)
            if (k.name == QLatin1String(name))
                return k;
        throw vb::VBError(3021, QStringLiteral("Tipo di manutenzione mancante: %1").arg(QLatin1String(name)));
    }

    // The start-up's upgrade, so that the store has the columns and the sheet table a
    // started program has.
    void upgrade()
    {
        for (const QString& statement : shell::frmMain::upgradeStatements()) {
            try {
                store::DataStore::instance().Execute(statement);
            } catch (const vb::VBError&) {
                // already there
            }
        }
    }

    void makeDepartments()
    {
        std::vector<const char*> names = departments();
        const int n = rng.between(4, int(names.size()));
        // Departments whose machines are all drawn stay; the list keeps its order.
        for (int i = 0; i < int(names.size()); ++i) {
            if (i >= n && i != 5)
                continue;
            const QString name = text(names[size_t(i)]);
            const int id = addRow(QStringLiteral("Tbl_Reparto"), QStringLiteral("ID_Reparto"),
                                  [&](Recordset& rs) { rs.Fields(QStringLiteral("Reparto")) = name; });
            reparti.emplace_back(id, name);
        }
        s.departments = int(reparti.size());
    }

    std::pair<int, QString> departmentOf(const MachineKind& k) const
    {
        const QString wanted = text(departments()[size_t(k.department)]);
        for (const auto& r : reparti)
            if (r.second == wanted)
                return r;
        return reparti.back(); // a department not drawn: the general services take it
    }

    void makeModels()
    {
        int total = 0;
        for (const MachineKind& k : machineKinds())
            total += int(k.models.size());
        int toDrop = rng.between(0, std::max(0, total - 25) / 2);
        for (const MachineKind& k : machineKinds()) {
            for (const char* name : k.models) {
                if (toDrop > 0 && &k != &machineKinds().front() && rng.chance(0.12)) {
                    --toDrop;
                    continue;
                }
                Model m;
                m.kind = &k;
                m.macchina = text(k.macchina);
                m.modello = text(name);
                const int state = rng.weighted({86, 6, 5, 3});
                m.active = state != 3;
                const auto reparto = departmentOf(k);
                const QString stato = text(machineStates()[size_t(state)]);
                const QString maker = text(rng.pick(k.makers));
                const QString anno = QString::number(rng.between(1996, today.year() - 1));
                m.id = addRow(QStringLiteral("Tbl_Macchina"), QStringLiteral("ID_MODELLO"), [&](Recordset& rs) {
                    rs.Fields(QStringLiteral("Macchina")) = m.macchina;
                    rs.Fields(QStringLiteral("Modello")) = m.modello;
                    rs.Fields(QStringLiteral("Stato")) = stato;
                    rs.Fields(QStringLiteral("ID_REPARTO")) = reparto.first;
                    rs.Fields(QStringLiteral("REPARTO")) = reparto.second;
                    rs.Fields(QStringLiteral("Costruttore")) = maker;
                    rs.Fields(QStringLiteral("Anno")) = anno;
                });
                for (int number : unitNumbers(rng, rng.between(2, 8))) {
                    const QString numerazione = QString::number(number);
                    const int idNum =
                        addRow(QStringLiteral("Tbl_Numerazione"), QStringLiteral("ID_NUM"), [&](Recordset& rs) {
                            rs.Fields(QStringLiteral("Numerazione")) = numerazione;
                            rs.Fields(QStringLiteral("ID_MODELLO")) = m.id;
                        });
                    m.units.emplace_back(idNum, numerazione);
                }
                s.units += int(m.units.size());
                models.push_back(std::move(m));
            }
        }
        s.models = int(models.size());
    }

    // General procedures: a model out of service has none, so it cannot be scheduled.
    void makeProcedures()
    {
        for (Model& m : models) {
            if (!m.active)
                continue;
            const int available = int(m.kind->steps.size());
            const int n = rng.between(std::min(3, available), available);
            std::vector<int> picked = rng.sample(0, available - 1, n);
            double total = 0;
            for (int i : picked) {
                const StepText& st = m.kind->steps[size_t(i)];
                m.steps.push_back(&st);
                const int minutes = rng.between(st.minutesLow / 5, st.minutesHigh / 5) * 5;
                m.stepMinutes.push_back(std::max(5, minutes));
                total += m.stepMinutes.back();
            }
            addRow(QStringLiteral("Tbl_Proc_General_Macc"), QStringLiteral("ID"), [&](Recordset& rs) {
                rs.Fields(QStringLiteral("ID_MODELLO")) = m.id;
                rs.Fields(QStringLiteral("Macchina")) = m.macchina;
                rs.Fields(QStringLiteral("Modello")) = m.modello;
                rs.Fields(QStringLiteral("Tempo_Minuti")) = total;
            });
            for (size_t i = 0; i < m.steps.size(); ++i) {
                addRow(QStringLiteral("Tbl_Proc_General"), QStringLiteral("ID_Procedura"), [&](Recordset& rs) {
                    rs.Fields(QStringLiteral("ID_MODELLO")) = m.id;
                    rs.Fields(QStringLiteral("Num")) = Variant::fromInteger(std::int16_t(i + 1));
                    rs.Fields(QStringLiteral("Titolo")) = text(m.steps[i]->titolo);
                    rs.Fields(QStringLiteral("Procedura")) = text(m.steps[i]->procedura);
                    rs.Fields(QStringLiteral("Minuti")) = double(m.stepMinutes[i]);
                });
            }
        }
    }

    void makeOperators()
    {
        const auto& all = operators();
        const int left = rng.between(0, int(all.size()) - 1); // one has left the firm
        for (int i = 0; i < int(all.size()); ++i) {
            const OperatorText& o = all[size_t(i)];
            const QDate born(rng.between(1962, 1998), rng.between(1, 12), rng.between(1, 28));
            const QDate hired(std::min(today.year() - 1, born.year() + rng.between(19, 30)), rng.between(1, 12), 1);
            const bool gone = i == left;
            const int id = addRow(QStringLiteral("Tbl_Operatore"), QStringLiteral("ID_OPERATORE"), [&](Recordset& rs) {
                rs.Fields(QStringLiteral("Operatore")) = text(o.nome);
                rs.Fields(QStringLiteral("Qualifica")) = text(o.qualifica);
                rs.Fields(QStringLiteral("Data_Nascita")) = Variant::fromDate(born);
                rs.Fields(QStringLiteral("Inizio_Rapp")) = Variant::fromDate(hired);
                // A running employment has no end date (Null: "nothing", not ten characters).
                if (gone)
                    rs.Fields(QStringLiteral("Fine_Rapp")) = Variant::fromDate(today.addDays(-rng.between(60, 400)));
                rs.Fields(QStringLiteral("Tipo")) = text(o.tipo);
            });
            if (!gone)
                staff.emplace_back(id, text(o.nome));
        }
        s.operators = int(all.size());
    }

    void makeAssignments()
    {
        // Monthly to two-yearly; weekly work is done by the production crews here.
        const std::vector<const char*> names = {"Mensile",    "Bimestrale", "Trimestrale",
                                                "Semestrale", "Annuale",    "Biennale"};
        const std::vector<int> weights = {3, 3, 4, 4, 4, 1};
        for (const Model& m : models) {
            if (!m.active)
                continue;
            const int n = rng.weighted({4, 5, 3}) + 1;
            std::vector<int> chosen;
            while (int(chosen.size()) < n) {
                const int k = rng.weighted(weights);
                if (std::find(chosen.begin(), chosen.end(), k) == chosen.end())
                    chosen.push_back(k);
            }
            std::sort(chosen.begin(), chosen.end());
            for (int k : chosen)
                assign(m, kindNamed(names[size_t(k)]));
        }
        s.assignments = int(assignments.size());
    }

    void assign(const Model& m, const Kind& kind)
    {
        const QDate created = today.addDays(-rng.between(420, 900));
        const int id = addRow(QStringLiteral("Tbl_Assegna_M"), QStringLiteral("ID"), [&](Recordset& rs) {
            rs.Fields(QStringLiteral("ID_MODELLO")) = m.id;
            rs.Fields(QStringLiteral("ID_MAINT_TIPO")) = kind.id;
            rs.Fields(QStringLiteral("Macchina")) = m.macchina;
            rs.Fields(QStringLiteral("Modello")) = m.modello;
            rs.Fields(QStringLiteral("Manutenzione_Tipo")) = kind.name;
        });
        // The sheet: revision 0 when assigned, one more for every step inserted.
        const std::vector<int> steps = stepsFor(m, kind.weeks);
        const QString scheda = shell::sheetCode(m.id, kind.id, m.macchina, m.modello, kind.name);
        addRow(QStringLiteral("Tbl_Certif_Proced_Manut"), {}, [&](Recordset& rs) {
            rs.Fields(QStringLiteral("ID_Assegna_M")) = Variant::fromInteger(std::int16_t(id));
            rs.Fields(QStringLiteral("Scheda")) = scheda;
            rs.Fields(QStringLiteral("Data_Scheda")) = Variant::fromDate(created);
            rs.Fields(QStringLiteral("Rev")) = Variant::fromInteger(std::int16_t(steps.size()));
            rs.Fields(QStringLiteral("Data_Rev")) = Variant::fromDate(created.addDays(rng.between(0, 30)));
        });
        for (int i : steps) {
            addRow(QStringLiteral("Tbl_ProcedureM"), QStringLiteral("ID_Procedura"), [&](Recordset& rs) {
                rs.Fields(QStringLiteral("ID_MODELLO")) = m.id;
                rs.Fields(QStringLiteral("ID_MAINT_TIPO")) = kind.id;
                rs.Fields(QStringLiteral("Num")) = Variant::fromInteger(std::int16_t(i + 1));
                rs.Fields(QStringLiteral("Titolo")) = text(m.steps[size_t(i)]->titolo);
                rs.Fields(QStringLiteral("Procedura")) = text(m.steps[size_t(i)]->procedura);
                rs.Fields(QStringLiteral("Minuti")) = double(m.stepMinutes[size_t(i)]);
            });
        }
        // Minutes, hours, units and the week's share: the program's own computation.
        const definition::WorkloadFigures f = definition::Recompute_Workload(m.id, kind.id);
        assignments.push_back({&m, kind, f.found ? f.S.toDouble() : 0.0});
    }

    void makeRegister()
    {
        for (const Assignment& a : assignments)
            for (const auto& [idNum, numero] : a.model->units)
                rows.push_back({0, a.model, idNum, numero, a.kind, a.minutes, {}, {}});
        // A few rows fall due around the demo day, the rest spread over their cycle. The
        // overdue ones are three days late or more: the start-up passes over one or two.
        const int special = std::min<int>(int(rows.size()), rng.between(9, 13));
        std::vector<int> picked = rng.sample(0, int(rows.size()) - 1, special);
        rng.shuffle(picked);
        std::vector<int> offset(rows.size(), 0);
        for (size_t i = 0; i < rows.size(); ++i)
            offset[i] = rng.between(2, std::max(2, int(rows[i].kind.weeks * 7) - 1));
        const int overdue = special - 6;
        for (int j = 0; j < special; ++j) {
            const int i = picked[size_t(j)];
            offset[size_t(i)] = j < overdue ? -rng.between(3, 20) : (j < overdue + 3 ? 0 : 1);
        }
        m_chart = std::make_unique<ChartWriter>();
        ChartWriter& chart = *m_chart;
        for (size_t i = 0; i < rows.size(); ++i) {
            RegisterRow& r = rows[i];
            r.prossima = today.addDays(offset[i]);
            r.ultima = r.prossima.addDays(-qint64(r.kind.weeks * 7));
            const bool named = rng.chance(0.85);
            const auto& who = rng.pick(staff);
            r.id = addRow(QStringLiteral("Tbl_Maintenance"), QStringLiteral("ID"), [&](Recordset& rs) {
                rs.Fields(QStringLiteral("ID_MODELLO")) = r.model->id;
                rs.Fields(QStringLiteral("ID_MAINT_TIPO")) = r.kind.id;
                rs.Fields(QStringLiteral("Macchina")) = r.model->macchina;
                rs.Fields(QStringLiteral("Modello")) = r.model->modello;
                rs.Fields(QStringLiteral("ID_NUM")) = r.idNum;
                rs.Fields(QStringLiteral("Numerazione")) = r.numerazione;
                rs.Fields(QStringLiteral("Manutenzione_Tipo")) = r.kind.name;
                rs.Fields(QStringLiteral("Frequenza_Sett")) = r.kind.weeks;
                rs.Fields(QStringLiteral("Ultima")) = Variant::fromDate(r.ultima);
                rs.Fields(QStringLiteral("Prossima")) = Variant::fromDate(r.prossima);
                rs.Fields(QStringLiteral("Tempo_Minuti")) = r.minutes;
                rs.Fields(QStringLiteral("Operatore")) = named ? who.second : QString();
                if (named)
                    rs.Fields(QStringLiteral("ID_Operatore")) = who.first;
            });
            chart.write(r);
        }
        s.registerRows = int(rows.size());
    }

    // Two machines stand still now, two ran again after a stop. Each stop record is the
    // one the register's stop command leaves: one row per unit, holding the type walked
    // last, its counters raised once for every maintenance of the unit.
    void makeStops()
    {
        std::map<int, std::vector<const RegisterRow*>> byUnit;
        for (const RegisterRow& r : rows)
            byUnit[r.idNum].push_back(&r);
        std::vector<int> candidates;
        for (const auto& [idNum, unitRows] : byUnit) {
            bool calm = true;
            for (const RegisterRow* r : unitRows)
                calm = calm && r->prossima > today.addDays(1);
            if (calm && unitRows.size() == 1)
                candidates.push_back(idNum);
        }
        if (candidates.size() < 4) {
            for (const auto& [idNum, unitRows] : byUnit)
                if (std::find(candidates.begin(), candidates.end(), idNum) == candidates.end())
                    candidates.push_back(idNum);
        }
        rng.shuffle(candidates);
        for (int i = 0; i < 4 && i < int(candidates.size()); ++i) {
            const auto& unitRows = byUnit[candidates[size_t(i)]];
            const int walks = int(unitRows.size());
            const bool stoppedNow = i < 2;
            const int days = rng.between(3, 15);
            addRow(QStringLiteral("Tbl_Fermi_Macchina"), {}, [&](Recordset& rs) {
                rs.Fields(QStringLiteral("ID_NUM")) = candidates[size_t(i)];
                rs.Fields(QStringLiteral("ID_MAINT_TIPO")) = unitRows.back()->kind.id;
                rs.Fields(QStringLiteral("Ferma_Dal")) =
                    stoppedNow ? Variant(vb::ShortDate(today.addDays(-days))) : Variant::null();
                rs.Fields(QStringLiteral("Giorni_Stop")) = Variant::fromInteger(0);
                rs.Fields(QStringLiteral("TOT_Giorni_Stop")) =
                    Variant::fromInteger(std::int16_t(stoppedNow ? 0 : days * walks));
                rs.Fields(QStringLiteral("Numero_Stop")) = Variant::fromInteger(std::int16_t(walks));
            });
            (stoppedNow ? s.stoppedNow : s.restarted) += 1;
        }
        m_chart->applyStopShift();
    }

    void makeStore()
    {
        for (const PartCategory& c : partCategories()) {
            const QString ricambi = text(c.ricambi);
            const QString unita = text(c.unita);
            const int idRicambi =
                addRow(QStringLiteral("Tbl_Ricambi"), QStringLiteral("ID_RICAMBI"), [&](Recordset& rs) {
                    rs.Fields(QStringLiteral("Ricambi")) = ricambi;
                    rs.Fields(QStringLiteral("Unita_Misura")) = unita;
                });
            for (const PartText& t : c.parts) {
                Part p;
                p.idRicambi = idRicambi;
                p.ricambi = ricambi;
                p.unita = unita;
                p.descrizione = text(t.descrizione);
                p.codice = text(t.codice);
                p.scorta = unita == QLatin1String("pz") ? rng.between(2, 6) : rng.between(2, 6) * 5;
                p.id = addRow(QStringLiteral("Tbl_Descrizione_Ricambi"), QStringLiteral("ID_DESCRIZIONE_RICAMBI"),
                              [&](Recordset& rs) {
                                  rs.Fields(QStringLiteral("Ricambi")) = p.ricambi;
                                  rs.Fields(QStringLiteral("Costo")) = t.costo;
                                  rs.Fields(QStringLiteral("NOTE")) = QString();
                                  rs.Fields(QStringLiteral("Giacenza")) = 0.0;
                                  rs.Fields(QStringLiteral("Scorta")) = p.scorta;
                                  rs.Fields(QStringLiteral("Descrizione")) = p.descrizione;
                                  rs.Fields(QStringLiteral("ID_Ricambi")) = p.idRicambi;
                                  rs.Fields(QStringLiteral("Codice")) = p.codice;
                              });
                parts.push_back(p);
            }
        }
        // Stock on the demo day: some parts under the minimum, some at it, one just above
        // it (the last piece), the rest comfortably above.
        std::vector<int> order(parts.size());
        for (size_t i = 0; i < order.size(); ++i)
            order[i] = int(i);
        rng.shuffle(order);
        for (size_t j = 0; j < order.size(); ++j) {
            Part& p = parts[size_t(order[j])];
            const int sc = int(p.scorta);
            if (j < 3)
                p.target = rng.between(0, sc - 1);
            else if (j < 5)
                p.target = sc;
            else if (j < 6)
                p.target = sc + 1;
            else
                p.target = sc + rng.between(2, 3 * sc);
        }
        for (const char* c : interventionCauses()) {
            const QString name = text(c);
            causes.emplace_back(addRow(QStringLiteral("Tbl_Causa_Intervento"), QStringLiteral("ID_CAUSA"),
                                       [&](Recordset& rs) { rs.Fields(QStringLiteral("Causa_Interv")) = name; }),
                                name);
        }
        s.parts = int(parts.size());
    }

    void makeSuppliers()
    {
        for (const SupplierText& f : suppliers()) {
            const QString name = text(f.fornitore);
            QString piva;
            for (int i = 0; i < 11; ++i)
                piva += QChar(u'0' + rng.between(0, 9));
            const QString prefix = QStringLiteral("0%1").arg(rng.between(30, 99));
            const QString tel = QStringLiteral("%1 %2").arg(prefix).arg(rng.between(200000, 999999));
            const QString fax = QStringLiteral("%1 %2").arg(prefix).arg(rng.between(200000, 999999));
            const QString domain =
                name.toLower().replace(QLatin1Char(' '), QLatin1Char('-')) + QStringLiteral(".example");
            const int id = addRow(QStringLiteral("Tbl_Fornitori"), QStringLiteral("ID_FORNITORE"), [&](Recordset& rs) {
                rs.Fields(QStringLiteral("Fornitore")) = name;
                rs.Fields(QStringLiteral("Nome_Soceta")) = text(f.societa);
                rs.Fields(QStringLiteral("Part_IVA/Cod_Fisc")) = piva;
                rs.Fields(QStringLiteral("Via")) = text(f.via);
                rs.Fields(QStringLiteral("CAP")) = text(f.cap);
                rs.Fields(QStringLiteral("Citta/Paese")) = text(f.citta);
                rs.Fields(QStringLiteral("Provincia")) = text(f.provincia);
                rs.Fields(QStringLiteral("Tel")) = tel;
                rs.Fields(QStringLiteral("Fax")) = fax;
                rs.Fields(QStringLiteral("Email")) = QStringLiteral("ordini@") + domain;
                rs.Fields(QStringLiteral("Url")) = QStringLiteral("www.") + domain;
            });
            fornitori.emplace_back(id, name);
        }
    }

    // Evaded orders of the last year: the older ones received, the latest still waiting
    // for their goods.
    void planOrders()
    {
        const int evasions = rng.between(4, 6);
        std::vector<int> ages = rng.sample(3, 360, evasions);
        std::reverse(ages.begin(), ages.end());
        for (int e = 0; e < evasions; ++e) {
            const QDate evaded = today.addDays(-ages[size_t(e)]);
            const bool latest = e == evasions - 1;
            const int lines = rng.between(2, 5);
            for (int l = 0; l < lines; ++l) {
                OrderLine line;
                line.evaded = evaded;
                line.part = rng.between(0, int(parts.size()) - 1);
                Part& p = parts[size_t(line.part)];
                line.quantity = p.unita == QLatin1String("pz") ? rng.between(2, 10) : rng.between(2, 8) * 5;
                line.fornitore = rng.pick(fornitori);
                if (latest && l == 0) {
                    // The latest order has begun to arrive: its first line came two days on.
                    line.arrived = std::min(today.addDays(-1), evaded.addDays(2));
                    p.received += line.quantity;
                } else if (!(latest || (e == evasions - 2 && rng.chance(0.4)))) {
                    line.arrived = std::min(today.addDays(-1), evaded.addDays(rng.between(4, 15)));
                    p.received += line.quantity;
                }
                history.push_back(line);
            }
        }
        s.evadedOrderLines = int(history.size());
    }

    // The interventions of two years, drawn before any is written, so that the store can
    // start from the stock that leads, through every booking, to the demo day's.
    void planInterventions()
    {
        std::vector<const Model*> working;
        for (const Model& m : models)
            if (m.active)
                working.push_back(&m);
        const int n = rng.between(350, 450);
        for (int i = 0; i < n; ++i) {
            Use u;
            u.date = today.addDays(-rng.between(1, 730));
            u.model = rng.pick(working);
            u.unit = rng.pick(u.model->units);
            u.part = rng.between(0, int(parts.size()) - 1);
            Part& p = parts[size_t(u.part)];
            u.quantity = p.unita == QLatin1String("pz") ? rng.weighted({6, 3, 1}) + 1 : rng.between(1, 8) * 2;
            u.destinazione = text(rng.pick(u.model->kind->destinations));
            u.cause = causes[size_t(rng.weighted({30, 25, 12, 10, 8, 6, 6, 3}))];
            p.consumed += u.quantity;
            uses.push_back(u);
        }
        std::stable_sort(uses.begin(), uses.end(), [](const Use& a, const Use& b) { return a.date < b.date; });
    }

    void writeMovements()
    {
        // The stock counted when the store was first entered, set by hand as the parts
        // screen does.
        for (const Part& p : parts) {
            Recordset rs;
            rs.Open(QStringLiteral("Select * from Tbl_Descrizione_Ricambi where ID_DESCRIZIONE_RICAMBI =%1").arg(p.id));
            rs.Fields(QStringLiteral("Giacenza")) = std::max(0.0, p.target + p.consumed - p.received);
            rs.UpdateBatch();
        }
        // The evaded lines, each waiting under the column's default "Non Ricevuto" until the
        // orders screen books its arrival.
        for (OrderLine& line : history) {
            const Part& p = parts[size_t(line.part)];
            auto fill = [&](Recordset& rs) {
                rs.Fields(QStringLiteral("DATA")) = Variant::fromDate(line.evaded);
                rs.Fields(QStringLiteral("ID_RICAMBI")) = p.idRicambi;
                rs.Fields(QStringLiteral("Ricambi")) = p.ricambi;
                rs.Fields(QStringLiteral("ID_DESCRIZIONE_RICAMBI")) = p.id;
                rs.Fields(QStringLiteral("Descrizione")) = p.descrizione;
                rs.Fields(QStringLiteral("Codice")) = p.codice;
                rs.Fields(QStringLiteral("Quantita")) = double(line.quantity);
                rs.Fields(QStringLiteral("ID_FORNITORE")) = line.fornitore.first;
                rs.Fields(QStringLiteral("Fornitore")) = line.fornitore.second;
            };
            line.id = addRow(QStringLiteral("Tbl_Historian_Orders"), QStringLiteral("ID_Historian_Orders"), fill);
        }
        std::vector<const OrderLine*> arrivals;
        for (const OrderLine& line : history)
            if (line.arrived.isValid())
                arrivals.push_back(&line);
        std::stable_sort(arrivals.begin(), arrivals.end(),
                         [](const OrderLine* a, const OrderLine* b) { return a->arrived < b->arrived; });
        size_t next = 0;
        DeliveryCounter deliveries;
        auto deliverUntil = [&](const QDate& day) {
            for (; next < arrivals.size() && arrivals[next]->arrived <= day; ++next)
                deliveries.receive(*arrivals[next]);
        };
        WithdrawalCounter counter;
        for (const Use& u : uses) {
            deliverUntil(u.date);
            const Part& p = parts[size_t(u.part)];
            addRow(QStringLiteral("Tbl_Ricerca"), QStringLiteral("ID"), [&](Recordset& rs) {
                rs.Fields(QStringLiteral("DATA")) = Variant::fromDate(u.date);
                rs.Fields(QStringLiteral("ID_MODELLO")) = u.model->id;
                rs.Fields(QStringLiteral("Macchina")) = u.model->macchina;
                rs.Fields(QStringLiteral("Modello")) = u.model->modello;
                rs.Fields(QStringLiteral("ID_NUM")) = u.unit.first;
                rs.Fields(QStringLiteral("Numerazione")) = u.unit.second;
                rs.Fields(QStringLiteral("ID_DESCRIZIONE_RICAMBI")) = p.id;
                rs.Fields(QStringLiteral("Descrizione")) = p.descrizione;
                rs.Fields(QStringLiteral("ID_RICAMBI")) = p.idRicambi;
                rs.Fields(QStringLiteral("Ricambi")) = p.ricambi;
                rs.Fields(QStringLiteral("Quantita")) = double(u.quantity);
                rs.Fields(QStringLiteral("Destinazione")) = u.destinazione;
                rs.Fields(QStringLiteral("ID_CAUSA")) = u.cause.first;
            });
            counter.withdraw(p.ricambi, p.descrizione, u.quantity);
        }
        deliverUntil(today);
        s.interventions = int(uses.size());
    }

    // The open order: what runs short, from a supplier.
    void makeOpenOrder()
    {
        for (const Part& p : parts) {
            if (p.target >= p.scorta || s.openOrderLines >= 4)
                continue;
            const auto& f = rng.pick(fornitori);
            const double qty = p.scorta * 2 - p.target;
            addRow(QStringLiteral("Tbl_Order"), QStringLiteral("ID"), [&](Recordset& rs) {
                rs.Fields(QStringLiteral("ID_RICAMBI")) = p.idRicambi;
                rs.Fields(QStringLiteral("Ricambi")) = p.ricambi;
                rs.Fields(QStringLiteral("ID_DESCRIZIONE_RICAMBI")) = p.id;
                rs.Fields(QStringLiteral("Descrizione")) = p.descrizione;
                rs.Fields(QStringLiteral("Codice")) = p.codice;
                rs.Fields(QStringLiteral("Quantita")) = qty;
                rs.Fields(QStringLiteral("ID_FORNITORE")) = f.first;
                rs.Fields(QStringLiteral("Fornitore")) = f.second;
            });
            ++s.openOrderLines;
        }
    }

    void makeNotes()
    {
        const auto& texts = machineNotes();
        std::vector<int> picked = rng.sample(0, int(rows.size()) - 1, int(texts.size()));
        rng.shuffle(picked);
        for (size_t i = 0; i < texts.size() && i < picked.size(); ++i) {
            const RegisterRow& r = rows[size_t(picked[i])];
            const QDate when = std::min(today, r.ultima.addDays(rng.between(0, 3)));
            addNote(r.id, r.model->id, r.idNum, when, texts[i]);
        }
        for (const NoteText& t : generalNotes())
            addNote(0, 0, 0, today.addDays(-rng.between(1, 60)), t);
    }

    void addNote(int idMaintenance, int idModello, int idNum, const QDate& when, const NoteText& t)
    {
        const auto& who = rng.pick(staff);
        addRow(QStringLiteral("Tbl_Maintenance_Note"), QStringLiteral("ID"), [&](Recordset& rs) {
            rs.Fields(QStringLiteral("ID_MAINTENANCE")) = idMaintenance;
            rs.Fields(QStringLiteral("ID_MODELLO")) = idModello;
            rs.Fields(QStringLiteral("ID_NUM")) = idNum;
            rs.Fields(QStringLiteral("ID_OPERATORE")) = who.first;
            rs.Fields(QStringLiteral("Ultima")) = vb::ShortDate(when);
            rs.Fields(QStringLiteral("NOTE")) = text(t.testo);
            rs.Fields(QStringLiteral("Tipo_Nota")) = text(t.tipo);
            rs.Fields(QStringLiteral("Tipo_Nota2")) = text(t.tipo2);
        });
        ++s.notes;
    }

    std::unique_ptr<ChartWriter> m_chart;
};

} // namespace

bool storeHasData()
{
    // Tables a user fills first; the frequency kinds come with every new store.
    for (const char* table : {"Tbl_Reparto", "Tbl_Macchina", "Tbl_Maintenance", "Tbl_Descrizione_Ricambi",
                              "Tbl_Operatore", "Tbl_Ricerca", "Tbl_Fornitori"}) {
        Recordset rs;
        rs.Open(QStringLiteral("SELECT * FROM ") + QLatin1String(table));
        if (!rs.Eof())
            return true;
    }
    return false;
}

PlantSummary makeDemoPlant(std::uint64_t seed)
{
    Builder builder(seed);
    return builder.run();
}

QString describe(const PlantSummary& s)
{
    return QStringLiteral("Impianto dimostrativo: %1 reparti, %2 modelli, %3 macchine numerate, %4 manutenzioni "
                          "assegnate, %5 scadenze in registro (%6 scadute, %7 oggi, %8 domani), %9 macchine ferme, "
                          "%10 ricambi, %11 interventi, %12 operatori, %13 note.")
        .arg(s.departments)
        .arg(s.models)
        .arg(s.units)
        .arg(s.assignments)
        .arg(s.registerRows)
        .arg(s.overdue)
        .arg(s.dueToday)
        .arg(s.dueTomorrow)
        .arg(s.stoppedNow)
        .arg(s.parts)
        .arg(s.interventions)
        .arg(s.operators)
        .arg(s.notes);
}

} // namespace demo
