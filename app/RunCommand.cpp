#include "app/RunCommand.h"

#include "app/HandOver.h"
#include "app/KeptCommands.h"
#include "app/Platform.h"

namespace {

CommandAnswer AnswerTo(const Command& command) {
    if (FindCommand(command.name)->by == CarriedOutBy::Process) return CarryOutAlone(command);
    HandedOver handed = HandOver(command);
    if (handed.outcome == HandedOver::Silent) return {1, L"Kivora läuft, antwortet aber nicht.\n"};
    if (handed.outcome == HandedOver::NobodyThere) {
        handed.answer = CarryOutAlone(command);
        // A copy that has started meanwhile may have read what was kept before.
        if (HandedOver late = HandOver(command); late.outcome == HandedOver::Answered) return late.answer;
    }
    return handed.answer;
}

}  // namespace

int RunCommand(const Command& command) {
    const CommandAnswer answer = AnswerTo(command);
    if (answer.exitCode == 0)
        PrintOut(answer.text);
    else
        PrintError(L"kivora: " + answer.text);
    return answer.exitCode;
}
