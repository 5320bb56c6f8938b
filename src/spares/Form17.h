#pragma once
/// @file Form17.h
/// The supplier register ("STAMPA DISTINTE", frame "FORNITORI"): one row of Tbl_Fornitori
/// per supplier, its card in twelve fields, the print of one or all cards on DataReport13
/// and the cards of all suppliers written to SCHEDA_Fornitori.txt. A supplier's name is
/// copied into the order lines; an edit carries it to them (Tbl_Historian_Orders,
/// Tbl_Order), a delete leaves them alone.
///
/// Cmd_Edit's caption is the state: "MODIFICA" browsing and editing, "SALVA" inserting.
/// Cmd_Print's caption chooses the print: a row selection turns it to the selected
/// supplier until Command1 reloads the screen; Cmd_Save's caption never changes after
/// the load, so the text file always holds every supplier.

#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "controls/Form.h"

#include <QStringList>

namespace spares {

class Form17 : public vb::Form
{
public:
    explicit Form17(QWidget* owner = nullptr);

    /// Centre, the list, and the two captions that say "all suppliers".
    void Form_Load() override;

    // ---- the list ---------------------------------------------------------------------
    vb::DataGrid* DataGrid1; ///< the suppliers by name, on Adodc1
    vb::Adodc* Adodc1;
    vb::Label* Label1;          ///< "Conteggio Fornitori: {n}"
    vb::TextBox* Txt_Posizione; ///< hidden: the grid row selected, kept across a reload

    // ---- the card ---------------------------------------------------------------------
    vb::Frame* Frame1;            ///< "FORNITORI"
    vb::TextBox* txtID_FORNITORE; ///< hidden: the key of the card shown
    vb::TextBox* txtFornitore;
    vb::TextBox* txtNome_Soceta;
    vb::TextBox* txtIVA_COD;
    vb::TextBox* txtCitta;
    vb::TextBox* txtVia;
    vb::TextBox* txtCAP;
    vb::TextBox* txtProv;
    vb::TextBox* txtTel;
    vb::TextBox* txtFax;
    vb::TextBox* txtEmail;
    vb::TextBox* txtUrl;
    vb::Label* Label2;  ///< "Fornitore:"
    vb::Label* Label3;  ///< "Nome_Società:"
    vb::Label* Label4;  ///< "Part_IVA/Cod_Fisc:"
    vb::Label* Label5;  ///< "Citta/Paese:"
    vb::Label* Label6;  ///< "Via:"
    vb::Label* Label7;  ///< "CAP:"
    vb::Label* Label8;  ///< "Provincia:"
    vb::Label* Label9;  ///< "Tel:"
    vb::Label* Label10; ///< "Fax:"
    vb::Label* Label11; ///< "Email:"
    vb::Label* Label12; ///< "Url:"

    // ---- commands ---------------------------------------------------------------------
    vb::CommandButton* Cmd_Add;    ///< "INSERISCI"
    vb::CommandButton* Cmd_Edit;   ///< "MODIFICA" / "SALVA"
    vb::CommandButton* Cmd_Delete; ///< "ELIMINA"
    vb::CommandButton* Command1;   ///< "RESET": reload, no row selected
    vb::CommandButton* Cmd_Save;   ///< the text file of the cards
    vb::CommandButton* Cmd_Print;  ///< DataReport13

    void Show_Suppliers();
    void Clear_Supplier_Fields();

    void DataGrid1_RowColChange();
    void Cmd_Add_Click();
    void Cmd_Edit_Click();
    void Cmd_Delete_Click();
    void Command1_Click();
    void Cmd_Print_Click();
    void Cmd_Save_Click();

private:
    void buildControls();
    /// The twelve card fields with their columns, in the table's order.
    struct CardField
    {
        vb::TextBox* field;
        const char* column;
    };
    std::vector<CardField> cardFields() const;
    /// The grid's cell of the current row; with no current row the grid's data error.
    QString gridCell(const QString& column) const;
    /// Closes the screen and opens it again in its place; with backToRow the new screen
    /// goes to the row this one kept in Txt_Posizione, when that row still exists.
    void reopen(bool backToRow);
};

/// The save caption that would name the selected supplier. Nothing in the screen ever
/// gives it to Cmd_Save: a row selection changes only the print's caption.
inline constexpr const char* SaveOneCaption = "Salva in Txt Questo Fornitore";

/// The lines of SCHEDA_Fornitori.txt between its date head and its signature: for every
/// supplier by name, an empty line, the card, the billing block (the card's data again)
/// and the closing rule between empty lines.
QStringList Supplier_Card_Lines();

} // namespace spares
