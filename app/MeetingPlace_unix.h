#pragma once
// Where copies of the program meet: a private folder of the user with a socket in it. Whoever holds the
// folder's lock is the running copy, and it holds that of the folder with the notes as well: when the first
// folder is removed, there is still no second copy on the same notes. The kernel drops the locks of a killed
// process, and programs that clean up temporary folders leave a locked one alone.

#include <sys/socket.h>
#include <sys/un.h>

#include <string>

class Descriptor {
  public:
    explicit Descriptor(int fd = -1) : fd_(fd) {}
    ~Descriptor();
    Descriptor(Descriptor&& other) noexcept : fd_(other.fd_) { other.fd_ = -1; }
    Descriptor& operator=(Descriptor&& other) noexcept;
    int Get() const { return fd_; }
    explicit operator bool() const { return fd_ >= 0; }

  private:
    int fd_;
};

class MeetingPlace {
  public:
    // Opens the folder and creates it when it is missing: where the notes are kept, so that whoever would
    // write the same notes meets the same lock, however it was started. Where that cannot be, in the user's
    // runtime folder, else below /tmp. A folder of somebody else is never used.
    MeetingPlace();

    explicit operator bool() const { return static_cast<bool>(folder_); }

    // Takes the lock until this object ends. False when another process has it; a file system without locks
    // refuses nobody.
    bool Lock();
    // True while any process holds the lock.
    bool IsLocked() const;

    // The socket's address. It goes by way of the opened folder, because an address is too short for some
    // paths.
    sockaddr_un SocketAddress() const;
    void RemoveSocket() const;

  private:
    Descriptor folder_;
    Descriptor data_;  // where the notes are kept; none if that cannot be opened
};
