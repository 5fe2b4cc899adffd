#include "ctl/change/uninterrupted.h"

namespace ctl {

/// The substitute's services belong to one process, which a test runs to its end.
Uninterrupted::Uninterrupted() = default;
Uninterrupted::~Uninterrupted() = default;
bool Uninterrupted::is_over() const { return false; }

} // namespace ctl
