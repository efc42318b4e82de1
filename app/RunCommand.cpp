#include "app/RunCommand.h"

#include <chrono>
#include <thread>

#include "app/HandOver.h"
#include "app/KeptCommands.h"
#include "app/Platform.h"
#include "app/RecoveryText.h"
#include "base/FileName.h"
#include "exchange/ImportFile.h"
#include "registry/RegistryHealth.h"

namespace {

using Clock = std::chrono::steady_clock;

// For coming up, with a thousand notes on a slow computer.
constexpr std::chrono::seconds kPatienceForStart{30};
constexpr std::chrono::milliseconds kPause{20};

// The command as another process can carry it out: it has another folder and another standard input.
Command Portable(Command command) {
    for (std::wstring& argument : command.arguments) {
        if (FindCommand(command.name)->files) argument = AbsoluteFileName(argument);
    }
    if (command == Command{L"--new", {L"-"}})
        command.arguments[0] = NoteOfText(ReadInput(kMostTextFileBytes)).text;
    return command;
}

HandedOver HandOverToNewCopy(const Command& command) {
    const std::function<bool()> hasEnded = StartResident();
    if (!hasEnded) return {};
    const Clock::time_point deadline = Clock::now() + kPatienceForStart;
    for (;;) {
        // In this order: it also ends because another one has come up meanwhile.
        const bool ended = hasEnded();
        HandedOver handed = HandOver(command);
        const bool again =
            handed.outcome == HandedOver::Silent || (handed.outcome == HandedOver::NobodyThere && !ended);
        if (!again || Clock::now() > deadline) return handed;
        std::this_thread::sleep_for(kPause);
    }
}

CommandAnswer AnswerAlone(const Command& command) {
    CommandAnswer answer = CarryOutAlone(command);
    // A copy that has started meanwhile may have read what was kept before.
    if (HandedOver late = HandOver(command); late.outcome == HandedOver::Answered) answer = late.answer;
    return answer;
}

CommandAnswer AnswerTo(const Command& command) {
    const CarriedOutBy by = FindCommand(command.name)->by;
    if (by == CarriedOutBy::Process) return CarryOutAlone(command);
    HandedOver handed = HandOver(command);
    if (handed.outcome == HandedOver::NobodyThere) {
        if (by == CarriedOutBy::CopyOrKept) return AnswerAlone(command);
        handed = HandOverToNewCopy(command);
    }
    switch (handed.outcome) {
        case HandedOver::NobodyThere:
            return {1, L"Kivora konnte nicht gestartet werden. Es braucht einen Bildschirm.\n"};
        case HandedOver::Silent:
            return {1, L"Kivora läuft, antwortet aber nicht.\n"};
        case HandedOver::Lost:
            return {1, L"Kivora hat den Befehl angenommen, sagt aber nicht, was daraus wurde.\n"};
        case HandedOver::Answered:
            break;
    }
    return handed.answer;
}

}  // namespace

int RunCommand(const Command& command) {
    const CommandAnswer answer = AnswerTo(Portable(command));
    if (answer.exitCode == 0)
        PrintOut(answer.text);
    else
        PrintError(L"kivora: " + answer.text);
    // Nobody else hears of a hive that this process had to bring back.
    if (const auto report = TakeRecoveryReport()) PrintError(RecoveryText(*report) + L"\n");
    return answer.exitCode;
}
