#include "support/Plant.h"

#include "store/DataStore.h"

namespace kit {

int Plant::add(const QString& table, const Fields& fields)
{
    store::Recordset rs;
    rs.Open(QStringLiteral("Select * from ") + table);
    rs.AddNew();
    const int key = int(rs.Fields(0).Value().toLong());
    for (const auto& [column, value] : fields)
        rs.Fields(column) = value;
    rs.UpdateBatch();
    return key;
}

namespace {
Fields with(Fields first, const Fields& more)
{
    first.insert(first.end(), more.begin(), more.end());
    return first;
}
} // namespace

int Plant::department(const QString& name)
{
    return add(QStringLiteral("Tbl_Reparto"), {{"Reparto", name}});
}

int Plant::model(const QString& machine, const QString& model, const Fields& more)
{
    return add(QStringLiteral("Tbl_Macchina"), with({{"Macchina", machine}, {"Modello", model}}, more));
}

int Plant::unit(int model, const QString& number)
{
    return add(QStringLiteral("Tbl_Numerazione"), {{"Numerazione", number}, {"ID_MODELLO", model}});
}

void Plant::units(int model, const QStringList& numbers)
{
    for (const QString& n : numbers)
        unit(model, n);
}

int Plant::generalModel(int model, const QString& machine, const QString& modelName, const Fields& more)
{
    return add(QStringLiteral("Tbl_Proc_General_Macc"),
               with({{"ID_MODELLO", model}, {"Macchina", machine}, {"Modello", modelName}}, more));
}

int Plant::generalStep(int model, int num, const QString& title, const QString& text, double minutes)
{
    return add(QStringLiteral("Tbl_Proc_General"),
               {{"ID_MODELLO", model}, {"Num", num}, {"Titolo", title}, {"Procedura", text}, {"Minuti", minutes}});
}

int Plant::assignment(int model, int type, const Fields& more)
{
    return add(QStringLiteral("Tbl_Assegna_M"), with({{"ID_MODELLO", model}, {"ID_MAINT_TIPO", type}}, more));
}

int Plant::step(int model, int type, int num, const QString& title, double minutes, const QString& text)
{
    Fields f{{"ID_MODELLO", model}, {"ID_MAINT_TIPO", type}, {"Num", num}, {"Titolo", title}};
    if (minutes != 0)
        f.push_back({"Minuti", minutes});
    if (!text.isEmpty())
        f.push_back({"Procedura", text});
    return add(QStringLiteral("Tbl_ProcedureM"), f);
}

int Plant::registerRow(const Fields& fields)
{
    return add(QStringLiteral("Tbl_Maintenance"), fields);
}

int Plant::worker(const QString& name, const QString& qualification, const Fields& more)
{
    return add(QStringLiteral("Tbl_Operatore"), with({{"Operatore", name}, {"Qualifica", qualification}}, more));
}

int Plant::note(const Fields& fields)
{
    return add(QStringLiteral("Tbl_Maintenance_Note"), fields);
}

int Plant::category(const QString& name, const QString& unitOfMeasure)
{
    return add(QStringLiteral("Tbl_Ricambi"), {{"Ricambi", name}, {"Unita_Misura", unitOfMeasure}});
}

int Plant::part(int category, const QString& categoryName, const QString& description, const Fields& more)
{
    return add(QStringLiteral("Tbl_Descrizione_Ricambi"),
               with({{"ID_Ricambi", category}, {"Ricambi", categoryName}, {"Descrizione", description}}, more));
}

int Plant::supplier(const QString& name, const Fields& more)
{
    return add(QStringLiteral("Tbl_Fornitori"), with({{"Fornitore", name}}, more));
}

int Plant::cause(const QString& name)
{
    return add(QStringLiteral("Tbl_Causa_Intervento"), {{"Causa_Interv", name}});
}

int Plant::intervention(const Fields& fields)
{
    return add(QStringLiteral("Tbl_Ricerca"), fields);
}

void Plant::registerPlant()
{
    const int press = model("PRESSA", "AX100");
    const int lathe = model("TORNIO", "T200");
    const int mill = model("FRESA", "F10");
    units(press, {"1", "2"});
    unit(lathe, "10");
    step(press, 2, 1, "Olio");
    step(press, 3, 1, "Filtri");
    step(lathe, 2, 1, "Olio");
    step(mill, 2, 1, "Olio");
    const struct
    {
        int model, type;
        const char *machine, *name, *typeName;
        double minutes;
    } assigned[] = {{press, 2, "PRESSA", "AX100", "Mensile", 30},
                    {press, 3, "PRESSA", "AX100", "Bimestrale", 60},
                    {lathe, 2, "TORNIO", "T200", "Mensile", 45}};
    for (const auto& a : assigned)
        assignment(a.model, a.type,
                   {{"Macchina", a.machine},
                    {"Modello", a.name},
                    {"Manutenzione_Tipo", a.typeName},
                    {"Tempo_Minuti", a.minutes}});
    worker("ROSSI", "Tecnico");
}

} // namespace kit
