#include "app/CommandLine.h"
#include "app/HandOver.h"
#include "app/Platform.h"
#include "app/RunCommand.h"
#include "app/Startup.h"
#include "base/FileName.h"
#include "tray/TrayItem.h"

namespace {

// Hands the files over to the running copy, as long as it answers, and returns the others.
std::vector<std::wstring> HandOverFiles(std::vector<std::wstring> files) {
    while (!files.empty() && HandOver(files.front())) files.erase(files.begin());
    return files;
}

}  // namespace

int main(int argc, char** argv) {
    StartRequest request = RequestOf(Arguments(argc, argv));
    switch (request.kind) {
        case StartRequest::Run:
            return RunCommand(request.command);
        case StartRequest::Wrong:
            PrintError(L"kivora: " + ShownFileName(request.wrong) + L"\n\n" + UsageText());
            return 2;
        case StartRequest::Print:
        case StartRequest::Resident:
        case StartRequest::Import:
            break;
    }

    // Everything that another copy can do is done before wxWidgets starts.
    std::unique_ptr<RunningCopy> role;
    if (request.kind != StartRequest::Print) role = RunningCopy::Claim();
    if (!role && request.kind == StartRequest::Resident) {
        TrayItem::RemindOtherCopies();
        return 0;
    }
    if (!role && request.kind == StartRequest::Import) {
        request.files = HandOverFiles(std::move(request.files));
        if (request.files.empty()) return 0;
        role = RunningCopy::Claim();  // the other copy may have ended meanwhile
    }

    PrepareEnvironment();
    return RunProgram(request, std::move(role), argv[0]);
}
