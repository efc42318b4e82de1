// The port on which notes come in may belong to another program when this one starts.
#include "app/CopyCommands.h"
#include "app/Receiving.h"
#include "tests/net/NetworkTest.h"

namespace {

using namespace std::chrono_literals;

TEST_F(NetworkTest, ReceivingBeginsWhenThePortIsFree) {
    std::optional<NetworkAccess> other(std::in_place, store, NetworkAccess::Options{0, 0, kForever});
    ASSERT_TRUE(other->Listen());
    network.emplace(store, NetworkAccess::Options{other->LocalPort(), 0, kForever});
    Receiving receiving(*network, WakeWaits, 20ms);
    const auto told = [&] { return CopyCommands(store, receiving, {}).CarryOut({L"--receive", {}}).text; };
    receiving.From(ReceiveFrom::All);
    EXPECT_TRUE(receiving.Now().portTaken);
    EXPECT_NE(told().find(L"\nZurzeit kommen keine an: Ein anderes Programm belegt den Port 5998.\n"),
              std::wstring::npos);
    receiving.From(ReceiveFrom::None);
    EXPECT_FALSE(receiving.Now().portTaken);
    EXPECT_EQ(told(), L"all: Notizen werden von allen Computern angenommen.\n");  // as it is kept
    receiving.From(ReceiveFrom::Known);
    EXPECT_TRUE(receiving.Now().portTaken);
    other.reset();
    EXPECT_EQ(WaitUntil([&] { return !receiving.Now().portTaken; }, 5s), WaitEnd::Met);
    Talk([](RawConnection& connection) { EXPECT_EQ(connection.Rest(), "") << "nobody is in the book"; });
}

}  // namespace
