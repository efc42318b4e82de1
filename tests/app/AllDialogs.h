#pragma once
// Every dialog of the program under a name: for what all of them owe their users, and for what may happen
// while one of them is open.

#include <functional>
#include <vector>

#include "addressbook/frmAddressbook.h"
#include "addressbook/frmAddressbookEntryEdit.h"
#include "addressbook/frmAddressbookEntryNew.h"
#include "app/frmInfo.h"
#include "app/frmUnsaved.h"
#include "dialogs/MessageFlags.h"
#include "dialogs/frmMessage.h"
#include "exchange/KeptNotes.h"
#include "exchange/frmExport.h"
#include "exchange/frmImport.h"
#include "mail/frmSendAsEMail.h"
#include "net/frmFlood.h"
#include "net/frmSendOverNetwork.h"
#include "net/frmSendOverNetworkProgress.h"
#include "notes/frmFind.h"
#include "notes/frmProperties.h"
#include "print/frmPrint.h"
#include "print/frmPrintProgress.h"
#include "tests/support/Controls.h"

// The store must outlive the dialogs. cancelled: called when the user stops the sending.
inline std::vector<NamedDialog> AllDialogs(NoteStore& store, std::function<void()> cancelled) {
    std::vector<NamedDialog> all = DialogsOfPlatform();
    const std::vector<NamedDialog> common = {
        {"address book", [] { return new frmAddressbook(false); }},
        {"address book, picking", [] { return new frmAddressbook(true); }},
        {"new entry", [] { return new frmAddressbookEntryNew; }},
        {"edited entries", [] { return new frmAddressbookEntryEdit; }},
        {"export", [&store] { return new frmExport(store); }},
        {"import", [] { return new frmImport; }},
        {"e-mail", [&store] { return new frmSendAsEMail(store); }},
        {"network", [&store] { return new frmSendOverNetwork(store); }},
        {"sending",
         [cancelled = std::move(cancelled)] {
             auto* dialog = new frmSendOverNetworkProgress(cancelled);
             dialog->SetStep(1);
             return dialog;
         }},
        {"flood",
         [] {
             return new frmFlood({"10.0.0.1", {}}, [](FloodGuard::Answer) {});
         }},
        {"note", [] { return new frmProperties(L"Neue Notiz"); }},
        {"print",
         [&store] {
             return new frmPrint(store, SystemPrinting(), {L"Drucker im Büro", {}},
                                 L"Es ist kein Drucker installiert. Gedruckt wird in eine PDF-Datei.");
         }},
        {"printing", [] { return new frmPrintProgress; }},
        {"find",
         [&store] {
             static KeptBin bin;
             return new frmFind(store, bin);
         }},
        {"info", [] { return new frmInfo; }},
        {"unsaved", [] { return new frmUnsaved(L"Auf dem Laufwerk ist kein Platz mehr frei."); }},
        {"message", [] { return new frmMessage(L"Zeile\r\nZeile", kInformation, L"Titel"); }},
        {"question",
         [] {
             return new frmMessage(L"Die Datei /home/jemand/" + std::wstring(400, L'x') +
                                       L"/datei.kvr existiert bereits.\r\nÜberschreiben?",
                                   kExclamation | kYesNo, L"Datei existiert bereits");
         }},
    };
    all.insert(all.end(), common.begin(), common.end());
    return all;
}
