#pragma once
// Where copies of the program meet: a socket whose name stands for the folder with the notes. The name is the
// kernel's, no file has it: whatever happens to folders, nobody else gets it, and it is gone with the
// process. Whoever has it is the running copy, and it has that folder locked as well, for copies that the
// name does not reach: those in another network namespace, and those that know the folder by another path.

#include <filesystem>

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
    // That of the notes that the environment names. Creates their folder when it is missing.
    MeetingPlace();

    // Becomes the running copy until this object ends. False when another process is; where nothing can be
    // locked nobody is refused.
    bool Lock();
    // True while any process is the running copy.
    bool IsLocked() const;

    // Of whoever has the lock: where the others arrive, none when another user has taken the name.
    const Descriptor& Socket() const { return socket_; }
    // Takes one who has arrived; none, with the reason in errno, when there is nobody. Another user is
    // EACCES.
    Descriptor Accept() const;
    // Goes to the running copy of this user; none when it does not listen.
    Descriptor Connect() const;

  private:
    bool TakeName();

    const std::filesystem::path path_;  // of the notes
    Descriptor folder_;                 // with them; none if that cannot be opened
    Descriptor socket_;
};
