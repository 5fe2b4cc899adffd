#include "random/step.h"

#include "platform/win32.h"

namespace random_user {
namespace {

struct Habit {
    Action action;
    unsigned share;
};

const std::vector<Habit> habits = {
    {Action::item, 24},    {Action::expander, 10}, {Action::control, 16}, {Action::background, 2},
    {Action::key, 26},     {Action::text, 14},     {Action::test, 3},     {Action::leave, 4},
    {Action::minimise, 3}, {Action::resize, 2},    {Action::ok, 1},       {Action::close, 1},
};

const std::vector<int> common_keys = {VK_TAB,   VK_TAB,   VK_TAB,    VK_TAB,    VK_TAB,    VK_UP,   VK_DOWN,
                                      VK_DOWN,  VK_DOWN,  VK_LEFT,   VK_RIGHT,  VK_RIGHT,  VK_HOME, VK_END,
                                      VK_SPACE, VK_SPACE, VK_RETURN, VK_ESCAPE, VK_DELETE, VK_BACK};

const std::vector<std::string> system_texts = {"x",   "7",        "-",   "0x1F", "true",
                                               "web", "a,b:5001", "low", " ",    "12 34"};

Action make_action(Chance& chance) {
    unsigned rest = 0;
    for (const Habit& habit : habits)
        rest += habit.share;
    rest = chance.below(rest);
    for (const Habit& habit : habits) {
        if (rest < habit.share)
            return habit.action;
        rest -= habit.share;
    }
    return Action::background;
}

Meanwhile make_meanwhile(Chance& chance) {
    switch (chance.below(24)) {
    case 0:
    case 1:
    case 2: return Meanwhile::leave;
    case 3:
    case 4: return Meanwhile::item;
    case 5: return Meanwhile::window;
    case 6: return Meanwhile::shut;
    case 7:
    case 8: return Meanwhile::again;
    case 9:
    case 10: return Meanwhile::select;
    case 11: return Meanwhile::order;
    case 12: return Meanwhile::end;
    default: return Meanwhile::nothing;
    }
}

} // namespace

Step make_step(Chance& chance) {
    Step step{};
    step.action = make_action(chance);
    step.number = chance.below(1000);
    step.other_way = chance.percent(30);
    step.key = chance.pick(common_keys);
    step.text = chance.pick(system_texts);
    step.meanwhile = make_meanwhile(chance);
    return step;
}

std::vector<Step> make_steps(Chance& chance, std::size_t count) {
    std::vector<Step> steps(count + 1);
    for (Step& each : steps)
        each = make_step(chance);
    const std::vector<Action> ends = {Action::ok, Action::ok, Action::ok, Action::close, Action::shut};
    steps.back().action = chance.pick(ends);
    return steps;
}

} // namespace random_user
