#pragma once

/** Marks what the shared library exports; everything else is hidden. */
#if defined(__GNUC__)
#define PZGRAPHICS_EXPORT __attribute__((visibility("default")))
#else
#define PZGRAPHICS_EXPORT
#endif
