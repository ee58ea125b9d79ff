// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#ifndef ORVAUTILS_EXIFUTILS_H
#define ORVAUTILS_EXIFUTILS_H

#include "orvautils_export.h"

class ORVAUTILS_EXPORT ExifUtils
{
};

#endif // ORVAUTILS_EXIFUTILS_H
