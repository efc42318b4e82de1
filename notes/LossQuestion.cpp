#include "notes/LossQuestion.h"

#include "dialogs/Message.h"
#include "dialogs/Wait.h"
#include "model/LostCharacters.h"
#include "notes/NoteStore.h"

bool MayLoseCharacters(const NoteStore& store, const std::vector<std::int32_t>& noteKeys,
                       const wchar_t* doing) {
    static bool asking = false;
    if (asking) return false;
    std::vector<std::wstring> texts;
    for (const std::int32_t key : noteKeys) {
        const frmNote* note = store.Find(key);
        if (note && LosesCharacters(note->Text())) texts.push_back(note->Text());
    }
    if (texts.empty()) return true;
    asking = true;
    const MessageAnswer answer =
        ShowMessage(LossQuestion(texts, doing), kExclamation | kYesNo, L"Zeichen gehen verloren");
    asking = false;
    return !IsQuitting() && answer == MessageAnswer::Yes;
}
