#pragma once
// Stands in for the program with which the platform opens mail addresses, and writes down what it is given.

#include <filesystem>
#include <string>

class MailProgram {
  public:
    MailProgram();
    ~MailProgram();
    MailProgram(const MailProgram&) = delete;
    MailProgram& operator=(const MailProgram&) = delete;

    // The address, once it has come whole and as the only argument; else empty.
    std::wstring Got() const;

  private:
    std::filesystem::path record_;
    std::string before_;  // what stood in its place
};
