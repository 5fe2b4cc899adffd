#pragma once
#include <string>

/// Makes a service that is stopped and cannot be started, because its program (C:\missing.exe) is missing.
void install_broken_service(const std::string& name);
void remove_service(const std::string& name);
