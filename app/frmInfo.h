#pragma once
// The About box.

#include "dialogs/frmDialog.h"

class frmInfo : public frmDialog {
  public:
    frmInfo();

    // Shows the box and returns; one that is open already comes to the front instead.
    static void Open();
};
