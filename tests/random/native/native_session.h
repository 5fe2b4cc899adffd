#pragma once
/// Sessions over the substitute: the program runs in the test's own process.
#include "random/session.h"
#include "support/program.h"

namespace random_user {

/// Called before each look, for tests that plant a fault.
using Meddle = std::function<void(std::size_t step)>;

class NativeSession : public ProgramTest, public Desk {
public:
    static Outcome play(std::uint32_t seed, const std::vector<Step>& steps, const Meddle& meddle = {});

    HWND window() override;
    HWND focus() override { return GetFocus(); }
    std::string text_of(HWND control) override { return ::text_of(control); }
    std::string text_of(HTREEITEM item) override;
    bool find(HTREEITEM item, RECT& text_place) override;
    bool scans_at_once() override { return true; }
    void click(HWND control, POINT where) override { click_at(control, where); }
    void press(int key, bool with_shift) override { press_key(key, with_shift); }
    void type(const std::string& text) override { type_text(text); }
    void leave_and_return() override;
    void minimise_and_restore() override;
    void resize(int width, int height) override;
    void shut() override;
    void minimise_beside_another_window() override;
    void select(HTREEITEM item) override;
    void order_to_close() override;
    bool may_session_end() override;
    std::optional<std::size_t> boxes_shown() override { return boxes.seen().size(); }
    bool shows_system_dialog() override { return false; }

private:
    NativeSession(std::uint32_t seed, const std::vector<Step>& to_play, const Meddle& meddle);
    void TestBody() override {}

    void prepare();
    void install_service(const SpecFile& file);
    Outcome run();
    void next();
    void do_step(const Step& step);
    void arrange_dialogs(const Step& step);
    void give_up(const std::string& fault);
    std::string fault_at_the_end(int exit_code) const;

    Chance chance_;
    World world_;
    Model model_;
    Player player_;
    const std::vector<Step>& to_play_;
    const Meddle& meddle_;
    std::size_t played_ = 0;
    std::string fault_;
};

} // namespace random_user
