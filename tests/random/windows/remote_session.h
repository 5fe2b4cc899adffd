#pragma once
/// Sessions with the finished program, by the system's own mouse and keyboard.
#include "e2e/tool.h"
#include "random/session.h"
#include "support/scratch_folder.h"

#include <memory>

namespace random_user {

class RemoteSession : public Desk {
public:
    static Outcome play(std::uint32_t seed, const std::vector<Step>& steps);
    /// The machine's serial ports, which the program offers.
    static std::vector<std::string> ports();

    HWND window() override;
    HWND focus() override;
    std::string text_of(HWND control) override;
    std::string text_of(HTREEITEM item) override;
    bool find(HTREEITEM item, RECT& text_place) override;
    bool scans_at_once() override { return false; }
    void click(HWND control, POINT where) override;
    void press(int key, bool with_shift) override;
    void type(const std::string& text) override;
    void leave_and_return() override;
    void minimise_and_restore() override;
    void resize(int width, int height) override;
    void shut() override;
    void minimise_beside_another_window() override;
    void select(HTREEITEM item) override;
    void order_to_close() override;
    bool may_session_end() override;
    /// A click of the impatient kind would meet the box that the one before has brought up.
    std::optional<std::size_t> boxes_shown() override { return std::nullopt; }
    bool shows_system_dialog() override;

private:
    explicit RemoteSession(std::uint32_t seed);

    Outcome run(const std::vector<Step>& steps);
    void start();
    std::string play_steps(const std::vector<Step>& steps);
    std::string play_step(const Step& step);
    std::string fault_at_the_end();

    // The results of a step are waited for.
    void settle(const Step& step);
    void wait_until_idle();
    void leave_and_return_to(HWND other);
    void come_back();
    HWND open_dialog();
    void answer_if_there(HWND dialog, const Step& step);
    void answer(HWND dialog, const Step& step);
    void choose_file(HWND dialog);

    World world_;
    Model model_;
    Player player_;
    ScratchFolder folder_;
    std::vector<std::string> captions_;
    std::vector<std::string> texts_;
    std::size_t played_ = 0;
    HWND main_ = nullptr;
    std::unique_ptr<e2e::Tool> tool_;
};

} // namespace random_user
