#pragma once
// The dialog for a new address book entry. It adds nothing; its caller does.

#include "addressbook/EntryFields.h"
#include "dialogs/frmDialog.h"

class frmAddressbookEntryNew : public frmDialog, public EntryControls {
  public:
    frmAddressbookEntryNew();

    // What the boxes hold.
    clsAddressBookEntry Entry() const { return fields_->Entry(); }

    using frmDialog::cmdAbbrechen;
    using frmDialog::cmdOK;

  protected:
    void Confirm() override;

  private:
    void UpdateButtons();

    EntryFields* fields_;
    bool checking_ = false;
};
