// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#ifndef ORVAUTILS_QEXIFIMAGEHEADER_H
#define ORVAUTILS_QEXIFIMAGEHEADER_H

#include "orvautils_export.h"

class ORVAUTILS_EXPORT QExifImageHeader
{
};

#endif // ORVAUTILS_QEXIFIMAGEHEADER_H
