#pragma once

/// @file
/// Marks what a library exports; everything else stays hidden inside it.

#define ORVANTIS_API __attribute__((visibility("default")))
