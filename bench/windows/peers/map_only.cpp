// The smallest program that uses what every C++ program of this kind uses: a map of texts, and exceptions.
#include "platform/win32.h"

#include <map>
#include <string>

namespace {

std::string text_of(const std::map<std::string, std::string>& texts, const std::string& name) {
    const auto found = texts.find(name);
    if (found == texts.end())
        throw "no text \"" + name + "\"";
    return found->second;
}

} // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR command_line, int) {
    const std::map<std::string, std::string> texts = {{"", "nothing"}, {"name", "a name"}};
    try {
        return static_cast<int>(text_of(texts, command_line).size());
    } catch (const std::string&) {
        return 1;
    }
}
