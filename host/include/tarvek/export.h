// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/// Marks what the shared library `tarvek` offers to plug-ins.
#ifdef TARVEK_BUILDING_LIBRARY
#define TARVEK_EXPORT Q_DECL_EXPORT
#else
#define TARVEK_EXPORT Q_DECL_IMPORT
#endif
