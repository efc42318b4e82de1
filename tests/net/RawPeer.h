#pragma once
// The other side of a connection, made of plain sockets.

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <thread>

class RawConnection {
  public:
    explicit RawConnection(int descriptor) : descriptor_(descriptor) {}
    RawConnection(RawConnection&& other) noexcept;
    ~RawConnection();  // closes it

    // To a port of this computer, from one of its loopback addresses, 127.0.0.1 and the following.
    static RawConnection To(std::uint16_t port, unsigned computer = 1);

    bool Send(std::string_view bytes) const;
    // Sends what there is room for and gives its length.
    std::size_t TrySend(std::string_view bytes) const;
    // The next line without its end; "<end>" when the other side has closed, "<nothing>" after the limit.
    std::string Line(std::chrono::milliseconds limit = std::chrono::seconds(30));
    // Sends a line and reads the next one.
    std::string Ask(const std::string& line);
    // Whatever arrives until the other side closes.
    std::string Rest(std::chrono::milliseconds limit = std::chrono::seconds(30));
    void EndSending() const;
    // Closes so that the other side gets an error.
    void Reset();

  private:
    bool Receive(std::chrono::milliseconds limit);

    int descriptor_;
    bool ended_ = false;
    std::string received_;
};

// Accepts one connection and holds its dialogue in a thread.
class RawServer {
  public:
    explicit RawServer(std::function<void(RawConnection&)> dialogue);
    ~RawServer();  // waits for the dialogue's end
    std::uint16_t Port() const;

  private:
    const int listener_;
    std::thread thread_;
};

// A port on which nobody listens.
std::uint16_t FreePort();
