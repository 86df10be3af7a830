/// @file
/// Symbol visibility. Everything in the shared library is hidden unless it carries #TAVRIN_API.
#pragma once

/// Marks a class or function as part of the library's binary interface.
#define TAVRIN_API __attribute__((visibility("default")))

/// Keeps a private member of an exported class out of the binary interface.
#define TAVRIN_LOCAL __attribute__((visibility("hidden")))
