#pragma once

/** \file
    KXUI_EXPORT marks what the shared library shows to hosts; everything else is hidden. */

#if defined(_WIN32)
#if defined(KXUI_BUILDING_LIBRARY)
#define KXUI_EXPORT __declspec(dllexport)
#else
#define KXUI_EXPORT __declspec(dllimport)
#endif
#else
#define KXUI_EXPORT __attribute__((visibility("default")))
#endif
