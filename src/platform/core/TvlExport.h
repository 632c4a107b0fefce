#pragma once

#include <QtCore/qglobal.h>

/** Marks what the shared library exports; everything else stays hidden. */
#if defined(TVLPROJECT_BUILD)
#define TVL_EXPORT Q_DECL_EXPORT
#else
#define TVL_EXPORT Q_DECL_IMPORT
#endif
