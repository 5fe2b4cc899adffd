#pragma once
#include "platform/win32.h"

#include <utility>

/// Owns a handle of the service manager or of a service; empty if the call that returned it failed.
class ServiceHandle {
public:
    ServiceHandle() = default;
    explicit ServiceHandle(SC_HANDLE handle) : handle_(handle) {}
    ServiceHandle(ServiceHandle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    ServiceHandle& operator=(ServiceHandle&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~ServiceHandle() {
        if (handle_ != nullptr)
            CloseServiceHandle(handle_);
    }

    explicit operator bool() const { return handle_ != nullptr; }
    SC_HANDLE get() const { return handle_; }

private:
    SC_HANDLE handle_ = nullptr;
};
