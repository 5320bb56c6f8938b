#pragma once
/// @file PlantCatalogue.h
/// The words of the demo plant: departments, kinds of machine with their makers and
/// the working steps of their maintenance, spare-part categories and parts, causes,
/// suppliers, operators and notes, as an Italian maintenance department writes them.
/// The generator draws from these lists; nothing here is random.

#include <vector>

namespace demo {

/// One working step of a general procedure.
struct StepText
{
    const char* titolo;
    const char* procedura;
    int minutesLow;
    int minutesHigh;
    /// 1: every visit (checks, lubrication); 2: the periodic ones; 3: the overhaul only.
    int depth;
};

struct MachineKind
{
    const char* macchina;            ///< the kind, as the register writes it
    std::vector<const char*> models; ///< model names the makers give it
    std::vector<const char*> makers;
    std::vector<StepText> steps;           ///< in working order
    std::vector<const char*> destinations; ///< where on the machine a part goes
    int department;                        ///< index into departments()
};

struct PartText
{
    const char* descrizione;
    const char* codice;
    double costo;
};

struct PartCategory
{
    const char* ricambi;
    const char* unita;
    std::vector<PartText> parts;
};

struct SupplierText
{
    const char* fornitore;
    const char* societa;
    const char* via;
    const char* cap;
    const char* citta;
    const char* provincia;
};

struct OperatorText
{
    const char* nome;
    const char* qualifica;
    const char* tipo;
};

struct NoteText
{
    const char* tipo;  ///< Tipo_Nota
    const char* tipo2; ///< Tipo_Nota2
    const char* testo;
};

const std::vector<const char*>& departments();
const std::vector<MachineKind>& machineKinds();
const std::vector<const char*>& machineStates();
const std::vector<PartCategory>& partCategories();
const std::vector<const char*>& interventionCauses();
const std::vector<SupplierText>& suppliers();
const std::vector<OperatorText>& operators();
const std::vector<NoteText>& machineNotes();
const std::vector<NoteText>& generalNotes();

} // namespace demo
