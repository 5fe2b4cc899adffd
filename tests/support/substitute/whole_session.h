#pragma once
/// One long session with the program, from start-up to its end: every kind of page, edits, a scan, a
/// connection test, OK with a service around it. Something in it may be made to fail.
#include "net/socket.h"
#include "support/program.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

class WholeSession;

/// What fails in a session, or arrives in the middle of it; 0 means nothing.
struct Disturbance {
    /// The n-th call of this function of the system.
    std::string function = {};
    int call = 0;
    /// The n-th request for memory of the network code.
    std::size_t memory = 0;
    /// Whether all later requests fail, too.
    bool memory_stays_short = false;
    /// Called wherever another process's message may arrive.
    std::function<void(const WholeSession&, const char* function)> at_delivery = {};
    /// Called after each of the user's steps, when the program has nothing else to do.
    std::function<void(const WholeSession&)> look = {};
};

/// What the server of the connection test answers, in octets.
extern const std::string accepting_server;
extern const std::string refusing_server;

class WholeSession : public ProgramTest {
public:
    /// The exit code of a session in which the program must end abnormally.
    static constexpr int abnormal = -1;

    struct Values {
        std::string old_text;
        std::string new_text;
    };
    /// The values that a session may store below kAgentKey. The folder and the file are chosen in dialogs.
    static const std::map<std::string, Values>& values();

    /// Plays the session.
    explicit WholeSession(const Disturbance& disturbance, const std::string& server = accepting_server);
    ~WholeSession() override;

    /// The functions of the system that the program called, in order.
    const std::vector<std::string>& calls() const { return calls_; }
    /// The function whose call failed; empty when none did.
    std::string failed_call() const;
    /// How often the network code asked for memory.
    std::size_t memory_requests() const { return memory_requests_; }
    /// The user has pressed OK.
    bool ok_pressed() const { return ok_pressed_; }
    int exit_code() const { return exit_code_; }
    std::vector<SeenBox> seen() const { return boxes.seen(); }

private:
    void TestBody() override {}
    void prepare(std::uint16_t server_port);
    void add_steps();
    void step(std::function<void()> act);
    void visit(const char* title, void (*act)(HWND));
    void run_program();

    const int usual_io_timeout_ = socket_io_timeout;
    std::function<void(const WholeSession&)> look_;
    bool ok_pressed_ = false;
    std::vector<std::string> calls_;
    int exit_code_ = 0;
    std::size_t memory_requests_ = 0;
};
