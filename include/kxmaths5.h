/**
 * @file
 * Maths for 3-D work. This header is all that a host includes; kxmaths5/everyday.h has more,
 * inline, and kxmaths5.hpp is the C++ face of both.
 *
 * Plain C99; clean in every C++ from C++11 on.
 */
#ifndef KXMATHS5_H
#define KXMATHS5_H

#include "kxmaths5/foundations.h"
#include "kxmaths5/matrix.h"
#include "kxmaths5/orientation.h"
#include "kxmaths5/polar.h"
#include "kxmaths5/spatial.h"
#include "kxmaths5/types.h"

#endif
