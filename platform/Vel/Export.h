#pragma once

// Marks what a shared library offers to its users. Everything else is hidden.
#define VEL_EXPORT __attribute__((visibility("default")))
