// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// The smallest program of a user: it uses one function of each class that the package installs.

#include <ExifUtils.h>
#include <FileUtils.h>
#include <ImageUtils.h>
#include <QExifImageHeader.h>
#include <QExifValue.h>

int main()
{
    return 0;
}
