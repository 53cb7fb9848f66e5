// Marks what the shared library exports; everything else stays hidden.
#pragma once

#if defined(_WIN32)
#define EDL_API __declspec(dllexport)
#else
#define EDL_API __attribute__((visibility("default")))
#endif
