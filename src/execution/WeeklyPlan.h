#pragma once
/// @file WeeklyPlan.h
/// The wall chart Tbl_Planned, kept row by row when a maintenance is saved on Form7.
/// Both procedures take no values of their own: they read Form7's fields (DTPicker1,
/// ID_MOD, ID_NUM, DataCombo4, txtFrequenza, Txt_Man_Tip) and move its progress group.
/// Form7's save has made sure of the machine's row before calling them.

namespace execution {

class Form7;

/// Writes the token of the current type into the machine's row, from the week of Ultima
/// to the end of the chart.
void Update_Planned_Row(Form7& form);

/// Takes the old and the new type's tokens out of the machine's whole row, before
/// Update_Planned_Row writes the new positions.
void Clear_Planned_Tokens(Form7& form);

/// Cmd_Print_Week: the weeks before, of and after today's week on DataReport12, nine
/// tenths of the screen and centred. There is no wrap at New Year: in week 1 the
/// statement names column [0], which does not exist, and the box shows the error's
/// description.
void Print_Week();

/// Print_Plan: the chart copied into the report store (RPT_Velmora.sqlite) and printed
/// whole from there on Rpt_Planned, in slices of weeks on landscape pages. Without the
/// report store, or when the copy fails, nothing is shown.
void Print_Plan();

} // namespace execution
