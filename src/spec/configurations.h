#pragma once
/// The loaded configurations, by name and in byte-wise order of the names.
#include "spec/configuration.h"

#include <map>
#include <memory>
#include <string>

inline std::map<std::string, std::unique_ptr<Configuration>> configurations;
