#include "substitute/control/events.h"
#include "substitute/calls.h"
#include "substitute/control/clock.h"
#include "substitute/kernel/kernel.h"

#include <map>
#include <memory>
#include <stdexcept>
#include <string>

using substitute::refuse;

namespace {

struct Event {
    bool manual_reset = false;
    bool signalled = false;
};

struct OpenEvent {
    std::shared_ptr<Event> event;
    DWORD access = 0;
};

struct State {
    std::map<HANDLE, OpenEvent> open;
    /// By case-sensitive name; an event is destroyed with its last handle.
    std::map<std::string, std::weak_ptr<Event>> named;
    std::intptr_t last = 0;
};

State& state() {
    static State instance;
    return instance;
}

const substitute::ResetHook reset_hook([] { state() = State{}; });

HANDLE add_handle(std::shared_ptr<Event> event, DWORD access) {
    const auto handle = reinterpret_cast<HANDLE>(state().last += 4);
    state().open[handle] = {std::move(event), access};
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

/// The event behind a handle that has the needed right; null with the last error set otherwise.
Event* usable(HANDLE handle, DWORD needed) {
    const auto found = state().open.find(handle);
    if (found == state().open.end())
        return refuse<Event*>(ERROR_INVALID_HANDLE);
    if ((found->second.access & needed) == 0)
        return refuse<Event*>(ERROR_ACCESS_DENIED);
    return found->second.event.get();
}

bool take_signal(Event& event) {
    const bool signalled = event.signalled;
    if (!event.manual_reset)
        event.signalled = false;
    return signalled;
}

BOOL switch_signal(HANDLE handle, bool on) {
    Event* const event = usable(handle, EVENT_MODIFY_STATE);
    if (event == nullptr)
        return FALSE;
    event->signalled = on;
    return TRUE;
}

} // namespace

HANDLE CreateEventA(SECURITY_ATTRIBUTES*, BOOL manual_reset, BOOL signalled, LPCSTR name) {
    if (substitute::failing("CreateEventA", ERROR_ACCESS_DENIED))
        return nullptr;
    const auto fresh = std::make_shared<Event>(Event{manual_reset != FALSE, signalled != FALSE});
    SetLastError(ERROR_SUCCESS);
    if (name == nullptr)
        return add_handle(fresh, EVENT_ALL_ACCESS);
    const std::string own = full_name(name);
    if (const LONG code = name_error(own); code != ERROR_SUCCESS)
        return refuse<HANDLE>(static_cast<DWORD>(code));
    std::weak_ptr<Event>& known = state().named[own];
    if (auto existing = known.lock()) {
        SetLastError(ERROR_ALREADY_EXISTS);
        return add_handle(std::move(existing), EVENT_ALL_ACCESS);
    }
    known = fresh;
    return add_handle(fresh, EVENT_ALL_ACCESS);
}

HANDLE OpenEventA(DWORD access, BOOL, LPCSTR name) {
    if (substitute::failing("OpenEventA", ERROR_ACCESS_DENIED))
        return nullptr;
    if (name == nullptr)
        return refuse<HANDLE>(ERROR_INVALID_PARAMETER);
    const auto known = state().named.find(full_name(name));
    auto event = known == state().named.end() ? nullptr : known->second.lock();
    return event == nullptr ? refuse<HANDLE>(ERROR_FILE_NOT_FOUND) : add_handle(std::move(event), access);
}

BOOL SetEvent(HANDLE event) {
    return substitute::failing("SetEvent", ERROR_INVALID_HANDLE) ? FALSE : switch_signal(event, true);
}

BOOL CloseHandle(HANDLE object) {
    if (substitute::failing("CloseHandle", ERROR_INVALID_HANDLE))
        return FALSE;
    return state().open.erase(object) != 0 ? TRUE : refuse(ERROR_INVALID_HANDLE);
}

DWORD WaitForSingleObject(HANDLE object, DWORD milliseconds) {
    if (substitute::failing("WaitForSingleObject", ERROR_INVALID_HANDLE))
        return WAIT_FAILED;
    Event* const event = usable(object, SYNCHRONIZE);
    if (event == nullptr)
        return WAIT_FAILED;
    if (take_signal(*event))
        return WAIT_OBJECT_0;
    if (milliseconds == INFINITE)
        throw std::logic_error("WaitForSingleObject: nothing can end this wait");
    substitute::advance_clock(milliseconds);
    return take_signal(*event) ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
}

int substitute::open_events() { return static_cast<int>(state().open.size()); }
