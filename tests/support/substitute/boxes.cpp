#include "support/boxes.h"

#include "substitute/control.h"

Boxes::Boxes() : first_(substitute::shown_boxes().size()) {}
Boxes::~Boxes() { substitute::forget_answers(); }

void Boxes::answer(int button) { substitute::answer_next_box(button); }
void Boxes::while_shown(std::function<void()> step) { substitute::while_next_box(std::move(step)); }
std::size_t Boxes::answers_left() const { return substitute::answers_left(); }

std::vector<SeenBox> Boxes::seen() const {
    std::vector<SeenBox> result;
    const auto& shown = substitute::shown_boxes();
    for (std::size_t index = first_; index < shown.size(); ++index) {
        const auto& each = shown[index];
        result.push_back({each.text, each.caption, each.style & (MB_TYPEMASK | MB_ICONMASK), each.owner});
    }
    return result;
}
