#pragma once

/// Lets scans see this machine's own networks instead of the loopback network alone, which is all that the
/// substitute shows tests by default. Only for programs that run in a network namespace of their own.
void see_machine_interfaces();
