#pragma once

/** \file
    What the shared library shows to hosts.

    \def KXUI_EXPORT
    Marks a class or function that the shared library shows; everything else is hidden. */

#if defined(_WIN32)
#if defined(KXUI_BUILDING_LIBRARY)
#define KXUI_EXPORT __declspec(dllexport)
#else
#define KXUI_EXPORT __declspec(dllimport)
#endif
#else
#define KXUI_EXPORT __attribute__((visibility("default")))
#endif
