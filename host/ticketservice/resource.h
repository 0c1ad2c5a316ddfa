#pragma once

// Read by the resource compiler too.
#define IDR_BUILT_IN_DEVICE 1
