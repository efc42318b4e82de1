#include "dialogs/Message.h"

#include <utility>

#include "dialogs/frmMessage.h"

namespace {

MessageObserver& Observer() {
    static MessageObserver observer;
    return observer;
}

}  // namespace

MessageAnswer ShowMessage(const std::wstring& text, int flags, const std::wstring& title) {
    if (Observer()) return Observer()(text, flags, title);
    auto* box = new frmMessage(text, flags, title);
    const bool confirmed = box->ShowModal() == 1;
    box->Destroy();
    if (!(flags & kYesNo)) return MessageAnswer::OK;
    return confirmed ? MessageAnswer::Yes : MessageAnswer::No;
}

void TellMessage(const std::wstring& text, int flags, const std::wstring& title) {
    if (Observer())
        Observer()(text, flags, title);
    else
        frmMessage::Tell(text, flags, title);
}

void SetMessageObserver(MessageObserver observer) { Observer() = std::move(observer); }
