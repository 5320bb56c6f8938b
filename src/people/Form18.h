#pragma once
/// @file Form18.h
/// The register of the maintenance staff ("MANUTENTORI"): one row of Tbl_Operatore per
/// person, the last job each one carried out, age and years of service worked out from
/// the dates, the searches by name and by qualification, and the list of operators with
/// their jobs on DataReport2.
///
/// Cmd_Edit's caption is the state: "MODIFICA" browsing and editing, "SALVA" inserting.
/// DTPicker4 shown means the employment has ended: a save writes its date into Fine_Rapp,
/// a hidden DTPicker4 writes 0, which is no date.
///
/// The three dates are true dates in the store. A value counts as a date when its text
/// has ten characters (dd/mm/yyyy): the 0 of a running employment reads back as a time of
/// day, and an empty column as nothing. Age and service are plain differences of the
/// years' four digits.

#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "controls/DateControls.h"
#include "controls/Form.h"
#include "runtime/Variant.h"

namespace people {

class Form18 : public vb::Form
{
public:
    explicit Form18(QWidget* owner = nullptr);

    /// Centre, the three pickers to today, DTPicker4 hidden, every operator.
    void Form_Load() override;

    // ---- the list ---------------------------------------------------------------------
    vb::DataGrid* DataGrid1; ///< the operators by name, on Adodc2
    vb::Adodc* Adodc2;
    vb::Label* Label1;          ///< "0peratori Presenti: {n}"
    vb::TextBox* Txt_Posizione; ///< hidden: the grid row selected, kept across a reload

    // ---- the operator -----------------------------------------------------------------
    vb::TextBox* TxtID_OPERATORE; ///< hidden: the key of the operator shown
    vb::TextBox* txtOperatore;
    vb::TextBox* Txt_Qualifica;
    vb::ComboBox* Combo1;              ///< "Interno" or "Esterno"
    vb::DTPicker* DTPicker2;           ///< birth
    vb::DTPicker* DTPicker1;           ///< start of employment
    vb::DTPicker* DTPicker4;           ///< end of employment, shown only when it has ended
    vb::CommandButton* Cmd_Dimissioni; ///< shows or hides DTPicker4
    vb::TextBox* Txt_Eta;              ///< age in years, worked out
    vb::TextBox* Txt_Rapporto;         ///< years of employment, worked out
    vb::Label* Label2;                 ///< "Operatore:"
    vb::Label* Label3;                 ///< "Qualifica:"
    vb::Label* Label4;                 ///< "Tipo Operatore:"
    vb::Label* Label5;                 ///< "Data di Nascita:"
    vb::Label* Label6;                 ///< "Data Inizio Rapporto:"
    vb::Label* Label7;                 ///< "Data Fine Rapporto:"
    vb::Label* Txt_Durata;             ///< "Durata Rapporto:"

    // ---- the last job -----------------------------------------------------------------
    vb::Frame* Frame3;       ///< "Ultimo Lavoro Eseguito"
    vb::DTPicker* DTPicker3; ///< its date, shown only when there is one
    vb::TextBox* Txt_Manutenzione;
    vb::TextBox* Txt_Modello;
    vb::TextBox* Txt_Numero;
    vb::Label* Label8;  ///< "In Data:"
    vb::Label* Label9;  ///< "Manutenzione:"
    vb::Label* Label10; ///< "Macchina:"
    vb::Label* Label11; ///< "Numero:"

    // ---- the searches -----------------------------------------------------------------
    vb::Frame* Frame4;  ///< "CERCA OPERATORE"
    vb::Frame* Frame1;  ///< "Cerca pe Operatore"
    vb::Frame* Frame2;  ///< "Cerca per Qualifica"
    vb::TextBox* Text1; ///< name begins with
    vb::TextBox* Text2; ///< qualification begins with

    // ---- commands ---------------------------------------------------------------------
    vb::CommandButton* Cmd_Add;     ///< "INSERISCI"
    vb::CommandButton* Cmd_Edit;    ///< "MODIFICA" / "SALVA"
    vb::CommandButton* Cmd_Delete;  ///< "ELIMINA"
    vb::CommandButton* Cmd_Vis_All; ///< "VISUALIZZA TUTTO": reload, no row selected
    vb::CommandButton* Cmd_Print;   ///< DataReport2
    vb::CommandButton* Cmd_Info;    ///< Info.txt on the date format

    void Show_Operators();
    void Load_All_Operators();
    void Clear_Operator_Fields();

    void DataGrid1_Click();
    void DataGrid1_RowColChange();
    void Text1_KeyUp();
    void Text2_KeyUp();
    void Cmd_Dimissioni_Click();
    void Cmd_Add_Click();
    void Cmd_Edit_Click();
    void Cmd_Delete_Click();
    void Cmd_Vis_All_Click();
    void Cmd_Print_Click();
    void Cmd_Info_Click();

private:
    void buildControls();
    /// A search as the user types: the statement's head, the text, "%' Order by Operatore".
    void search(vb::TextBox* box, const QString& before);
    /// Closes the screen and opens it again in its place; with backToRow the new screen
    /// goes to the row this one kept in Txt_Posizione, when that row still exists.
    Form18* reopen(bool backToRow);
};

/// The whole years between two dates as the screen counts them: the last four characters
/// of the later less those of the earlier, whatever the day and month. Null raises 94.
vb::Variant YearsBetween(const vb::Variant& later, const vb::Variant& earlier);

/// Whether a column's value is a date for the screen: its text is ten characters long.
bool IsTenCharacterDate(const vb::Variant& value);

} // namespace people
