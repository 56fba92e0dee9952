#pragma once

/// @file
/// Marks what a library exports; everything else stays hidden inside it.

#ifndef ORVANTIS_API
#define ORVANTIS_API __attribute__((visibility("default")))
#endif
