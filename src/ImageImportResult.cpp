// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "ImageImportResult.h"

#include <QDebug>

namespace {

/// In the order of the enumerators.
const char* const statusNames[] = {"Imported",    "Copied",      "NotFound",
                                   "NotAnImage",  "TooLarge",    "Truncated",
                                   "NotReadable", "NotWritable", "Cancelled"};

const char* nameOf(ImageImportResult::Status status)
{
    return uint(status) <= ImageImportResult::Cancelled ? statusNames[status] : "?";
}

void write(QDebug& debug, const QSize& size)
{
    debug << size.width() << " x " << size.height();
}

} // namespace

QDebug operator<<(QDebug debug, const ImageImportResult& result)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "ImageImportResult(" << nameOf(result.status);
    if (!result.error.isEmpty())
        debug << ", " << result.error;
    if (!result.format.isEmpty())
        debug << ", " << result.format;
    if (result.sourceSize.isValid()) {
        debug << ", ";
        write(debug, result.sourceSize);
    }
    if (result.size.isValid()) {
        debug << " to ";
        write(debug, result.size);
    }
    if (result.orientation != 0)
        debug << ", orientation " << result.orientation;
    if (result.truncated)
        debug << ", truncated";
    return debug << ')';
}
