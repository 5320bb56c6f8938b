#include "support/SparesTest.h"

#include "runtime/Helpers.h"

namespace kit {

void partsRegister(Plant& plant)
{
    const int screws = plant.category("VITE M8", "pz");
    plant.category("VITE", "pz");
    const int oil = plant.category("OLIO", "lt");
    plant.part(screws, "VITE M8", "Testa esagonale",
               {{"Codice", "V8-1"}, {"Costo", 0.35}, {"Giacenza", 100}, {"Scorta", 20}, {"NOTE", "zincata"}});
    plant.part(screws, "VITE M8", "Brugola", {{"Codice", "V8-2"}, {"Costo", 0.5}, {"Giacenza", 50}, {"Scorta", 10}});
    plant.part(oil, "OLIO", "Idraulico", {{"Costo", 1234.5}, {"Giacenza", 4}, {"Scorta", 2}});
    const struct
    {
        int part, model;
        const char *description, *machine, *modelName, *where;
    } fitted[] = {{1, 1, "Testa esagonale", "PRESSA", "AX100", "Reparto A"},
                  {1, 2, "Testa esagonale", "TORNIO", "T200", "Reparto B"},
                  {2, 2, "Brugola", "TORNIO", "T200", "Reparto B"}};
    for (const auto& i : fitted)
        plant.intervention({{"ID_DESCRIZIONE_RICAMBI", i.part},
                            {"Descrizione", i.description},
                            {"ID_RICAMBI", screws},
                            {"Ricambi", "VITE M8"},
                            {"ID_MODELLO", i.model},
                            {"Macchina", i.machine},
                            {"Modello", i.modelName},
                            {"Destinazione", i.where}});
}

} // namespace kit

void InterventionsTest::SetUp()
{
    RegisterTest::SetUp();
    const int bearings = plant.category("CUSCINETTI", "pz");
    const int oil = plant.category("OLIO", "lt");
    plant.part(bearings, "CUSCINETTI", "Radiale 6204", {{"Giacenza", 10}, {"Scorta", 2}});
    plant.part(bearings, "CUSCINETTI", "Assiale 51105", {{"Giacenza", 5}, {"Scorta", 2}});
    plant.part(oil, "OLIO", "Idraulico HLP46", {{"Giacenza", 3}, {"Scorta", 3}});
    plant.cause("Usura");
}

int InterventionsTest::addIntervention(int part, double quantity, const QDate& date, int cause, int unit,
                                       const QString& destination)
{
    static const char* const names[] = {"", "Radiale 6204", "Assiale 51105", "Idraulico HLP46"};
    const bool lathe = unit == 3;
    return kit::Plant().intervention({{"Data", vb::Variant::fromDate(date)},
                                      {"ID_MODELLO", lathe ? 2 : 1},
                                      {"Macchina", lathe ? "TORNIO" : "PRESSA"},
                                      {"Modello", lathe ? "T200" : "AX100"},
                                      {"ID_NUM", unit},
                                      {"Numerazione", lathe ? "10" : QString::number(unit)},
                                      {"ID_DESCRIZIONE_RICAMBI", part},
                                      {"Descrizione", names[part]},
                                      {"ID_RICAMBI", part == 3 ? 2 : 1},
                                      {"Ricambi", part == 3 ? "OLIO" : "CUSCINETTI"},
                                      {"Quantita", quantity},
                                      {"Destinazione", destination},
                                      {"ID_CAUSA", cause}});
}

double InterventionsTest::stock(int part)
{
    return value(QStringLiteral("SELECT Giacenza FROM Tbl_Descrizione_Ricambi WHERE ID_DESCRIZIONE_RICAMBI = %1")
                     .arg(part))
        .toDouble();
}

QString InterventionsTest::get(const QString& screen, const QString& what)
{
    return drive("get " + screen + "." + what).toVariant().toString();
}

QStringList InterventionsTest::grid(const QString& control)
{
    QStringList out;
    for (const QJsonValue& row : drive("grid " + control)["rows"].toArray()) {
        QStringList cells;
        for (const QJsonValue& c : row.toArray())
            cells << c.toVariant().toString();
        out << cells.join('|');
    }
    return out;
}
