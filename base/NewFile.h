#pragma once
// Files that must not be lost: whole and on the disk, or as they were. Whoever writes a file that somebody
// relies on writes it with one of these.
//
// A failure is the error of the operating system: of std::generic_category() on Unix, of
// std::system_category() on Windows.

#include <filesystem>
#include <string_view>
#include <system_error>

// Makes a file of these bytes that only the user may read, and returns when the disk has it and its name. An
// existing file of that name is left alone (std::errc::file_exists); after any failure there is no new file.
std::error_code WriteNewFile(const std::filesystem::path& file, std::string_view bytes);

// Gives a file these bytes, makes it where there is none, and returns when the disk has them. The bytes go
// into a new file in the same folder, which then takes the other one's name: so it is the old file or the new
// one at any time, and after a failure the old one. When this process is killed, the new file may stay behind
// under a name of its own, kivora-….neu, where it is in nobody's way.
//
// A symbolic link stays one: the file that it leads to is written, or made. An existing file keeps its owner
// and its rights; other names of the same file keep the old bytes. A new one may be read by those whom the
// user's umask lets, and written by the user alone. What is no regular file is not touched
// (std::errc::invalid_argument; std::errc::is_a_directory for a folder).
//
// Where the folder takes no new file, or one could not have the old one's owner and rights, the old one is
// written in place. Then a killed process or a power cut may leave a mixture of both; a full disk does not.
enum class Rest { Cut, Keep };  // what the old file holds behind the last of the bytes
std::error_code SaveFile(const std::filesystem::path& file, std::string_view bytes, Rest rest = Rest::Cut);

// The same for a file that something else has written: brings it to the disk and gives it the name of the
// other one, in whose place it comes. After a failure it has gone, and the other one is as it was.
std::error_code PutInPlace(const std::filesystem::path& finished, const std::filesystem::path& file);

// Makes a folder and those above it that are missing, readable for the user alone, and returns when the disk
// has their names. One that is there stays as it is.
std::error_code MakeFolder(const std::filesystem::path& folder);

// A name for a file that is not finished: one that no other file has.
std::filesystem::path UnfinishedName();
