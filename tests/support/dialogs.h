#pragma once
/// The user in the shell's folder browser and in the open-file dialog. Each call is about the next such
/// dialog that the program opens.
#include <string>

/// Leaves the browser with OK on `folder`, where it must have opened.
void accept_folder(const std::string& folder);
void cancel_folder_browser();

/// Leaves the dialog with OK on `path`, with which it must have opened.
void accept_file(const std::string& path);
void cancel_file_dialog();

std::string existing_folder();
std::string existing_file();
