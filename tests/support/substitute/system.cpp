#include "support/system.h"

#include "substitute/control.h"

namespace {

std::size_t sent_datagrams() { return static_cast<std::size_t>(substitute::call_count("sendto")); }

} // namespace

void clean_system() { substitute::reset(); }

void see_machine_interfaces() { substitute::use_machine_interfaces(); }

std::vector<HWND> own_windows(const char* class_name) {
    std::vector<HWND> found;
    const HWND any = FindWindowA(class_name, nullptr);
    for (HWND each = any ? GetWindow(any, GW_HWNDFIRST) : nullptr; each;
         each = GetWindow(each, GW_HWNDNEXT)) {
        char name[64] = "";
        GetClassNameA(each, name, sizeof name);
        if (std::string(class_name) == name)
            found.push_back(each);
    }
    return found;
}

void install_broken_service(const std::string& name) {
    substitute::ServiceScript script;
    script.state = SERVICE_STOPPED;
    script.start_error = ERROR_FILE_NOT_FOUND;
    substitute::set_service(name, script);
}

void remove_service(const std::string& name) { substitute::remove_service(name); }

void skip_silence(std::function<bool(std::size_t sent)> answered) {
    if (!answered)
        return substitute::skip_waits_when(nullptr);
    substitute::skip_waits_when([answered = std::move(answered), before = sent_datagrams()] {
        return answered(sent_datagrams() - before);
    });
}
