#pragma once
#include "ctl/exit_codes.h"
#include "service/restart_dialogue.h"

#include <string>

namespace ctl {

/// A restart that asks nobody: what is to be done was said on the command line. It is in the journal before
/// the service is stopped, until the service runs again.
class PrintedRestart final : public RestartDialogue {
public:
    /// `is_pending`: an earlier run left it unfinished; `writes`: there are values to be written.
    PrintedRestart(std::string service, bool is_pending, bool writes)
        : service_(std::move(service)), is_pending_(is_pending), writes_(writes) {}

    bool agrees_to_restart() override;
    bool agrees_to_start() override { return is_pending_; }
    void while_stopping(const std::function<void()>& step) override;
    void while_starting(const std::function<void()>& step) override;
    void pass() override {}
    void tell(ServiceTrouble trouble, DWORD code) override;

    bool is_restarted() const { return is_restarted_; }
    /// Says how it ended, after the writing.
    ExitCode finish(bool written) const;

private:
    void be_without_service(DWORD code) const;
    void give_up(DWORD code) const;
    void fail_because(const std::string& why, DWORD code);
    std::string name() const;

    std::string service_;
    bool is_pending_;
    bool writes_;
    bool is_restarted_ = false;
    std::string failure_;
};

} // namespace ctl
