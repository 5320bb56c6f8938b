#pragma once
/// @file Form3.h
/// The notebook ("NOTE"): free texts of Tbl_Maintenance_Note with two classifications of
/// the user's own (Tipo_Nota, Tipo_Nota2), dated, tied to one machine number or to none
/// (a general note, ID_MODELLO or ID_NUM 0), with at most one picture each.
///
/// Three lists: DataGrid1 what is selected (frame "NOTE"), DataGrid2 the machine numbers
/// that have notes, DataGrid3 every note under the filter of Txt_Specifica_Note. A click
/// in DataGrid2 or DataGrid3 chooses what DataGrid1 shows and turns the save to "INSERISCI
/// NOTA"; a click in DataGrid1 loads that note into the input area and turns it to
/// "MODIFICA NOTA": the caption is the state. Nothing deletes a note here.
///
/// Form7 opens the screen on the note it has just written: it fills Txt_ID_MODELLO,
/// Txt_DATA, Txt_ID_NUM and DTPicker2, and the load reads Form7's own ID_MOD, ID_NUM and
/// DTPicker2 for the note list.

#include "controls/CommonDialog.h"
#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "controls/DateControls.h"
#include "controls/Form.h"

namespace vb {
class Trap;
}

namespace people {

class Form3 : public vb::Form
{
public:
    explicit Form3(QWidget* owner = nullptr);

    /// Centre, the three pick lists, today in DTPicker2, then the three grids.
    void Form_Load() override;

    // ---- the three lists ----------------------------------------------------------------
    vb::Frame* Frame1;       ///< "N° {count} Note {date}"
    vb::DataGrid* DataGrid1; ///< the notes selected, on Adodc1
    vb::Adodc* Adodc1;
    vb::Frame* Frame3;       ///< "NOTE MACCHINE: {count}"
    vb::DataGrid* DataGrid2; ///< the machine numbers with notes, on Adodc2
    vb::Adodc* Adodc2;
    vb::Frame* Frame2;       ///< "TUTTE LE NOTE: {count}"
    vb::DataGrid* DataGrid3; ///< every note under the filter, on Adodc3
    vb::Adodc* Adodc3;

    // ---- the input area ---------------------------------------------------------------
    vb::Label* Label1;         ///< "Macchina:"
    vb::DataCombo* DataCombo3; ///< the machine name, on Adodc4
    vb::Adodc* Adodc4;
    vb::Label* Label2;         ///< "Modello:"
    vb::DataCombo* DataCombo2; ///< the models of that machine, on Adodc5
    vb::Adodc* Adodc5;
    vb::Label* Label9;         ///< the machine number
    vb::DataCombo* DataCombo1; ///< the numbers of that model, on Adodc6
    vb::Adodc* Adodc6;
    vb::Label* Label3;         ///< "Tipo Nota:"
    vb::DataCombo* DataCombo5; ///< first classification, the values in use or a new one
    vb::Adodc* Adodc7;
    vb::Label* Label4;         ///< "Tipo Nota2:"
    vb::DataCombo* DataCombo4; ///< second classification, likewise
    vb::Adodc* Adodc8;
    vb::Label* Label5;       ///< "Nota:"
    vb::TextBox* Txt_Nota;   ///< the text of the note
    vb::DTPicker* DTPicker2; ///< the date of DataGrid1's list; an edit writes it to the note
    vb::Label* Label6;       ///< "Cerca:"
    vb::TextBox* Txt_Search; ///< the text filter of DataGrid3

    vb::CommandButton* Cmd_Add_Note; ///< "INSERISCI NOTA" / "MODIFICA NOTA"
    vb::CommandButton* Cmd_Photo;    ///< "INSERISCI IMMAGINE", in the thumbnail's place
    vb::Image* Image4;               ///< the thumbnail
    vb::Frame* Frame4;               ///< the enlarged picture, over the lists
    vb::Image* Image2;
    vb::CommonDialog* CommonDialog1;

    vb::Frame* Frame5; ///< "Inserisci Simboli", while the note's text has the focus
    vb::CommandButton* Cmd_Radice;
    vb::CommandButton* Cmd_Un_Mezzo;
    vb::CommandButton* Cmd_Un_Quarto;
    vb::CommandButton* Cmd_Diametro;

    vb::CommandButton* Cmd_Apri_Txt;      ///< "Apri File .Txt": Note.txt
    vb::CommandButton* Cmd_Print;         ///< "STAMPA NOTE": the present filter
    vb::CommandButton* Cmd_Print_Macchin; ///< "STAMPA GRUPPO MACCHINE"

    // ---- hidden working state -----------------------------------------------------------
    vb::TextBox* Txt_Specifica_Note; ///< filter of DataGrid3: "0" none, "1" Tipo_Nota, "2" Tipo_Nota2, "3" text
    vb::TextBox* Txt_Grid;           ///< kind of the note chosen: "0" of a machine, "1" general
    vb::TextBox* ID_MOD;
    vb::TextBox* ID_NUM;
    vb::TextBox* ID_OPERATORE;
    vb::TextBox* Txt_ID;         ///< the note whose picture is shown
    vb::TextBox* Txt_Images;     ///< its picture's file name
    vb::TextBox* Txt_Percorso;   ///< its picture's full path
    vb::TextBox* Txt_ID_MODELLO; ///< the machine and date the screen was opened for
    vb::TextBox* Txt_ID_NUM;
    vb::TextBox* Txt_DATA;
    vb::TextBox* txt_Lunghezza; ///< the note's text at the last change or click
    vb::TextBox* Txt_Len;       ///< the caret at the last change or click
    vb::TextBox* Txt_Posizione; ///< the row (from 1) of the list to come back to after a rebuild

    // ---- procedures -------------------------------------------------------------------
    void Show_Notes_Of_Machine();
    void Clear_Note_Inputs();
    void Layout_Note_Grid();
    void Fill_Machines_With_Notes();
    void Fill_All_Notes();
    void Clear_Image_Fields();
    void Set_Note_Kind();
    void Choose_Note_Image();
    void Fit_Images();

    // ---- events -----------------------------------------------------------------------
    void DataCombo3_Change();
    void DataCombo2_Change();
    void DataCombo1_Change();
    void DataCombo5_Change();
    void DataCombo4_Change();
    void Txt_Search_Change();
    void Cmd_Add_Note_Click();
    void DataGrid1_GotFocus();
    void DataGrid1_RowColChange();
    void DataGrid2_RowColChange();
    void DataGrid3_RowColChange();
    /// The note's text and caret, kept for the symbol buttons.
    void Txt_Nota_Change();
    void Txt_Nota_MouseUp();
    void Txt_ID_Change();
    /// A change of Txt_Images or Txt_Percorso: the picture, or the photo button.
    void Picture_Change();
    void Cmd_Apri_Txt_Click();
    void Cmd_Print_Click();
    void Cmd_Print_Macchin_Click();

private:
    void buildControls();
    void connectEvents();
    /// Puts the symbol at the caret kept by the last change or click of the note's text.
    void insertSymbol(const QString& symbol);
    /// Goes back to the row of a rebuilt grid kept in Txt_Posizione, without selecting it.
    void returnToPosition(vb::Adodc* source);
    /// What a row selection in DataGrid2 or DataGrid3 has in common before its list.
    void startListSelection(vb::Trap& trap);
    /// Fills DataGrid1 with a statement and lays it out.
    void showNotes(vb::Trap& trap, const QString& statement);
    /// Closes every note print before a new one.
    static void unloadNotePrints();

    bool m_returning = false; ///< going back to a kept row is no selection
};

} // namespace people
