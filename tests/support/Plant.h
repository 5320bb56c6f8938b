#pragma once
// Seed rows for the screen tests, written through the store as a screen writes them. Each
// builder fills what the screens need and takes the rest as named fields, so a test names
// only what matters to it; every builder returns the row's key.

#include "runtime/Variant.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <utility>
#include <vector>

namespace kit {

/// Columns and their values; vb::Variant::null() leaves a column Null, "" stores "".
using Fields = std::vector<std::pair<QString, vb::Variant>>;

inline vb::Variant date(int y, int m, int d)
{
    return vb::Variant::fromDate(QDate(y, m, d));
}

class Plant
{
public:
    /// A row of any table; its key (the table's first column).
    int add(const QString& table, const Fields& fields);

    // ---- the plant --------------------------------------------------------------------
    int department(const QString& name);
    /// A machine model (Tbl_Macchina: Stato, ID_REPARTO, REPARTO, Costruttore, Anno...).
    int model(const QString& machine, const QString& model, const Fields& more = {});
    /// A numbered unit of a model.
    int unit(int model, const QString& number);
    void units(int model, const QStringList& numbers);

    // ---- procedures and assignments ---------------------------------------------------
    /// A model named in the general procedures (Tbl_Proc_General_Macc).
    int generalModel(int model, const QString& machine, const QString& modelName, const Fields& more = {});
    /// A general step of a model (Tbl_Proc_General).
    int generalStep(int model, int num, const QString& title, const QString& text, double minutes);
    /// An assignment of a maintenance type to a model (Tbl_Assegna_M).
    int assignment(int model, int type, const Fields& more = {});
    /// An assigned step (Tbl_ProcedureM).
    int step(int model, int type, int num, const QString& title, double minutes = 0, const QString& text = {});

    // ---- the register, its people and notes ------------------------------------------
    /// A register row (Tbl_Maintenance).
    int registerRow(const Fields& fields);
    int worker(const QString& name, const QString& qualification, const Fields& more = {});
    /// A note (Tbl_Maintenance_Note); the upgraded store has Tipo_Nota, Images, Percorso.
    int note(const Fields& fields);

    // ---- the spares -------------------------------------------------------------------
    int category(const QString& name, const QString& unitOfMeasure);
    /// A part of a category (Tbl_Descrizione_Ricambi: Codice, Costo, Giacenza, Scorta...).
    int part(int category, const QString& categoryName, const QString& description, const Fields& more = {});
    int supplier(const QString& name, const Fields& more = {});
    int cause(const QString& name);
    /// An intervention (Tbl_Ricerca).
    int intervention(const Fields& fields);

    /// The register's small plant: models 1 PRESSA AX100 (units 1 "1" and 2 "2"), 2
    /// TORNIO T200 (unit 3 "10") and 3 FRESA F10 (no units); types 2 Mensile and 3
    /// Bimestrale assigned to AX100 (30 and 60 minutes), 2 to T200 (45), each with a step
    /// "Olio" or "Filtri" (and a stray one of model 3); operator 1 ROSSI, Tecnico.
    void registerPlant();
};

} // namespace kit
