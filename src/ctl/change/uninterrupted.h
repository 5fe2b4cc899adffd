#pragma once

namespace ctl {

/// While one lives, Ctrl+C, a console that closes and the end of a session do not end the program: a service
/// that is stopped is started again first. There is one at a time.
class Uninterrupted {
public:
    Uninterrupted();
    Uninterrupted(const Uninterrupted&) = delete;
    Uninterrupted& operator=(const Uninterrupted&) = delete;
    ~Uninterrupted();

    /// Whether somebody wanted the program to end meanwhile.
    bool is_over() const;
};

} // namespace ctl
