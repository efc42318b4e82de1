#pragma once
// Lists of very many rows: what wxWidgets does row by row, at a cost that grows with the square of their
// number.

class wxListBox;

// What does not fit into the width of a row ends in dots.
void EndInDots(wxListBox& list);

// All rows get the same height, so none has to be measured.
void MakeRowsAlike(wxListBox& list);

// Selects or deselects every row of a list of which several can be selected. Sends an event when that changes
// anything.
void SelectAllRows(wxListBox& list, bool on);

// The row that was clicked or walked to last; -1 when there is none.
int CurrentRow(const wxListBox& list);
