#include "soak/busy_user.h"

#include "e2e/wait.h"
#include "e2e/window.h"

namespace soak {

using e2e::send;

/// One page of every kind and a node without a page. Both texts of a pair are good for connection tests.
const BusyUser::Visit BusyUser::visits[] = {
    {{"Tavrin Agent", "Identity", "Agent name"}, {"web1", "web2"}},
    {{"Tavrin Agent", "Identity"}, {}},
    {{"Tavrin Agent", "Identity", "Data folder"}, {"C:\\one", "C:\\two"}},
    {{"Tavrin Agent", "Identity", "Log file"}, {"C:\\one.log", "C:\\two.log"}},
    {{"Tavrin Agent", "Servers", "Server list"}, {"10.9.0.2", "10.9.1.9"}},
    {{"Tavrin Agent", "Servers", "Port"}, {"5000", "+5000"}},
    {{"Tavrin Agent", "Measuring", "Compress reports"}, {}},
    {{"Tavrin Agent", "Measuring", "Detail"}, {}},
    {{"Tavrin Agent", "Measuring", "Modem port"}, {}},
    {{"Tavrin Agent", "Maintenance", "Measure now"}, {}},
    {{"Tavrin Agent", "Maintenance", "Forget certificates"}, {}},
    {{"Legacy Agent", "Proxy"}, {"proxy:3128", ""}},
    {{"Tray Icon", "Tray icon", "Language"}, {}},
};

BusyUser::BusyUser(e2e::Tool& used) : tool(used), tree(used.control(e2e::tree_id)) {
    const e2e::RemoteTree items = tool.tree();
    for (const Visit& visit : visits)
        round.push_back({items.find(visit.path), visit.path.back(), {visit.texts[0], visit.texts[1]}});
}

void BusyUser::select(const Stop& stop) {
    send(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(stop.item));
    // Nothing happens to an item that is selected already.
    if (selected != stop.item && tool.shows_page())
        ++texts;
    selected = stop.item;
}

void BusyUser::show(const e2e::TreePath& path) {
    tool.select(path);
    selected = nullptr; // not one of the round
    ++texts;
}

void BusyUser::edit(const Stop& stop, int time) {
    if (!tool.shows_page())
        return;
    const HWND control = tool.page(stop.title).controls.front();
    if (e2e::is_class(control, "Edit"))
        send(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(stop.texts[time % 2]));
    else if (e2e::is_class(control, "ComboBox"))
        send(control, WM_KEYDOWN, static_cast<WPARAM>(time % 2 ? VK_DOWN : VK_UP));
    else if (e2e::text_of(control) == "Enabled" || e2e::text_of(control) == "Delete")
        send(control, BM_CLICK);
}

void BusyUser::switch_pages(int rounds) {
    for (int time = 0; time < rounds * pages_of_a_round(); ++time) {
        const Stop& stop = round[static_cast<std::size_t>(time) % round.size()];
        select(stop);
        edit(stop, time);
    }
    select(round.front());
}

void BusyUser::close_box(const std::string& caption) {
    const e2e::Box box = tool.box();
    if (box.caption != caption)
        throw std::runtime_error("unexpected box \"" + box.caption + "\": " + box.text);
    box.press(IDOK);
    ++texts;
}

void BusyUser::test_the_connection(int times) {
    for (int time = 0; time < times; ++time) {
        tool.press(e2e::test_connection);
        close_box("Connection test successful");
    }
    tests += times;
}

void BusyUser::scan(int times) {
    show({"Tavrin Agent", "Servers", "Server list"});
    const e2e::Page page = tool.page("Server list");
    for (int time = 0; time < times; ++time) {
        send(page.controls[0], WM_SETTEXT, 0, reinterpret_cast<LPARAM>(""));
        tool.press_on_page("Server list", "Scan");
        e2e::wait_for("two servers", [&] {
            return e2e::text_of(page.controls[0]).size() == sizeof "10.9.0.2,10.9.1.9" - 1;
        });
    }
    scans += times;
    select(round.front());
}

void BusyUser::open_and_close_boxes(int times) {
    show({"Tavrin Agent", "Maintenance", "Measure now"});
    for (int time = 0; time < times; ++time) {
        tool.press_on_page("Measure now", "Execute");
        close_box("Action taken");
    }
    select(round.front());
}

} // namespace soak
