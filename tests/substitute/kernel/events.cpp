#include "substitute/control/events.h"
#include "substitute/calls.h"
#include "substitute/kernel/kernel.h"

#include <map>
#include <memory>
#include <string>
#include <utility>

using substitute::refuse;

namespace {

struct Event {
    bool manual_reset;
    bool signalled;
};

struct State {
    std::map<HANDLE, std::shared_ptr<Event>> open;
    /// By case-sensitive name; an event is destroyed with its last handle.
    std::map<std::string, std::weak_ptr<Event>> named;
    std::intptr_t last = 0;
};

State& state() {
    static State instance;
    return instance;
}

const substitute::ResetHook reset_hook([] { state() = State{}; });

HANDLE add_handle(std::shared_ptr<Event> event) {
    const auto handle = reinterpret_cast<HANDLE>(state().last += 4);
    state().open[handle] = std::move(event);
    return handle;
}

/// The prefix of the program's own name space is optional; the global name space is separate.
std::string full_name(const std::string& name) { return name.starts_with("Local\\") ? name.substr(6) : name; }

LONG name_error(const std::string& name) {
    if (name.size() >= MAX_PATH)
        return ERROR_FILENAME_EXCED_RANGE;
    const std::size_t start = name.starts_with("Global\\") ? 7 : 0;
    return name.find('\\', start) == std::string::npos ? ERROR_SUCCESS : ERROR_PATH_NOT_FOUND;
}

/// The event behind a handle; null with the last error set when there is none.
Event* event_of(HANDLE handle) {
    const auto found = state().open.find(handle);
    return found == state().open.end() ? refuse<Event*>(ERROR_INVALID_HANDLE) : found->second.get();
}

} // namespace

HANDLE CreateEventA(SECURITY_ATTRIBUTES*, BOOL manual_reset, BOOL signalled, LPCSTR name) {
    if (substitute::failing("CreateEventA", ERROR_ACCESS_DENIED))
        return nullptr;
    const auto fresh = std::make_shared<Event>(Event{manual_reset != FALSE, signalled != FALSE});
    SetLastError(ERROR_SUCCESS);
    if (name == nullptr)
        return add_handle(fresh);
    const std::string own = full_name(name);
    if (const LONG code = name_error(own); code != ERROR_SUCCESS)
        return refuse<HANDLE>(static_cast<DWORD>(code));
    std::weak_ptr<Event>& known = state().named[own];
    if (auto existing = known.lock()) {
        SetLastError(ERROR_ALREADY_EXISTS);
        return add_handle(std::move(existing));
    }
    known = fresh;
    return add_handle(fresh);
}

HANDLE OpenEventA(DWORD, BOOL, LPCSTR name) {
    const auto known = state().named.find(full_name(name));
    auto event = known == state().named.end() ? nullptr : known->second.lock();
    return event == nullptr ? refuse<HANDLE>(ERROR_FILE_NOT_FOUND) : add_handle(std::move(event));
}

BOOL SetEvent(HANDLE handle) {
    Event* const event = substitute::failing("SetEvent", ERROR_INVALID_HANDLE) ? nullptr : event_of(handle);
    if (event == nullptr)
        return FALSE;
    return event->signalled = true;
}

BOOL CloseHandle(HANDLE object) {
    if (substitute::failing("CloseHandle", ERROR_INVALID_HANDLE))
        return FALSE;
    return state().open.erase(object) != 0 ? TRUE : refuse(ERROR_INVALID_HANDLE);
}

DWORD WaitForSingleObject(HANDLE handle, DWORD) {
    Event* const event = event_of(handle);
    if (event == nullptr)
        return WAIT_FAILED;
    const bool signalled = event->signalled;
    event->signalled = signalled && event->manual_reset;
    return signalled ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
}

int substitute::open_events() { return static_cast<int>(state().open.size()); }
