#pragma once
/// The packed installers, what they leave on the machine, and their windows.
#include "e2e/process.h"

#include <filesystem>
#include <string>
#include <vector>

namespace e2e {

constexpr char entry_key[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\TavrinConfiguration";
/// A value for each installed file, with the version that installed it.
constexpr char installed_key[] =
    "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\TavrinConfiguration\\Files";
constexpr char list_key[] = "SOFTWARE\\Tavrin\\TRConfig";
constexpr char sample_key[] = "SOFTWARE\\Tavrin\\Sample";
constexpr char sample_name[] = "Tavrin Sample";

/// Exit code of an installer that could not install.
constexpr DWORD failed = 2;
/// Exit code of installer and uninstaller when a program is running.
constexpr DWORD program_runs = 3;
/// Exit code of the installer when the MSI is installed.
constexpr DWORD msi_is_installed = 4;

/// Command lines of the installers of version 0.0.9 and of the version to test.
std::string older();
std::string newer();
/// Command line of the installed uninstaller, in a form that runs in one process and leaves its own file
/// behind.
std::string uninstaller_in_place();
/// Command lines of Windows Installer with the MSI of each version; `order` is /i, /x or /f.
std::string older_msi(const char* order);
std::string newer_msi(const char* order);
/// Runs a command line to its end; returns the exit code.
DWORD run_to_end(const std::string& command_line);
/// Has the installed uninstaller remove everything, its own file too, and waits for that.
void remove_all();

/// The folder in which the program is installed.
std::filesystem::path folder();
/// A link in the Start menu of all users, and the file that it opens.
std::filesystem::path start_menu_link(const std::string& name);
std::string target_of(const std::filesystem::path& link);
/// Command line of the installed program.
std::string installed_program();
/// What App Paths gives for the window's program.
std::string app_path();

/// The machine's PATH as it is stored.
std::string machine_path();
void set_machine_path(const std::string& path);
/// A number in the entry of installed programs; 0 when it is not there.
DWORD entry_number(const char* name);

/// Everything that an installer could leave: files, keys with their values in the places where it writes, and
/// the PATH.
std::vector<std::string> traces();

/// An installer that asks.
class Dialog {
public:
    explicit Dialog(const std::string& command_line) : process_(command_line) {}
    /// Waits until the page's foremost button is called `caption` and can be pressed, and presses it.
    void press(const std::string& caption);
    /// Waits for a box with a Retry button; returns its text.
    std::string box_text();
    /// Presses a button of that box (IDRETRY, IDCANCEL).
    void answer(int button);
    DWORD exit_code() { return process_.exit_code(120); }

private:
    HWND window_with(int button) const;

    Process process_;
};

} // namespace e2e
