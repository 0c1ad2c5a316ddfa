#pragma once

// What most sources include. It makes builds fast; a source that needs one of these includes it all the same.
#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#ifdef _WIN32
#include "platform/msxml6.h"
#include "platform/win32.h"
#endif
