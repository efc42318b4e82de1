#pragma once
// A user of the measured program: a folder with what the program keeps for it.

#include <filesystem>
#include <string>
#include <vector>

#include "model/Note.h"

class User {
  public:
    // Becomes the user of this process and of those that it starts from now on.
    explicit User(const std::vector<Note>& notes);
    ~User();
    User(const User&) = delete;
    User& operator=(const User&) = delete;

  private:
    std::filesystem::path home_;
};
