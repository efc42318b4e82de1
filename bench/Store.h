#pragma once
// A user of the measured program: a folder with what the program keeps for it.

#include <filesystem>
#include <string>
#include <vector>

#include "model/Note.h"

class User {
  public:
    // Becomes the user of this process and of those that it starts from now on. like: somebody whose folder
    // this one begins with, who has used the program before.
    explicit User(const std::vector<Note>& notes, const User* like = nullptr);
    ~User();
    User(const User&) = delete;
    User& operator=(const User&) = delete;

  private:
    std::filesystem::path home_;
};
