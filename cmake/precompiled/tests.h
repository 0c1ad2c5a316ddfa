#pragma once

#include <gtest/gtest.h>

#include "cmake/precompiled/platform.h"
