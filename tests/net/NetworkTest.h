#pragma once
// What the tests of the network share: a store, an access that listens on a free port, and dialogues that run
// in a thread while the events of the program go on.

#include <atomic>
#include <optional>

#include "net/basNetworkAccess.h"
#include "net/clsOutgoing.h"
#include "tests/net/RawPeer.h"
#include "tests/notes/StoreTest.h"
#include "tests/support/Messages.h"
#include "tests/support/Support.h"

// No test lasts so long.
constexpr std::chrono::milliseconds kForever = std::chrono::hours(1);

inline const std::string kReady = "OK Fremd 9.9 PROTOCOL_VERSION 1.0.0 READY\r\n";

// Answers every line with what there is for it, OK otherwise, until the other side closes.
inline std::function<void(RawConnection&)> Answering(const std::string& line, const std::string& answer,
                                                     std::vector<std::string>* lines = nullptr) {
    return [=](RawConnection& connection) {
        connection.Send(kReady);
        for (std::string got = connection.Line(); got[0] != '<'; got = connection.Line()) {
            if (lines) lines->push_back(got);
            connection.Send((got == line ? answer : "OK") + "\r\n");
        }
    };
}

class NetworkTest : protected MessageRecorder, public StoreTest {
  protected:
    NetworkTest() {
        tooLong.Bind(wxEVT_TIMER, [](wxTimerEvent&) {
            ADD_FAILURE() << "waits for what does not come";
            EndAllWaits();
        });
        tooLong.StartOnce(60'000);
    }

    // An access that connects to this port.
    NetworkAccess& Open(std::uint16_t remotePort = 0, std::chrono::milliseconds patience = kForever,
                        std::chrono::seconds silence = std::chrono::seconds(kSilenceSeconds)) {
        network.emplace(store, NetworkAccess::Options{0, remotePort, patience, silence});
        EXPECT_TRUE(network->Listen());
        return *network;
    }

    // Holds a dialogue with the access in a thread and runs events until it has ended.
    void Talk(const std::function<void(RawConnection&)>& dialogue) {
        Meanwhile([&] {
            RawConnection connection = RawConnection::To(network->LocalPort());
            dialogue(connection);
        });
    }

    static void Meanwhile(const std::function<void()>& work) {
        std::atomic<bool> done = false;
        std::thread thread([&] {
            work();
            done = true;
            wxTheApp->CallAfter([] { WakeWaits(); });
        });
        WaitUntil([&] { return done.load(); });
        thread.join();
    }

    wxTimer tooLong;
    std::optional<NetworkAccess> network;
};
