#include "app/IconTip.h"

std::wstring IconTip(const ProgramState& state) {
    std::wstring tip = L"Kivora 1.6";
    if (state.trouble == Trouble::Unsaved) tip += L" - nicht gespeichert";
    if (state.trouble == Trouble::Unreadable) tip += L" - Notizen nicht lesbar";
    if (state.portTaken)
        tip += L" - kein Empfang, Port belegt";
    else if (state.from == ReceiveFrom::Known)
        tip += L" - Empfang nur aus Adressbuch";
    else if (state.from == ReceiveFrom::None)
        tip += L" - Empfang ausgeschaltet";
    return tip;
}
