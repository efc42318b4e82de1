#pragma once
// The tip of the program's icon.

#include <string>

#include "app/Trouble.h"
#include "model/ReceiveSetting.h"

// What there is to say of the program beside its name.
struct ProgramState {
    Trouble trouble = Trouble::None;
    ReceiveFrom from = ReceiveFrom::All;
    bool portTaken = false;  // another program listens where notes would come in
};

// "Kivora 1.6" where there is nothing to say. 63 characters at most, which is what an icon's tip holds.
std::wstring IconTip(const ProgramState& state);
