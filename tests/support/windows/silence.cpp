#include "support/silence.h"

void skip_silence(std::function<bool(std::size_t sent)> /*answered*/) {}
