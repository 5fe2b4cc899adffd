#include "random/native/native_session.h"

#include "app/main_window_controls.h"
#include "app/start_up.h"
#include "substitute/control.h"
#include "support/registry.h"
#include "window/top_level.h"

#include <csignal>
#include <cstdio>

/// There only with a sanitizer.
extern "C" void __sanitizer_set_death_callback(void (*callback)()) __attribute__((weak));

namespace random_user {
namespace {

const std::string ports_path = "HARDWARE\\DEVICEMAP\\SERIALCOMM";

std::uint32_t running_seed = 0;

/// If the program crashes, the suite crashes with it and cannot report the session.
void name_seed() {
    std::fprintf(stderr, "random user: it was in the session TAVRIN_USER_SEED=%u TAVRIN_USER_SESSIONS=1\n",
                 running_seed);
}

void die_named(int signal) {
    name_seed();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void name_seed_at_death(std::uint32_t seed) {
    running_seed = seed;
    std::signal(SIGABRT, die_named);
    if (__sanitizer_set_death_callback != nullptr)
        __sanitizer_set_death_callback(name_seed);
}

} // namespace

NativeSession::NativeSession(std::uint32_t seed, const std::vector<Step>& to_play, const Meddle& meddle)
    : chance_(seed + 1), world_(world_of(seed, {})), model_(world_), player_(model_, *this),
      to_play_(to_play), meddle_(meddle) {
    prepare();
}

Outcome NativeSession::play(std::uint32_t seed, const std::vector<Step>& steps, const Meddle& meddle) {
    name_seed_at_death(seed);
    return NativeSession(seed, steps, meddle).run();
}

void NativeSession::prepare() {
    // Without a network, the program shows its result sooner.
    substitute::fail_every_call("gethostbyname", WSAHOST_NOT_FOUND);
    substitute::fail_every_call("socket", WSAENETDOWN);
    fill_registry(world_);
    for (const SpecFile& file : world_.files) {
        if (file.is_missing) {
            set_text(list_key, file.value_name, "no such file");
        } else {
            spec_file(file.value_name, random_user::text_of(file));
        }
        install_service(file);
    }
    if (!world_.ports.empty())
        make_key(ports_path);
    for (const std::string& port : world_.ports)
        set_text(ports_path, "device of " + port, port);
}

void NativeSession::install_service(const SpecFile& file) {
    if (file.service.empty() || chance_.percent(20))
        return;
    substitute::ServiceScript script;
    script.state = chance_.percent(30) ? SERVICE_STOPPED : SERVICE_RUNNING;
    script.stop_time = chance_.percent(5) ? substitute::never : chance_.below(3000);
    script.stop_error = chance_.percent(10) ? ERROR_ACCESS_DENIED : 0;
    script.start_error = chance_.percent(10) ? ERROR_ACCESS_DENIED : 0;
    substitute::set_service(file.service, script);
}

Outcome NativeSession::run() {
    then([this] { next(); });
    const int exit_code = run_program(GetModuleHandleA(nullptr), SW_SHOWNORMAL);
    if (fault_.empty())
        fault_ = fault_at_the_end(exit_code);
    return {fault_, player_.notes(), played_};
}

void NativeSession::next() {
    if (meddle_)
        meddle_(played_);
    const std::string fault = player_.end() == End::none ? player_.look() : "the program goes on";
    if (!fault.empty())
        return give_up(fault);
    if (played_ == to_play_.size())
        return do_step({Action::shut, 0, false, 0, "", Meanwhile::nothing});
    do_step(to_play_[played_++]);
}

void NativeSession::do_step(const Step& step) {
    arrange_dialogs(step);
    then([this] { next(); });
    player_.play(step);
}

/// Prepares the user's answers to the boxes and dialogs that the step opens.
void NativeSession::arrange_dialogs(const Step& step) {
    substitute::forget_answers();
    substitute::while_next_box([this, step] { player_.play_meanwhile(step); });
    for (int box = 0; box < 6; ++box)
        boxes.answer(chance_.percent(70) ? IDYES : IDNO);
    substitute::on_clock([this, step, passes = step.number % 50](std::uint64_t) mutable {
        if (passes-- == 0)
            player_.play_others(step);
    });
    substitute::choose_next_folder({{"C:\\" + step.text}, step.other_way});
    substitute::choose_next_file(step.other_way ? std::optional("C:\\log\\" + step.text) : std::nullopt);
}

void NativeSession::give_up(const std::string& fault) {
    fault_ = fault;
    substitute::forget_answers();
    for (int attempt = 0; attempt < 3; ++attempt)
        then([] { PostMessageA(main_window, WM_CLOSE, 0, 0); });
}

std::string NativeSession::fault_at_the_end(int exit_code) const {
    const bool failed = player_.end() == End::failed;
    const auto seen = boxes.seen();
    if (exit_code != (failed ? 1 : 0)) {
        return "exit code " + std::to_string(exit_code) +
               (seen.empty() ? "" : " after \"" + seen.back().text + "\"");
    }
    if (failed && (seen.empty() || seen.back().caption != "Error!" ||
                   seen.back().text.rfind(*player_.failure(), 0) != 0))
        return "the program does not say \"" + *player_.failure() + "\"";
    if (player_.end() == End::none)
        return "the program ends by itself";
    if (!player_.fault().empty())
        return player_.fault();
    return model_.registry_faults(player_.end() == End::applied);
}

HWND NativeSession::window() { return main_window; }

std::string NativeSession::text_of(HTREEITEM item) {
    char text[512] = "";
    TVITEMA wanted{};
    wanted.mask = TVIF_TEXT;
    wanted.hItem = item;
    wanted.pszText = text;
    wanted.cchTextMax = sizeof text;
    SendMessageA(control(tree_id), TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&wanted));
    return text;
}

bool NativeSession::find(HTREEITEM item, RECT& text_place) {
    *reinterpret_cast<HTREEITEM*>(&text_place) = item;
    return SendMessageA(control(tree_id), TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&text_place)) != 0;
}

void NativeSession::leave_and_return() {
    substitute::leave_program();
    substitute::return_to_program();
}

void NativeSession::minimise_and_restore() {
    SendMessageA(main_window, WM_SYSCOMMAND, SC_MINIMIZE, 0);
    SendMessageA(main_window, WM_SYSCOMMAND, SC_RESTORE, 0);
}

void NativeSession::minimise_beside_another_window() {
    SendMessageA(main_window, WM_NCLBUTTONDOWN, HTMINBUTTON, 0);
    leave_and_return();
    SendMessageA(main_window, WM_SYSCOMMAND, SC_RESTORE, 0);
}

void NativeSession::select(HTREEITEM item) {
    SendMessageA(control(tree_id), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
}

void NativeSession::order_to_close() { SendMessageA(main_window, WM_CLOSE, 0, 0); }

bool NativeSession::may_session_end() { return SendMessageA(main_window, WM_QUERYENDSESSION, 0, 0) != 0; }

void NativeSession::resize(int width, int height) {
    SetWindowPos(main_window, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
}

void NativeSession::shut() { PostMessageA(main_window, WM_CLOSE, 0, 0); }

} // namespace random_user
