#pragma once
/// What tavrinctl asks of the system beside the registry, services and sockets. Paths are UTF-8. Each
/// platform has its own realisation, in a folder of its name.
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace ctl {

/// As fopen; the mode may have an "x": the file must not exist yet.
std::FILE* open_file(const std::string& path, const char* mode);
/// Makes the folder and those on the way to it. False when it is not there afterwards.
bool make_folders(const std::string& path);
/// The names of what is in the folder, in no order; empty when it cannot be read.
std::vector<std::string> names_in(const std::string& folder);
/// Whether there is such a file, also one that may not be read.
bool file_exists(const std::string& path);
/// Removes the file, if it is there.
void remove_file(const std::string& path);
/// Creates the file, if it is missing, and keeps every other process from holding it until release_file, or
/// until this one ends. Null while another holds it; throws Failure when it cannot be opened.
void* hold_file(const std::string& path);
void release_file(void* file);
/// Waits until what was written to the file is on the disk.
bool reach_disk(std::FILE* file);
/// What the machine is called in its network.
std::string machine_name();
/// The path from the root, for a path from the current folder.
std::string full_path(const std::string& path);
std::string join_path(const std::string& folder, const std::string& name);
bool is_terminal(std::FILE* file);
/// Adds text in UTF-8 to stdout or stderr. A console of Windows shows it as it is, whatever its code page,
/// which stays as it was.
bool write_text(std::FILE* file, std::string_view text);
/// The file's contents pass as they are, without line ends being changed.
void make_binary(std::FILE* file);

} // namespace ctl
