#pragma once
/// @file Form11.h
/// The intervention statistics ("TIPOLOGIA INTERVENTI"), opened from the interventions
/// screen: three grids drilling down from machine and cause (or the machines ranked by
/// their interventions) to the parts that went on them, and to the dates and places.
/// It only reads Tbl_Ricerca and Tbl_Causa_Intervento, always joined, so an intervention
/// whose cause is not known counts nowhere.
///
/// Txt_Case_Search holds the mode of the top level: "0" machines by cause (the cause or
/// the model filter), "1" the same narrowed by destination, "2" the ranking. The frame
/// "DATI" shows the path of the selection. Cmd_Grafico, beyond the old screen, draws the
/// same figures in a chart window.

#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "controls/Form.h"

#include <QPointer>

#include <functional>

namespace spares {

class InterventionCharts;

class Form11 : public vb::Form
{
public:
    explicit Form11(QWidget* owner = nullptr);

    /// Centre, the causes' list, and the machines by cause.
    void Form_Load() override;

    // ---- filters ----------------------------------------------------------------------
    vb::Frame* Frame1;         ///< "Causa Intervento"
    vb::DataCombo* DataCombo7; ///< a cause, or "Visualizza Tutto"
    vb::Adodc* Adodc9;
    vb::Frame* Frame2; ///< "Modello Macchina"
    vb::TextBox* Txt_Search_Mod_Macc;
    vb::Frame* Frame3; ///< "Destinazione"
    vb::TextBox* Txt_Search_Destinazione;
    vb::CommandButton* Cmd_Interventi_Macch; ///< "Macchine con più Interventi"
    vb::CommandButton* Cmd_Grafico;          ///< "GRAFICO": the chart window
    vb::TextBox* Txt_Case_Search;            ///< hidden: the top level's mode
    vb::TextBox* Txt_ID_NUM;                 ///< hidden: the ranked machine chosen

    // ---- the three levels -------------------------------------------------------------
    vb::DataGrid* DataGrid1;
    vb::Adodc* Adodc1;
    vb::Label* Label1;
    vb::DataGrid* DataGrid2;
    vb::Adodc* Adodc2;
    vb::Label* Label2;
    vb::DataGrid* DataGrid3;
    vb::Adodc* Adodc3;
    vb::Label* Label3;

    // ---- the path of the selection ----------------------------------------------------
    vb::Frame* Frame4; ///< "DATI"
    vb::TextBox* Txt_Modello;
    vb::TextBox* txt_Causa;
    vb::TextBox* Txt_Ricambio;
    vb::TextBox* Txt_Descrizione;
    vb::TextBox* Txt_DATA;
    vb::TextBox* Txt_Destinazione;

    void Clear_Level1();
    void Clear_Level2();
    void Clear_Level3();
    void Set_Causes_Grid();
    void Show_Parts_Of_Cause();
    void Show_Parts_Of_Machine();

    void DataCombo7_Change();
    void Txt_Search_Destinazione_KeyUp();
    void Txt_Search_Mod_Macc_KeyUp();
    void Cmd_Interventi_Macch_Click();
    void DataGrid1_RowColChange();
    void DataGrid2_RowColChange();
    void DataGrid3_RowColChange();
    /// Opens the chart window on the top level as it stands (its tab by the mode).
    void Cmd_Grafico_Click();

    /// The chart window, while it is open.
    InterventionCharts* charts() const { return m_charts; }

private:
    void buildControls();
    /// DataGrid1 on a new statement of the top level.
    void showTopLevel(const QString& statement);
    /// A filter of the top level in force: the path cleared, the cause and the other
    /// typed filter emptied, the mode set, then the statement read and shown.
    void newTopLevel(vb::TextBox* emptied, const char* mode, const std::function<QString()>& statement);
    QPointer<InterventionCharts> m_charts;
};

} // namespace spares
