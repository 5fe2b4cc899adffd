// Stands in for the system's icacls: writes down its arguments, and ends with the code that the test left.
#include "platform/win32.h"

#include <fstream>
#include <string>

int main() {
    char folder[MAX_PATH];
    GetSystemDirectoryA(folder, sizeof folder);
    const std::string beside = std::string(folder) + "\\icacls-";
    const std::string line = GetCommandLineA(); // begins with the program, between quotation marks
    std::ofstream(beside + "asked.txt") << line.substr(line.find('"', 1) + 2);
    int code = 0;
    std::ifstream(beside + "answer.txt") >> code;
    return code;
}
