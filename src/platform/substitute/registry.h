#pragma once
#include "platform/substitute/types.h"
