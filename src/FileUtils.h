// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#ifndef ORVAUTILS_FILEUTILS_H
#define ORVAUTILS_FILEUTILS_H

#include "orvautils_export.h"

class ORVAUTILS_EXPORT FileUtils
{
};

#endif // ORVAUTILS_FILEUTILS_H
