#include "ctl/change/lock.h"

namespace ctl {

/// The substitute's registry belongs to one process.
OneAtATime::OneAtATime(int) : turn_(nullptr) {}
OneAtATime::~OneAtATime() { turn_ = nullptr; }

} // namespace ctl
