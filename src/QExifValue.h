// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#ifndef ORVAUTILS_QEXIFVALUE_H
#define ORVAUTILS_QEXIFVALUE_H

#include "orvautils_export.h"

class ORVAUTILS_EXPORT QExifValue
{
};

#endif // ORVAUTILS_QEXIFVALUE_H
