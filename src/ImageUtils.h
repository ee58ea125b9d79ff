// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#ifndef ORVAUTILS_IMAGEUTILS_H
#define ORVAUTILS_IMAGEUTILS_H

#include "orvautils_export.h"

class ORVAUTILS_EXPORT ImageUtils
{
};

#endif // ORVAUTILS_IMAGEUTILS_H
