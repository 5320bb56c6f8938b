#pragma once
/// @file Form1.h
/// The picture gallery of one spare part ("IMMAGINE DESCRIZIONE RICAMBIO"), opened
/// modally by Form2: the part's pictures one at a time, and adding, replacing and deleting
/// them. Pictures are references to files where they lie; nothing is copied or deleted on
/// disk. The gallery reads Form2's fields for its part and writes the chosen picture back.
/// Every change ends in an unload: the user comes back through Form2.

#include "controls/CommonDialog.h"
#include "controls/Controls.h"
#include "controls/Form.h"
#include "controls/Menu.h"

class QMenuBar;

namespace spares {

class Form1 : public vb::Form
{
public:
    explicit Form1(QWidget* owner = nullptr);

    void Form_Load() override;
    /// Lays the picture and the fields out again for the screen's size.
    void Form_Resize();

    QMenuBar* MenuBar = nullptr;
    vb::Menu* Return;         ///< "<<Torna Indietro"
    vb::Menu* Menu_Image;     ///< "Immagine": holds UP_images and Delete_Images
    vb::Menu* UP_images;      ///< "Carica"
    vb::Menu* Delete_Images;  ///< "Elimina"
    vb::Menu* Image_Previous; ///< "<<Precedente"
    vb::Menu* Image_Next;     ///< "Successiva>>"

    vb::Label* Label1 = nullptr; ///< the part: category and description
    vb::Image* Image1 = nullptr;
    vb::CommonDialog* Apri;

    // Hidden fields.
    vb::TextBox* TextID_DESCR_RIC;     ///< the part's key
    vb::TextBox* TextID_IMAGES_DC;     ///< the picture's key, "0" when none
    vb::TextBox* Txt_Conta;            ///< the number of pictures of the part
    vb::TextBox* Txt_Posizione_Record; ///< the position of the picture shown, from 1
    vb::TextBox* Txt_Percorso;
    vb::TextBox* Txt_Images;

    void Return_Click();
    void UP_images_Click();
    void Delete_Images_Click();
    void Image_Previous_Click();
    void Image_Next_Click();

protected:
    void resizeEvent(QResizeEvent* e) override;

private:
    void buildControls();
    /// Loads Txt_Percorso into Image1, fits it into the screen and centres it.
    void showPicture();
    /// Fits Image1 into the screen below Label1 and centres it in the width.
    void fitPicture();
    /// Delete_Images is offered only with a picture and its key.
    void setDeleteEntry();
    /// The caption with the position: "IMMAGINE [category] [description] n di count".
    void setPositionCaption();
    /// Shows the row at Txt_Posizione_Record of the part's pictures.
    void showRowAtPosition();
};

} // namespace spares
