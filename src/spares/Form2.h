#pragma once
/// @file Form2.h
/// The spare parts register ("DESCRIZIONE RICAMBI"): each row of Tbl_Descrizione_Ricambi
/// is one part of a category of Tbl_Ricambi, with its cost, stock, minimum stock, code and
/// notes. Here a part is created, corrected and deleted and its stock set by hand; the
/// screen also searches, prints the catalogue, writes RICAMBI.txt, prints where a part is
/// in use and opens the picture gallery of a part (Form1), which writes its first picture
/// back into Txt_ID_IMAGES_DC, Txt_Percorso, Txt_Images and Image4.
///
/// List1 (categories) and List2 (the parts of the category clicked) are the only
/// selection. Cmd_Edit's caption is the state: "MODIFICA" browsing, "SALVA" inserting. A
/// new part is entered with Cmd_Add, then a click in List1 (which gives Text1 and
/// TextRICAMBI and keeps the state), then the fields, then Cmd_Edit.

#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "controls/Form.h"

namespace spares {

class Form2 : public vb::Form
{
public:
    explicit Form2(QWidget* owner = nullptr);

    /// Centres the screen, points Adodc1 at the units in use, Refresh_Category_List.
    void Form_Load() override;

    // ---- the two lists ----------------------------------------------------------------
    vb::Label* Label1;  ///< "RICAMBI"
    vb::ListBox* List1; ///< the categories
    vb::Label* Label2;  ///< the number of lines of List1 (or of a search)
    vb::Label* Label3;  ///< "DESCRIZIONI"
    vb::ListBox* List2; ///< the parts of the category clicked, by description

    // ---- the part ---------------------------------------------------------------------
    vb::Label* Label4;
    vb::TextBox* TextRICAMBI; ///< the category name
    vb::Label* Label5;
    vb::DataCombo* DataCombo1; ///< the category's unit; a new one is typed in
    vb::Adodc* Adodc1;
    vb::Label* Label6;
    vb::TextBox* Txt_Descrizione;
    vb::Label* Label7;
    vb::TextBox* Txt_Codice;
    vb::Label* Label8;
    vb::TextBox* TextCosto; ///< anything may be typed; emptied it becomes "0"
    vb::Label* Label9;
    vb::TextBox* Txt_Giacenza; ///< digits only
    vb::Label* Label10;
    vb::TextBox* Txt_Scorta; ///< digits only
    vb::Label* Label11;
    vb::TextBox* TextNOTE;
    vb::CommandButton* Cmd_Photo; ///< "INSERISCI IMMAGINE", while the part has no picture
    vb::Image* Image4;            ///< the part's first picture, in Cmd_Photo's place

    // Hidden working state.
    vb::TextBox* Text1;            ///< category key of the selection
    vb::TextBox* TextID_DESCR_RIC; ///< part key of the selection
    vb::TextBox* Txt_ID_IMAGES_DC;
    vb::TextBox* Txt_Images;
    vb::TextBox* Txt_Percorso;

    // ---- commands ---------------------------------------------------------------------
    vb::CommandButton* Cmd_Add;
    vb::CommandButton* Cmd_Edit;
    vb::CommandButton* Cmd_Delete;
    vb::CommandButton* Command1; ///< "VISUALIZZA TUTTO"
    vb::CommandButton* Cmd_print_A;
    vb::CommandButton* Cmd_Print_Group;
    vb::CommandButton* Cmd_Presence;
    vb::CommandButton* Cmd_Save_txt;

    // ---- searches ---------------------------------------------------------------------
    vb::Frame* Frame1; ///< "CERCA NEI RICAMBI"
    vb::TextBox* Txt_Search;
    vb::Frame* Frame2; ///< "CERCA NELLE DESCRIZIONI"
    vb::TextBox* Txt_Search_Desc;
    vb::Frame* Frame3; ///< "CERCA NELLE UNITà DI MISURA"
    vb::TextBox* Txt_Search_UN_MIS;

    // ---- event procedures -------------------------------------------------------------
    void Refresh_Category_List();
    void Clear_Fields();
    void List1_Click();
    void List2_Click();
    void TextID_DESCR_RIC_Change();
    void Txt_Images_Change();
    void TextCosto_Change();
    void Cmd_Add_Click();
    void Cmd_Edit_Click();
    void Cmd_Delete_Click();
    void Command1_Click();
    void Txt_Search_KeyUp();
    void Txt_Search_Desc_KeyUp();
    void Txt_Search_UN_MIS_KeyUp();
    void Cmd_print_A_Click();
    void Cmd_Print_Group_Click();
    void Cmd_Presence_Click();
    void Cmd_Save_txt_Click();
    void Cmd_Photo_Click();
    void Image4_Click();

private:
    void buildControls();
    /// Hands the part (and from Cmd_Photo its picture) to the gallery and shows it modally.
    void openGallery(bool withPicture);
    void connectEvents();
    /// What every search does first: List2, the entry fields and the other two search
    /// fields emptied. False when the field is empty: the search stops there.
    bool startSearch(vb::TextBox* field);
    /// The field's text for its statement: apostrophes doubled, each blank replaced.
    static QString searchWords(const vb::TextBox* field, const QString& blank);
    /// Runs a search statement and fills a list with a column; the boxes of "nothing
    /// found" and of error 3021 are the field's.
    void search(vb::TextBox* field, const QString& statement, vb::ListBox* list, const QString& column);
};

} // namespace spares
